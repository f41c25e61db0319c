#!/usr/bin/env bash
# Usage: dropdown.sh [FOLDER [CORES [GPUS [LOCALE]]]]      (without any: beside this file, 8, 1, en_US)
# Paints the dropdown and its submenus after a made-up week of work, light and dark, at 1x and 2x.
# Into another folder go all of them; beside this file go those that the README shows.
set -euo pipefail
here=$(dirname "$(readlink -f "$0")")
out=$(readlink -f "${1:-$here}")
"$here/../../build.sh" release
results=$(mktemp -d)
trap 'rm -rf "$results"' EXIT

# A machine that works by day, sleeps at night, and has been busy for an hour.
/usr/bin/python3 - "${2:-8}" "${3:-1}" "${4:-en_US}" >"$results/week.json" <<'WEEK'
import base64, json, math, random, sys

cores, gpus, locale = int(sys.argv[1]), int(sys.argv[2]), sys.argv[3]
chance = random.Random(7)
DAY, HOUR, END = 86400, 3600, 7 * 86400 + 10 * 3600
MODELS = ["AMD Radeon RX 6700 XT", "Intel UHD Graphics 770"]

def rates(level):
    rows = []
    for core in range(cores):
        busy = min(0.97, max(0.01, level * chance.uniform(0.4, 1.6)))
        user = busy * chance.uniform(0.62, 0.8)
        rows.append([round(100 * user), round(100 * (busy - user)), round(100 * (1 - busy)), 0])
    return rows

def load(level):
    mean = level * cores * 1.3
    return {"fixed": [int(2048 * mean * k) for k in (chance.uniform(0.7, 1.3), 1, 0.9)], "scale": 2048}

def node(number, cls, name, properties, children=()):
    return {"id": number, "class": cls, "name": name, "properties": properties,
            "children": list(children)}

def registry(level):
    cards = []
    for card in range(gpus):
        statistics = {"vramUsedBytes": int((1 << 30) * (2 + 9 * level) / (card + 1)),
                      "Device Utilization %": round(100 * min(level * (1.3 - card), 1))}
        cards.append(node(10 + 10 * card, "IOPCIDevice", "GFX%d" % card,
                          {"IOName": "display", "AAPL,slot-name": "Slot-%d" % (card + 1),
                           "model": {"data": base64.b64encode(MODELS[card].encode()).decode()},
                           "VRAM,totalMB": 12288},
                          [node(11 + 10 * card, "IOAccelerator", "driver%d" % card,
                                {"PerformanceStatistics": statistics}),
                           node(12 + 10 * card, "IODisplayConnect", "plug%d" % card, {},
                                [node(13 + 10 * card, "IODisplay", "display%d" % card, {})])]))
    return node(1, "IORegistryEntry", "Root", {}, cards)

def level(at):
    hour = at / HOUR % 24
    work = max(0, math.sin((hour - 7) / 12 * math.pi)) if 7 <= hour <= 19 else 0
    swing = 0.5 + 0.5 * math.sin(at / 5400) * math.sin(at / 900)
    if at > END - 1500:  # something is being built
        return 0.4 + 0.25 * math.sin(at / 70) + 0.12 * math.sin(at / 11)
    return 0.03 + 0.75 * work * swing * chance.uniform(0.6, 1.1)

events, at = [], 0
while at < END:
    now = level(at)
    events.append({"at": at, "rate": rates(now)})
    events.append({"at": at, "load": load(now)})
    if gpus:
        events.append({"at": at, "registry": registry(now)})
    night = at % DAY >= 23 * HOUR and at < END - 10 * HOUR
    if night:
        events.append({"at": at, "sleep": 7 * HOUR})
        at += 7 * HOUR
    at += 2 if at > END - 700 else 20 if at > END - HOUR else 600
events.append({"at": END - 30, "fps": 59.9})
events.append({"at": END - 20, "open": "main"})
events.append({"at": END - 12, "open": "uptime"})
submenus = ["cores", "history", "load"]
for card in range(gpus):
    submenus += ["memory:Slot%d" % (card + 1), "processor:Slot%d" % (card + 1)]
outputs = []
for theme, begins in (("light", END - 8), ("dark", END - 2)):
    if theme == "dark":
        events.append({"at": begins, "preference": {"key": "DropdownTheme", "value": 1,
                                                    "resetKey": "dropdown", "post": "global"}})
    for number, name in enumerate(submenus):
        moment = begins + 0.2 + number * 0.2
        events.append({"at": moment, "open": name})
    for number, name in enumerate(["main", "uptime"] + submenus):
        for scale in (1, 2):
            moment = begins + (1.5 if number < 2 else 0.25 + (number - 2) * 0.2)
            outputs.append({"at": moment, "of": name, "scale": scale,
                            "snapshot": "dropdown-%s-%s%s.png" % (
                                name.replace(":", "-"), theme, "-2x" if scale == 2 else "")})
    for name in submenus:
        events.append({"at": begins + 1.8, "close": name})
outputs.sort(key=lambda output: output["at"])
events.sort(key=lambda event: event["at"])
print(json.dumps({
    "start": 1425859200, "until": END, "locale": locale, "preferences": {"TimerFrequency": 2},
    "machine": {"logical": cores, "physical": max(cores // 2, 1), "tasks": 312, "threads": 1204,
                "boot": 1425859200 - 3 * HOUR, "fps": 59.9, "registry": registry(0.3),
                "screens": [], "processes": [
                    {"name": "firefox", "c": 182.4}, {"name": "cc1plus", "c": 96.1},
                    {"name": "gnome-shell", "c": 12.7}, {"name": "pipewire", "c": 3.2},
                    {"name": "Xwayland", "c": 1.4}]},
    "events": events, "outputs": outputs}))
WEEK
"$here/../../build/release/bin/vantorbar" simulate "$results/week.json" --out "$results/out" --no-events
if [ "$out" = "$here" ]; then
    cd "$results/out"
    cp dropdown-main-light-2x.png dropdown-main-dark-2x.png dropdown-cores-light-2x.png \
        dropdown-history-dark-2x.png "$out"
else
    mkdir -p "$out"
    cp "$results"/out/*.png "$out"
fi
