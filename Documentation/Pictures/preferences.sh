#!/usr/bin/env bash
# Usage: preferences.sh [--dark] [--scale N] [--language L] [FOLDER]   (without one: beside this file)
# Photographs every page of the window for the settings, under Xvfb with ImageMagick's import, on a
# machine where nothing was ever set. The options are for looking at what the README doesn't show.
set -euo pipefail
here=$(dirname "$(readlink -f "$0")")
theme=Adwaita scale=1 language=en out=$here
while [ $# -gt 0 ]; do
    case $1 in
    --dark) theme=Adwaita:dark ;;
    --scale) scale=$2 && shift ;;
    --language) language=$2 && shift ;;
    *) out=$(readlink -f "$1") ;;
    esac
    shift
done
"$here/../../build.sh" release
program=$(readlink -f "$here/../../build/release/bin/vantorbar-preferences")

home=$(mktemp -d)
running=()
end_all() {
    kill "${running[@]}" 2>/dev/null || true
    wait
    rm -rf "$home"
}
trap end_all EXIT
start() {
    "$@" >/dev/null 2>&1 &
    running+=($!)
}

unset WAYLAND_DISPLAY DBUS_SESSION_BUS_ADDRESS
export HOME=$home XDG_CONFIG_HOME=$home/.config XDG_RUNTIME_DIR=$home NO_AT_BRIDGE=1
export GTK_THEME=$theme GDK_SCALE=$scale LANG=C.UTF-8 LANGUAGE=$language
start Xvfb -displayfd 4 -screen 0 "$((900 * scale))x$((760 * scale))x24" -nolisten tcp -noreset \
    4>"$home/display"
until [ -s "$home/display" ]; do sleep 0.05; done
DISPLAY=:$(cat "$home/display")
export DISPLAY
[ "$language" = en ] || "$(dirname "$program")/vantorbar" prefs set --force language "$language"
start "$program"
window=$(xdotool search --sync --onlyvisible --class vantorbar-preferences | tail -1)
xdotool windowmove "$window" 0 0 windowfocus "$window"
for page in menu-bar sizes cores graphs themes rate dropdown language history about; do
    sleep 1.5  # the page has come, and the graph is another one
    import -window "$window" -strip "$out/preferences-$page.png"
    xdotool key ctrl+Next
done
