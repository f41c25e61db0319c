#!/usr/bin/env bash
# Usage: ./test.sh [--sanitize]
# Builds and runs all tests; with --sanitize also under the address, undefined-behaviour and
# thread sanitizers.
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")"

presets=(release)
case "${1:-}" in
    "") ;;
    --sanitize) presets+=(asan tsan) ;;
    *)
        echo "Usage: ./test.sh [--sanitize]" >&2
        exit 2
        ;;
esac

for preset in "${presets[@]}"; do
    echo "== $preset"
    ./build.sh "$preset"
    ctest --test-dir "build/$preset" -j "$(nproc)" --output-on-failure --no-tests=error
done
