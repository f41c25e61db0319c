#!/usr/bin/env bash
# Usage: ./build.sh [--packages] [PRESET [TARGET...]]   (of CMakePresets.json; without one: release)
# Installs what is missing from packages.txt, then builds into build/PRESET: all but the benchmarks,
# or those targets ("programs" without the tests, "benchmarks"). The programs are in build/PRESET/bin.
# With --packages it only installs.
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")"
only_packages=no
[ "${1:-}" != --packages ] || { only_packages=yes && shift; }
preset=${1:-release}
shift $(($# > 0))
targets=()
[ $# -eq 0 ] || targets=(--target "$@")

wanted_packages() {
    awk -v preset="$preset" '
        /^#/ { heading = $0; sub(/:.*/, "", heading); wanted = heading ~ "[# ](all|" preset ")( |$)" }
        /^[a-z]/ && wanted' packages.txt
}

# Packages of the list that are not installed.
missing_packages() {
    comm -23 <(wanted_packages | sort) \
        <(dpkg-query -W -f '${db:Status-Abbrev}${Package}\n' | sed -n 's/^ii *//p' | sort -u)
}

install_missing() {
    command -v dpkg-query >/dev/null || return 0  # not a Debian: CMake says what it lacks
    local missing as_root=()
    mapfile -t missing < <(missing_packages)
    [ ${#missing[@]} -gt 0 ] || return 0
    if [ "$(id -u)" -ne 0 ]; then
        if ! command -v sudo >/dev/null; then
            echo "build.sh: these packages are missing, and there is neither root nor sudo to" \
                "install them: ${missing[*]}" >&2
            exit 1
        fi
        as_root=(sudo)
    fi
    echo "Installing ${missing[*]}"
    "${as_root[@]}" apt-get update -q
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -q -y --no-install-recommends "${missing[@]}"
}

install_missing
[ "$only_packages" = no ] || exit 0
mkdir -p build
exec 9>"build/$preset.lock"
flock 9  # two builds in one folder would trip over each other
if [ ! -f "build/$preset/build.ninja" ]; then
    cmake --preset "$preset"
fi
cmake --build --preset "$preset" "${targets[@]}"  # configures again by itself where a list of sources changed
