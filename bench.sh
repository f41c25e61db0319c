#!/usr/bin/env bash
# Usage: ./bench.sh [--seconds N] [--peers [--document FILE] | --crash | --slow-disk]
# Builds the release, runs the micro-benchmarks, then measures what a run of the program costs,
# for N seconds or for 60. With --peers it measures instead what our bar costs beside bars that
# others made, which it installs, each for as long, and writes that to Documentation/Performance.md
# or to FILE. With --crash it kills the program wherever it changes a history file, and lets the disk
# fail there. With --slow-disk it tells how late ticks come while each flush takes 5 seconds, and
# without that.
set -euo pipefail
usage="Usage: ./bench.sh [--seconds N] [--peers [--document FILE] | --crash | --slow-disk]"
seconds=60 peers=no crash=no slow_disk=no document=Documentation/Performance.md
while [ $# -gt 0 ]; do
    case "$1" in
        --seconds) [[ ${2:-} =~ ^[1-9][0-9]*$ ]] && seconds=$2 && shift 2 && continue ;;
        --peers) peers=yes && shift && continue ;;
        --crash) crash=yes && shift && continue ;;
        --slow-disk) slow_disk=yes && shift && continue ;;
        --document) [ -n "${2:-}" ] && document=$(readlink -f "$2") && shift 2 && continue ;;
    esac
    echo "$usage" >&2
    exit 2
done
cd "$(dirname "$(readlink -f "$0")")"

./build.sh release all benchmarks
bin=build/release/bin
if [ "$peers" = yes ]; then
    exec Benchmarks/Peers/compare.sh "$seconds" "$bin" "$document"
fi
if [ "$crash" = yes ]; then
    exec "$bin/vantor_crash_bench" --points 300 "$PWD/$bin/libvantor_file_faults.so"
fi
XDG_CONFIG_HOME=$(mktemp -d)
export XDG_CONFIG_HOME
trap 'rm -rf "$XDG_CONFIG_HOME"' EXIT
"$bin/vantorbar" prefs set TimerFrequency 2
if [ "$slow_disk" = yes ]; then
    export XDG_DATA_HOME="$XDG_CONFIG_HOME" XDG_STATE_HOME="$XDG_CONFIG_HOME"
    "$bin/vantorbar" run --host none --count 1  # makes the files; a first start waits for the disk
    # Before all else that runs here, where we may: then it is the disk that ticks wait for.
    first=()
    chrt -f 5 true 2>/dev/null && first=(chrt -f 5)
    FILE_FAULTS_IN="$XDG_CONFIG_HOME" FILE_FAULTS_KIND=slow "${first[@]}" \
        env LD_PRELOAD="$PWD/$bin/libvantor_file_faults.so" "$bin/vantor_slow_disk" "$seconds"
    exit
fi
"$bin/vantor_benchmarks"
echo
echo "The whole program over $seconds seconds, at a sample a second"
"$bin/vantor_process_cost" "$seconds" "$bin/vantorbar" "$bin/vantor_bare_loop"
