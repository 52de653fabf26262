#!/bin/bash
# Builds the Debian source and binary package in build/package and lets lintian judge them.
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")/.."

version=$(sed -n 's/^project(pondwicket VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
packaged=$(dpkg-parsechangelog -l packaging/debian/changelog -S Version)
if [[ $version != "$packaged" ]]; then
    echo "package.sh: CMakeLists.txt says $version, packaging/debian/changelog $packaged" >&2
    exit 1
fi

# debhelper gives the build a home folder of its own, where the compiler cache would be empty.
if command -v ccache >/dev/null; then CCACHE_DIR=$(ccache -k cache_dir) && export CCACHE_DIR; fi
rm -rf build/package
tree=build/package/pondwicket-$version
mkdir -p "$tree"
tar -c --exclude-vcs --exclude=./build --exclude=./.cache . | tar -x -C "$tree"
mv "$tree/packaging/debian" "$tree/debian"
(cd "$tree" && dpkg-buildpackage -us -uc)
lintian -i -I --pedantic --fail-on error,warning,info,pedantic build/package/*.changes
ls build/package/*.deb
