#!/usr/bin/env bash
# Usage: ./run.sh [OPTIONS of `vantorbar run`]
# Builds what changed, saying so only where there is something to say, has the session's bus start
# the daemon of this build when it's asked for, and runs the program.
set -euo pipefail
here=$(dirname "$(readlink -f "$0")")
service=com.kolbrin.vantorbardaemon.service

# Until the session ends; nothing is installed for good. The bus looks there before anywhere else.
offer_daemon() {
    local built=$here/build/release/share/dbus-1/services/$service
    local folder=${XDG_RUNTIME_DIR:-}/dbus-1/services
    [ -d "${XDG_RUNTIME_DIR:-}" ] || return 0  # no session, and no bus that could start it
    if ! cmp -s "$built" "$folder/$service"; then
        mkdir -p "$folder" && cp "$built" "$folder/$service" || return 0
        echo "Until you log out, the daemon of this build is the one that is started: $folder/$service" >&2
    fi
    dbus-send --session --print-reply --reply-timeout=2000 --dest=org.freedesktop.DBus / \
        org.freedesktop.DBus.ReloadConfig >/dev/null 2>&1 || return 0
}

"$here/build.sh" release programs 2>&1 |
    sed -u -e '/^ninja: no work to do/d' -e '/Re-checking globbed directories/d' >&2
offer_daemon
exec "$here/build/release/bin/vantorbar" run "$@"
