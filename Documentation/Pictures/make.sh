#!/usr/bin/env bash
# Paints the pictures of the README anew: each scenario beside this file gives the picture of its
# name. They come out the same on every machine that has the same fonts.
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")"
../../build.sh release
results=$(mktemp -d)
trap 'rm -rf "$results"' EXIT
for scenario in *.json; do
    ../../build/release/bin/vantorbar simulate "$scenario" --out "$results" --no-events
done
cp "$results"/*.png .
