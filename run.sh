#!/usr/bin/env bash
# Usage: ./run.sh [OPTIONS of `vantorbar run`]
# Builds what changed, saying so only where there is something to say, and runs the program.
set -euo pipefail
here=$(dirname "$(readlink -f "$0")")

"$here/build.sh" release 2>&1 |
    sed -u -e '/^ninja: no work to do/d' -e '/Re-checking globbed directories/d' >&2
exec "$here/build/release/bin/vantorbar" run "$@"
