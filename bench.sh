#!/usr/bin/env bash
# Usage: ./bench.sh [--seconds N]      (how long the whole program is measured; without it: 60)
# Builds the release, runs the micro-benchmarks, then measures what a run of the program costs.
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")"

seconds=60
if [ $# -eq 2 ] && [ "$1" = --seconds ] && [[ $2 =~ ^[1-9][0-9]*$ ]]; then
    seconds=$2
elif [ $# -gt 0 ]; then
    echo "Usage: ./bench.sh [--seconds N]" >&2
    exit 2
fi

./build.sh release
bin=build/release/bin
"$bin/vantor_benchmarks"
echo
echo "The whole program over $seconds seconds, at a sample a second"
XDG_CONFIG_HOME=$(mktemp -d)
export XDG_CONFIG_HOME
trap 'rm -rf "$XDG_CONFIG_HOME"' EXIT
"$bin/vantorbar" prefs set TimerFrequency 2
"$bin/vantor_process_cost" "$seconds" "$bin/vantorbar" "$bin/vantor_bare_loop"
