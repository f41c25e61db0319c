#!/usr/bin/env bash
# Usage: ./package.sh
# Makes the Debian packages from what is here, with the version of CMakeLists.txt, and looks them
# over. They are in build/packages then, what debuggers need of them in its debug, and the copy that
# they were made from in build/package.
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")"
[ $# -eq 0 ] || { echo "Usage: ./package.sh" >&2; exit 2; }

./build.sh --packages package
version=$(sed -n 's/^project(.* VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)

# Of a checkout what git knows or would take; else everything that wasn't built.
sources() {
    if [ -e .git ]; then
        git ls-files -z --cached --others --exclude-standard
    else
        find . -path ./build -prune -o -type f -print0
    fi
}

rm -rf build/package build/packages
mkdir -p build/package/vantor-bar build/packages
sources | tar --create --null --files-from=- --ignore-failed-read 2>/dev/null |
    tar --extract --directory build/package/vantor-bar
date=$(git log -1 --format=%cD 2>/dev/null || date --rfc-email)
cat >build/package/vantor-bar/debian/changelog <<CHANGES
vantor-bar ($version) UNRELEASED; urgency=medium

  * Version $version. The history of the source tells what is new.

 -- $(sed -n 's/^Maintainer: //p' debian/control)  $date
CHANGES

# The copy's path stays the same, so that what was compiled before is found again.
export CCACHE_DIR=${CCACHE_DIR:-$HOME/.cache/ccache}
(cd build/package/vantor-bar && dpkg-buildpackage --build=binary --no-sign)
mv build/package/*.deb build/package/*.buildinfo build/package/*.changes build/packages
lintian --fail-on error,warning build/packages/*.changes
mkdir build/packages/debug
mv build/packages/*-dbgsym_*.deb build/packages/debug
ls -l build/packages/*.deb
