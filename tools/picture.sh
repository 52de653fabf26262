#!/bin/bash
# Takes a picture of the strip on a virtual display with a home folder of its own, and ends all that it started.
#   picture.sh PROGRAM FILE.png [--theme NAME] [--direction ltr|ttb] [--scale N] [--corner WIDTHxHEIGHT]
# --corner keeps only that much of the display's bottom-left corner.
set -euo pipefail

program=$(realpath "$1")
file=$(realpath -m "$2")
shift 2
settings=()
scale=1
corner=
while (($#)); do
    case $1 in
        --theme) settings+=(currentTheme "$2") ;;
        --direction) settings+=(direction "$2") ;;
        --scale) scale=$2 ;;
        --corner) corner=$2 ;;
        *) echo "picture.sh: unknown option $1" >&2 && exit 2 ;;
    esac
    shift 2
done

private=$(mktemp -d)
trap 'jobs -rp | tac | xargs -r kill 2>/dev/null; wait; rm -rf "$private"' EXIT
mkdir -m 700 "$private/run"
unset WAYLAND_DISPLAY XDG_CURRENT_DESKTOP QT_QPA_PLATFORM
export HOME=$private XDG_RUNTIME_DIR=$private/run XDG_CONFIG_HOME=$private/.config LC_ALL=C.UTF-8
export XDG_DATA_HOME=$private/.local/share XDG_STATE_HOME=$private/.local/state XDG_CACHE_HOME=$private/.cache
export QT_SCALE_FACTOR=$scale

wait_for() { # WHAT COMMAND...
    local what=$1 tries
    shift
    for ((tries = 0; tries < 300; tries++)); do
        if "$@" >/dev/null 2>&1; then return; fi
        sleep 0.1
    done
    echo "picture.sh: waited in vain for $what" >&2
    exit 1
}

strip() { xdotool search --onlyvisible --name '^pondWicket$' | head -n 1 | grep .; }
painted() { (($(import -silent -window "$(strip)" png:- | identify -format %k -) > 1)); }
managed() { # a window that is mapped while the manager still starts is never shown
    xdotool set_num_desktops 3
    [[ $(xdotool get_num_desktops) == 3 ]]
}

width=$(awk "BEGIN { print int(1280 * $scale) }")
height=$(awk "BEGIN { print int(800 * $scale) }")
Xvfb -displayfd 3 -screen 0 "${width}x${height}x24" -nolisten tcp -noreset 3>"$private/display" 2>"$private/log" &
wait_for "the X server" test -s "$private/display"
DISPLAY=:$(cat "$private/display")
export DISPLAY
dbus-daemon --session --nofork --print-address=3 3>"$private/bus" 2>>"$private/log" &
wait_for "the session bus" test -s "$private/bus"
DBUS_SESSION_BUS_ADDRESS=$(cat "$private/bus")
export DBUS_SESSION_BUS_ADDRESS
openbox >>"$private/log" 2>&1 &
wait_for "the window manager" managed
hsetroot -solid '#6b87a8' >>"$private/log"
picom --backend xrender --config /dev/null >>"$private/log" 2>&1 &

if ((${#settings[@]})); then # the first start writes the file in which they are changed
    "$program" &
    wait_for "the strip" strip
    kill $!
    wait $! || true
    for ((i = 0; i < ${#settings[@]}; i += 2)); do
        sed -i "s/^  \"${settings[i]}\" : .*/  \"${settings[i]}\" : \"${settings[i + 1]}\",/" \
            "$HOME/Documents/pondWicket ƒ/pondWicket-settings.json"
    done
fi
"$program" &
wait_for "the strip" strip
wait_for "its first frame" painted
import -silent -window root "$file"
if [[ $corner ]]; then mogrify -gravity SouthWest -crop "$corner+0+0" +repage "$file"; fi
