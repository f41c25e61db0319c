#!/usr/bin/env bash
# Usage: Tests/package-check.sh [FOLDER]
# Installs the packages in FOLDER (else those of ./package.sh) in a fresh Debian, runs the programs
# there as a plain user, upgrades them while one runs, removes and purges them, and sees that nothing
# is left but the user's own files. As root, and with debootstrap; the fresh system is in TMPDIR and
# goes away again. FRESH names a folder with one that debootstrap made before, to copy.
set -euo pipefail

fail() { echo "package-check.sh: $*" >&2; exit 1; }
step() { echo "== $*"; }

# --- Within the fresh system ----------------------------------------------------------------------

as_user() { runuser -u tester -- env -i HOME=/home/tester PATH=/usr/bin:/bin TERM=dumb LANG=C.UTF-8 "$@"; }
apt() { apt-get -q -y -o Dpkg::Use-Pty=0 --no-install-recommends "$@" >>/check/apt.log 2>&1 ||
    { tail -n 30 /check/apt.log; fail "apt-get $*"; }; }
ours() { dpkg-query -W -f '${db:Status-Status} ${Package}\n' | sed -n 's/^installed \(vantor-bar.*\)/\1/p'; }
wait_for() { for _ in $(seq 100); do "$@" 2>/dev/null && return 0; sleep 0.1; done; return 1; }

install_all() {
    apt install /check/*.deb
    ours >/check/installed
    while read -r package; do dpkg -L "$package"; done </check/installed | sort -u >/check/files
    local unresolved
    unresolved=$(find /usr/bin/vantorbar* /usr/libexec/vantorbar* /usr/lib/*/vantor-bar -type f \
        -exec ldd {} + | grep "not found" || true)
    [ -z "$unresolved" ] || fail "$unresolved"
}

run_programs() {
    as_user vantorbar --version
    as_user vantorbar doctor >/check/doctor || { cat /check/doctor; fail "doctor"; }
    grep -q "^ok  *Resources  */usr/share/vantor-bar$" /check/doctor || fail "resources"
    grep -q "^ok  *Painting" /check/doctor || fail "painting"
    as_user vantorbar snapshot /home/tester/item.png
    [ -s /home/tester/item.png ] || fail "no picture"
    [ "$(as_user timeout 30 vantorbar run --host text --json --count 3 | grep -c '^{"time":')" = 3 ] ||
        fail "no samples"
    as_user vantorbar prefs set CPU_MenubarMode 100,0,2
}

run_daemon() {
    as_user dbus-run-session -- timeout 30 vantorbar top --json --count 1 | grep -q '"processes"' ||
        fail "the bus doesn't start the daemon"
}

run_bar() {
    as_user Xvfb :77 -screen 0 800x600x24 -nolisten tcp >/dev/null 2>&1 &
    wait_for test -S /tmp/.X11-unix/X77 || fail "no X server"
    local exec
    exec=$(sed -n 's/^Exec=//p' /etc/xdg/autostart/vantor-bar-cpu.desktop)
    # shellcheck disable=SC2086
    DISPLAY=:77 as_user DISPLAY=:77 NO_AT_BRIDGE=1 timeout 60 $exec --count 3 || fail "no bar"
    kill %%
}

upgrade_below_a_run() {
    as_user vantorbar run --host none &
    sleep 2
    apt install --reinstall /check/*.deb
    [ "$(ours)" = "$(cat /check/installed)" ] || fail "other packages after the upgrade"
    kill -0 %% || fail "the upgrade ended a run"
    pkill -u tester -x vantorbar
    wait %% || fail "the run didn't end in good order"
}

# Files of ours that no other package has, too, and whatever else is called like us.
leftovers() {
    while read -r file; do
        if [ -e "$file" ] && [ "$file" != /. ] && ! dpkg -S "$file" >/dev/null 2>&1; then
            echo "$file"
        fi
    done </check/files
    find / -xdev \( -path /home -o -path /check -o -path /proc \) -prune -o -iname '*vantor*' -print
}

remove_all() {
    # shellcheck disable=SC2046
    apt remove $(cat /check/installed)
    [ -z "$(ours)" ] || fail "still installed: $(ours)"
    # shellcheck disable=SC2046
    apt purge $(cat /check/installed)
    [ -z "$(leftovers)" ] || fail "left behind: $(leftovers)"
    [ -f "/home/tester/.config/Vantor Bar/com.kolbrin.vantorbar5.extras.plist" ] ||
        fail "the user's settings are gone"
    [ -f "/home/tester/.local/share/Vantor Bar/databases/cpu.db" ] || fail "the user's history is gone"
}

inside() {
    export DEBIAN_FRONTEND=noninteractive LC_ALL=C.UTF-8
    step "Install"
    apt update
    apt install dbus fonts-dejavu-core procps xvfb
    useradd --create-home tester
    install_all
    step "Run"
    run_programs
    run_daemon
    if grep -qx vantor-bar-gtk /check/installed; then run_bar; fi
    step "Upgrade"
    upgrade_below_a_run
    step "Remove"
    remove_all
    step "All is well"
}

# --- Around it ------------------------------------------------------------------------------------

fresh_system() {
    if [ -n "${FRESH:-}" ]; then
        cp -a "$FRESH/." "$1"
    else
        debootstrap --variant=minbase bookworm "$1" >"$1.log" || { tail "$1.log"; fail "no fresh system"; }
    fi
    cp /etc/resolv.conf "$1/etc/resolv.conf"
    printf '#!/bin/sh\nexit 101\n' >"$1/usr/sbin/policy-rc.d"  # nothing is started in there
    chmod +x "$1/usr/sbin/policy-rc.d"
    mkdir "$1/check"
    cp "$2"/*.deb "$0" "$1/check"
}

if [ "${1:-}" = --inside ]; then
    inside
    exit
fi
packages=$(readlink -f "${1:-$(dirname "$(readlink -f "$0")")/../build/packages}")
ls "$packages"/*.deb >/dev/null || fail "no packages in $packages"
[ "$(id -u)" -eq 0 ] || fail "only root can make a fresh system"
root=$(mktemp -d)
trap 'rm -rf --one-file-system "$root" "$root.log"' EXIT
chmod 755 "$root"
fresh_system "$root" "$packages"
# Mounts and processes of the fresh system end with it.
unshare --mount --pid --fork --kill-child bash -euc '
    mount --make-rprivate /
    mount --rbind /dev "$1/dev" && mount --rbind /sys "$1/sys" && mount -t proc proc "$1/proc"
    exec chroot "$1" bash "/check/$2" --inside' bash "$root" "$(basename "$0")"
