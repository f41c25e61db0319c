#!/usr/bin/env bash
# Usage: compare.sh SECONDS FOLDER DOCUMENT
# Runs bars that others made, and ours from FOLDER, one after the other and each on a display of its
# own, at a sample a second and with a graph of about the same size. Prints what each cost, all its
# processes together, and writes that to DOCUMENT.
set -euo pipefail
here=$(dirname "$(readlink -f "$0")")
seconds=$1 folder=$(readlink -f "$2") document=$3
packages=(xfce4-panel xfce4-cpugraph-plugin polybar conky-std openbox xfconf dbus sway waybar
    fonts-dejavu-core)

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
unset WAYLAND_DISPLAY DISPLAY DBUS_SESSION_BUS_ADDRESS XDG_CONFIG_DIRS
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

# The same with a Wayland compositor, which won't run as root.
measure_wayland() {
    local place compositor status=0 as_nobody=()
    place=$(mktemp -d "$home/wayland.XXXX")
    printf 'output HEADLESS-1 resolution 1280x800\nseat seat0 fallback true\nxwayland disable\n' \
        >"$place/configuration"
    if [ "$(id -u)" -eq 0 ]; then
        as_nobody=(setpriv --reuid=65534 --regid=65534 --clear-groups)
        chmod a+x "$home" && chown -R 65534:65534 "$place"
    fi
    "${as_nobody[@]}" env HOME="$place" XDG_RUNTIME_DIR="$place" WLR_BACKENDS=headless \
        WLR_LIBINPUT_NO_DEVICES=1 WLR_RENDERER=pixman sway -c "$place/configuration" \
        >/dev/null 2>&1 &
    compositor=$!
    until [ -S "$place/wayland-1" ]; do sleep 0.05; done
    sleep 0.5
    WAYLAND_DISPLAY=$place/wayland-1 "$@" || status=$?
    kill "$compositor" 2>/dev/null || true
    wait "$compositor" 2>/dev/null || true
    return "$status"
}

cost=("$folder/vantor_tree_cost" "$seconds")
{
    measure "${cost[@]}" "ours, bar on X11" "$folder/vantorbar" run --host x11
    measure_wayland "${cost[@]}" "ours, bar on Wayland" "$folder/vantorbar" run --host wayland
    measure "${cost[@]}" "ours, offscreen" "$folder/vantorbar" run --host offscreen
    measure "${cost[@]}" "ours, text" "$folder/vantorbar" run --host text
    measure dbus-run-session -- "${cost[@]}" "xfce4-panel with cpugraph" xfce4-panel --disable-wm-check
    measure "${cost[@]}" "polybar" polybar -q -c "$here/polybar.ini" peer
    measure "${cost[@]}" "conky" conky -q -c "$here/conky.conf"
    measure_wayland dbus-run-session -- "${cost[@]}" "waybar" \
        waybar -c "$here/waybar.json" -s "$here/waybar.css"
} >"$home/figures"

awk -F '\t' -v seconds="$seconds" -v load="$(cut -d ' ' -f 1 /proc/loadavg)" \
    -v day="$(date -u +%F)" -v cpus="$(nproc)" '
    BEGIN {
        print "# What it costs beside others\n"
        print "Written by `./bench.sh --peers`; `Documentation/Measuring.md` tells what the columns mean.\n"
        printf "%s, over %d seconds each, on %d processors; the load at the end was %s.\n\n", day,
               seconds, cpus, load
        print "| | CPU s/min | of ours | RSS MiB | PSS MiB | own MiB | vol sw/s | inv sw/s | KiB out |"
        print "|---|--:|--:|--:|--:|--:|--:|--:|--:|"
    }
    NR == 1 { cpu = $2 }
    {
        printf "| %s | %.4f | %.2f | %.1f | %.1f | %.1f | %.2f | %.2f | %d |\n", $1, $2, $2 / cpu,
               $3, $4, $5, $6, $7, $8
    }' "$home/figures" >"$home/document"
cat "$home/document"
cp "$home/document" "$document"
