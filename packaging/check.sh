#!/bin/bash
# Installs a build into a folder that is thrown away and lets the desktop's own checkers judge it: check.sh BUILD-FOLDER
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")/.."
build=$1

stage=$(mktemp -d)
trap 'rm -rf "$stage"' EXIT
DESTDIR=$stage cmake --install "$build" --prefix /usr >"$stage/log"
share=$stage/usr/share

fail() {
    echo "check.sh: $*" >&2
    exit 1
}

silent() { # COMMAND...: whatever it says is a fault
    local said
    said=$("$@" 2>&1) || fail "$* failed: $said"
    [[ ! $said ]] || fail "$* says: $said"
}

metadata() { appstreamcli validate --no-net --pedantic --no-color "$1" | grep -v 'Validation was successful\.$' || true; }

manual() { man --warnings --local-file "$1" >/dev/null; }

silent desktop-file-validate "$share"/applications/*.desktop
silent metadata "$share"/metainfo/*.xml
silent manual "$share"/man/man1/pondwicket.1
XDG_DATA_DIRS=$share silent update-mime-database "$share/mime"

# The template has every text of the program.
templates=(resources/translations/*.ts)
cp "${templates[@]}" "$stage"
cmake --build "$build" -t update_translations >>"$stage/log"
for template in "${templates[@]}"; do
    cmp "$template" "$stage/${template##*/}" || fail "$template was not up to date; it is now"
done

# An alias file is known by its first line, whatever its name.
printf 'pondWicket alias 1\n' >"$stage/8E5C6A1F"
mime_type=$(XDG_DATA_DIRS=$share:/usr/share XDG_DATA_HOME=$stage XDG_CURRENT_DESKTOP=GNOME \
    xdg-mime query filetype "$stage/8E5C6A1F")
[[ $mime_type == application/x-pondwicket-alias ]] || fail "xdg-mime takes an alias file for $mime_type"
grep -q "^MimeType=.*$mime_type;" "$share"/applications/*.desktop || fail "the desktop entry does not take $mime_type"

# The pictures that the metadata promises are those that we have.
while read -r width height picture; do
    [[ $(identify -format '%w %h' "docs/pictures/$picture") == "$width $height" ]] ||
        fail "docs/pictures/$picture is not ${width}x$height"
done < <(sed -nE 's/.*<image .*width="([0-9]+)" height="([0-9]+)".*\/(.*)<\/image>/\1 \2 \3/p' "$share"/metainfo/*.xml)

echo "check.sh: clean"
