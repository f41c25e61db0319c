#!/usr/bin/env bash
# Usage: compare.sh SECONDS FOLDER [TABLE]
# Runs bars that others made, and ours from FOLDER, one after the other and each on an X server of
# its own, at a sample a second and with a graph of about the same size. Prints what each cost, all
# its processes together, and writes that to TABLE.
set -euo pipefail
here=$(dirname "$(readlink -f "$0")")
seconds=$1 folder=$(readlink -f "$2") table=${3:-}
packages=(xfce4-panel xfce4-cpugraph-plugin polybar conky-std openbox xfconf dbus)

missing=()
for package in "${packages[@]}"; do
    dpkg-query -W -f '${db:Status-Abbrev}' "$package" 2>/dev/null | grep -q ^ii || missing+=("$package")
done
if [ ${#missing[@]} -gt 0 ]; then
    as_root=()
    [ "$(id -u)" -eq 0 ] || as_root=(sudo)
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -q -y \
        --no-install-recommends "${missing[@]}" >&2
fi

home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
channels=$home/.config/xfce4/xfconf/xfce-perchannel-xml
mkdir -p "$channels" "$home/.config/xfce4/panel" "$home/runtime"
cp "$here/xfce4-panel.xml" "$channels"
cp "$here/cpugraph-1.rc" "$home/.config/xfce4/panel"
unset WAYLAND_DISPLAY DBUS_SESSION_BUS_ADDRESS XDG_CONFIG_DIRS
export HOME=$home XDG_CONFIG_HOME=$home/.config XDG_RUNTIME_DIR=$home/runtime NO_AT_BRIDGE=1
export TERM=xterm-256color
"$folder/vantorbar" prefs set TimerFrequency 2

# One program on a screen of its own, under a window manager: a line of figures.
measure() {
    local display server manager status=0
    : >"$home/display"
    Xvfb -displayfd 4 -screen 0 1280x800x24 -nolisten tcp -noreset 4>"$home/display" \
        >/dev/null 2>&1 &
    server=$!
    until [ -s "$home/display" ]; do sleep 0.05; done
    display=:$(cat "$home/display")
    DISPLAY=$display openbox >/dev/null 2>&1 &
    manager=$!
    sleep 0.5
    DISPLAY=$display "$@" || status=$?
    kill "$manager" "$server" 2>/dev/null || true
    wait "$manager" "$server" 2>/dev/null || true
    return "$status"
}
cost() { measure "$folder/vantor_tree_cost" "$seconds" "$@"; }
on_a_bus() { measure dbus-run-session -- "$folder/vantor_tree_cost" "$seconds" "$@"; }

{
    cost "ours, bar on X11" "$folder/vantorbar" run --host x11
    cost "ours, offscreen" "$folder/vantorbar" run --host offscreen
    cost "ours, text" "$folder/vantorbar" run --host text
    on_a_bus "xfce4-panel with cpugraph" xfce4-panel --disable-wm-check
    cost "polybar" polybar -q -c "$here/polybar.ini" peer
    cost "conky" conky -q -c "$here/conky.conf"
} >"$home/figures"

awk -F '\t' -v seconds="$seconds" -v load="$(cut -d ' ' -f 1 /proc/loadavg)" '
    BEGIN {
        printf "Over %d seconds each; the load of the machine at the end was %s\n\n", seconds, load
        printf "%-26s %9s %6s %7s %7s %8s %9s %9s %8s %6s\n", "", "CPU s/min", "ratio", "RSS MiB",
               "PSS MiB", "own MiB", "vol sw/s", "inv sw/s", "KiB out", "RSS x"
    }
    NR == 1 { cpu = $2; rss = $3 }
    {
        printf "%-26s %9.4f %6.2f %7.1f %7.1f %8.1f %9.2f %9.2f %8d %6.2f\n", $1, $2, $2 / cpu, $3,
               $4, $5, $6, $7, $8, $3 / rss
    }' "$home/figures" >"$home/table"
cat "$home/table"
[ -z "$table" ] || cp "$home/table" "$table"
