#!/usr/bin/env python3
"""Usage: preferences-start.py PROGRAM [RUNS]

How long the window for the settings takes from its start until it is painted, in milliseconds: the
fastest, the middle and the slowest of RUNS starts, and the processor time of the middle one. It is
painted when the piece of a dark bar at its top has its colour on the screen of an X server of our
own, which is a file that is looked into every millisecond."""
import mmap, os, resource, struct, subprocess, sys, tempfile, time

WIDTH, HEIGHT, DARK_BAR = 900, 720, 0x232326

def painted(screen):
    """Looks at every fourth row of the upper half, left of its middle."""
    header, colours = struct.unpack(">I", screen[0:4])[0], struct.unpack(">I", screen[76:80])[0]
    begin, row = header + 12 * colours, 4 * WIDTH
    column = 4 * (WIDTH // 2 - 200)
    wanted = struct.pack("<I", DARK_BAR)[:3]
    places = (begin + y * row + column for y in range(0, HEIGHT // 2, 4))
    return any(screen[place:place + 3] == wanted for place in places)

def start(program, environment, screen):
    begin = time.monotonic()
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    window = subprocess.Popen([program], env=environment, stdin=subprocess.DEVNULL)
    while not painted(screen) and time.monotonic() - begin < 20:
        time.sleep(0.001)
    took = time.monotonic() - begin
    window.terminate()
    window.wait()
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    spent = after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime
    while painted(screen):
        time.sleep(0.01)
    return 1000 * took, 1000 * spent

def main():
    program, runs = sys.argv[1], int(sys.argv[2]) if len(sys.argv) > 2 else 11
    with tempfile.TemporaryDirectory() as home:
        reading, writing = os.pipe()
        server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(writing), "-screen", "0", f"{WIDTH}x{HEIGHT}x24", "-fbdir",
             home, "-nolisten", "tcp", "-noreset"], pass_fds=[writing],
            stderr=subprocess.DEVNULL)
        display = ":" + os.read(reading, 16).decode().strip()
        environment = {"HOME": home, "XDG_RUNTIME_DIR": home, "DISPLAY": display,
                       "PATH": os.environ["PATH"]}
        try:
            with open(os.path.join(home, "Xvfb_screen0"), "rb") as file:
                screen = mmap.mmap(file.fileno(), 0, prot=mmap.PROT_READ)
            taken = sorted(start(program, environment, screen) for _ in range(runs))
        finally:
            server.terminate()
            server.wait()
    fastest, middle, slowest = taken[0], taken[len(taken) // 2], taken[-1]
    print(f"{fastest[0]:.0f} ms, {middle[0]:.0f} ms, {slowest[0]:.0f} ms; "
          f"processor {middle[1]:.0f} ms; load {os.getloadavg()[0]:.1f}")

main()
