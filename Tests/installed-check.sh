#!/usr/bin/env bash
# Usage: installed-check.sh CMAKE BUILD
# Installs what is in the folder BUILD below a prefix, moves all that, and sees whether the program
# finds what belongs to it.
set -euo pipefail
cmake=$1 build=$2
place=$(mktemp -d)
trap 'rm -rf "$place"' EXIT

fail() { echo "installed-check.sh: $*" >&2; exit 1; }

"$cmake" --install "$build" --prefix "$place/prefix" >"$place/log" || { cat "$place/log"; fail "no install"; }
for service in share/dbus-1/services/com.kolbrin.vantorbardaemon.service \
    lib/systemd/user/vantorbar-daemon.service; do
    started=$(sed -n 's/^Exec\(Start\)\?=//p' "$place/prefix/$service")
    [ -x "$started" ] || fail "$service starts $started, which isn't there"
    [[ $started == "$place"/prefix/* ]] || fail "$service starts $started, which isn't what was installed"
done

mv "$place/prefix" "$place/moved"
program=$place/moved/bin/vantorbar
export HOME=$place/home TERM=dumb
mkdir "$HOME"
[ "$("$program" --version)" = "$("$build/bin/vantorbar" --version)" ] || fail "another version"
"$program" doctor >"$place/doctor"
grep -qE "^ok +Resources +$place/moved/share/vantor-bar$" "$place/doctor" ||
    { cat "$place/doctor"; fail "its resources aren't found"; }
grep -qE "^ok +Painting " "$place/doctor" || { cat "$place/doctor"; fail "it can't paint"; }
"$program" snapshot "$place/item.png"
[ -s "$place/item.png" ] || fail "no picture"
# The toolkit is found, too, or it would be that which is complained of.
DISPLAY=:does-not-exist "$program" run --host x11 2>"$place/complaint" && fail "a bar on no display"
grep -q "no display that takes a bar" "$place/complaint" || { cat "$place/complaint"; fail "no toolkit"; }
