#!/usr/bin/env bash
# Usage: ./bench.sh [--seconds N] [--peers [--document FILE] | --crash]
# Builds the release, runs the micro-benchmarks, then measures what a run of the program costs,
# for N seconds or for 60. With --peers it measures instead what our bar costs beside bars that
# others made, which it installs, each for as long, and writes that to Documentation/Performance.md
# or to FILE. With --crash it kills the program wherever it changes a history file, and lets the disk
# fail there.
set -euo pipefail
usage="Usage: ./bench.sh [--seconds N] [--peers [--document FILE] | --crash]"
seconds=60 peers=no crash=no document=Documentation/Performance.md
while [ $# -gt 0 ]; do
    case "$1" in
        --seconds) [[ ${2:-} =~ ^[1-9][0-9]*$ ]] && seconds=$2 && shift 2 && continue ;;
        --peers) peers=yes && shift && continue ;;
        --crash) crash=yes && shift && continue ;;
        --document) [ -n "${2:-}" ] && document=$(readlink -f "$2") && shift 2 && continue ;;
    esac
    echo "$usage" >&2
    exit 2
done
cd "$(dirname "$(readlink -f "$0")")"

./build.sh release
bin=build/release/bin
if [ "$peers" = yes ]; then
    exec Benchmarks/Peers/compare.sh "$seconds" "$bin" "$document"
fi
if [ "$crash" = yes ]; then
    exec "$bin/vantor_crash_bench" --points 300 "$PWD/$bin/libvantor_file_faults.so"
fi
"$bin/vantor_benchmarks"
echo
echo "The whole program over $seconds seconds, at a sample a second"
XDG_CONFIG_HOME=$(mktemp -d)
export XDG_CONFIG_HOME
trap 'rm -rf "$XDG_CONFIG_HOME"' EXIT
"$bin/vantorbar" prefs set TimerFrequency 2
"$bin/vantor_process_cost" "$seconds" "$bin/vantorbar" "$bin/vantor_bare_loop"
