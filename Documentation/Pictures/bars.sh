#!/usr/bin/env bash
# Usage: bars.sh [FOLDER]      (without one: beside this file)
# Photographs the bar itself after a minute of load: on X11 at 1x and 2x, light and dark, under
# Xvfb with ImageMagick's import, and on Wayland under sway with grim. The dark ones need Python's
# dbus and gi, to play a desktop that is dark.
set -euo pipefail
here=$(dirname "$(readlink -f "$0")")
out=$(readlink -f "${1:-$here}")
"$here/../../build.sh" release
program=$(readlink -f "$here/../../build/release/bin/vantorbar")

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
until_there() { until [ -e "$1" ] && { [ -S "$1" ] || [ -s "$1" ]; }; do sleep 0.05; done; }

unset WAYLAND_DISPLAY DISPLAY DBUS_SESSION_BUS_ADDRESS
export HOME=$home XDG_CONFIG_HOME=$home/.config XDG_RUNTIME_DIR=$home NO_AT_BRIDGE=1
"$program" prefs set TimerFrequency 2
"$program" prefs set CPU_MenubarMode 100,0,2,3,1
"$program" prefs set CPU_MenubarGraphBreakdowns 1

# A bus on which the desktop says that it is dark.
dark_bus=unix:path=$home/dark-bus  # not where everybody looks for one
start dbus-daemon --session --nofork --address="$dark_bus"
until_there "$home/dark-bus"
cat >"$home/portal.py" <<'PORTAL'
import dbus, dbus.mainloop.glib, dbus.service
from gi.repository import GLib

class Portal(dbus.service.Object):
    @dbus.service.method("org.freedesktop.portal.Settings", in_signature="ss", out_signature="v")
    def Read(self, namespace, key):
        return dbus.UInt32(1 if key == "color-scheme" else 0, variant_level=1)

dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
bus = dbus.SessionBus()
name = dbus.service.BusName("org.freedesktop.portal.Desktop", bus)
portal = Portal(name, "/org/freedesktop/portal/desktop")
GLib.MainLoop().run()
PORTAL
DBUS_SESSION_BUS_ADDRESS=$dark_bus start /usr/bin/python3 "$home/portal.py"
sleep 1

# bar_on_x11 NAME SCALE [VARIABLE=VALUE...]
bar_on_x11() {
    local name=$1 scale=$2
    start Xvfb -displayfd 4 -screen 0 "$((400 * scale))x$((60 * scale))x24" -nolisten tcp \
        -noreset 4>"$home/$name"
    until_there "$home/$name"
    start env "DISPLAY=:$(cat "$home/$name")" "GDK_SCALE=$scale" "${@:3}" "$program" run --host x11
}
photograph_x11() {
    DISPLAY=:$(cat "$home/$1") import -window root -crop "$((400 * $2))x$((22 * $2))+0+0" \
        +repage -strip "$out/$1.png"
}
# The compositor refuses to run as root, and runs as nobody then.
bar_on_wayland() {
    local as=()
    mkdir "$home/wayland"
    echo "output HEADLESS-1 resolution 400x60 bg #203040 solid_color" >"$home/wayland/config"
    if [ "$(id -u)" -eq 0 ]; then
        chmod 755 "$home"
        chown 65534:65534 "$home/wayland"
        as=(setpriv --reuid=65534 --regid=65534 --clear-groups)
    fi
    XDG_RUNTIME_DIR=$home/wayland WLR_BACKENDS=headless WLR_LIBINPUT_NO_DEVICES=1 \
        WLR_RENDERER=pixman start "${as[@]}" sway -c "$home/wayland/config"
    until_there "$home/wayland/wayland-1"
    start env "XDG_RUNTIME_DIR=$home/wayland" WAYLAND_DISPLAY=wayland-1 "$program" run \
        --host wayland
}

bar_on_x11 bar-light 1
bar_on_x11 bar-light-2x 2
bar_on_x11 bar-dark 1 "DBUS_SESSION_BUS_ADDRESS=$dark_bus"
bar_on_x11 bar-dark-2x 2 "DBUS_SESSION_BUS_ADDRESS=$dark_bus"
[ ! -x /usr/bin/sway ] || bar_on_wayland

# Load that comes and goes, so that there is something to see.
for second in $(seq 60); do
    timeout "0.$((RANDOM % 8 + 1))" sh -c 'while :; do :; done' || true
    sleep "0.$((second % 7 + 1))"
done
photograph_x11 bar-light 1
photograph_x11 bar-light-2x 2
photograph_x11 bar-dark 1
photograph_x11 bar-dark-2x 2
[ ! -x /usr/bin/sway ] || XDG_RUNTIME_DIR=$home/wayland WAYLAND_DISPLAY=wayland-1 \
    grim -g "0,0 400x22" "$out/bar-wayland.png"
