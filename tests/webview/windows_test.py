"""Runs windows.test.js at several scales on an X server of its own with a window manager, and does what its
user does.

usage: windows_test.py NOVAHOST DRAG_SOURCE SCRIPT
"""
import contextlib
import json
import os
import re
import subprocess
import sys
import tempfile
import time

PATIENCE = 60  # seconds


def tool(*command):
    return subprocess.run(command, capture_output=True, text=True, check=False).stdout


def until(find, what):
    end = time.monotonic() + PATIENCE
    while time.monotonic() < end:
        found = find()
        if found:
            return found
        time.sleep(0.03)
    sys.exit(f"not seen: {what}")


def visible(title):
    return tool("xdotool", "search", "--onlyvisible", "--name", f"^{re.escape(title)}$").split()


def window(title):
    return until(lambda: visible(title), f"window {title!r}")[-1]


def active():
    return tool("xdotool", "getactivewindow").strip()


def prop(title, name):
    return tool("xprop", "-id", window(title), name)


def focus(title):
    found = window(title)
    until(lambda: tool("xdotool", "windowactivate", found) or active() == found, f"{title} active")
    time.sleep(0.5)  # Qt waits before it takes a window for inactive, and takes no notice of what has changed back meanwhile


def place(title):
    return [int(number) for number in re.findall(r"Absolute upper-left [XY]: +(-?\d+)", tool("xwininfo", "-id", window(title)))]


def move(x, y):
    tool("xdotool", "mousemove", "--sync", str(x), str(y))


def press_and_move(begin, end):
    """Holds the left button on the way: in small steps, as a hand does it."""
    move(*begin)
    tool("xdotool", "mousedown", "1")
    for part in range(1, 11):
        tool("xdotool", "mousemove", *(str(a + (b - a) * part // 10) for a, b in zip(begin, end)))
        time.sleep(0.02)
    time.sleep(0.2)
    tool("xdotool", "mouseup", "1")


def drag(title, x, y, dx, dy):
    left, top = place(title)
    press_and_move((left + x, top + y), (left + x + dx, top + y + dy))


def over(title):
    left, top = place(title)
    move(left + 10, top + 10)
    time.sleep(0.1)


def is_fixed(title):
    sizes = re.findall(r"m\w+ size: (\d+) by (\d+)", prop(title, "WM_NORMAL_HINTS"))
    return len(sizes) == 2 and sizes[0] == sizes[1]


def is_sized(title, *size):
    return [int(length) for length in re.findall(r"(?:Width|Height): (\d+)", tool("xwininfo", "-id", window(title)))] == list(size)


STEPS = {
    "wait": window,
    "settle": lambda: time.sleep(0.1),
    "hidden": lambda title: until(lambda: not visible(title), f"{title} hidden"),
    "state": lambda title, state, is_set: until(lambda: (state in prop(title, "_NET_WM_STATE")) == is_set, f"{title}: {state} {is_set}"),
    "fixed": lambda title, fixed: until(lambda: is_fixed(title) == fixed, f"{title} fixed: {fixed}"),
    "sized": lambda title, *size: until(lambda: is_sized(title, *size), f"{title} of size {size}"),
    "owned": lambda title, owner: until(lambda: f"{int(window(owner)):#x}" in prop(title, "WM_TRANSIENT_FOR"), f"{owner} owns {title}"),
    "focus": focus,
    "other window": lambda: focus("Other"),
    "key": lambda key: tool("xdotool", "key", key),
    "over": over,
    "drag": drag,
    "drop": lambda title: press_and_move((30, 930), [part + 50 for part in place(title)]),
}


@contextlib.contextmanager
def running(*command, **options):
    process = subprocess.Popen(command, **options)
    try:
        yield process
    finally:
        process.kill()
        process.wait()


@contextlib.contextmanager
def display():
    reader, writer = os.pipe()
    server = ["Xvfb", "-displayfd", str(writer), "-nolisten", "tcp", "-screen", "0", "1280x960x24"]
    with running(*server, pass_fds=[writer], stderr=subprocess.DEVNULL):
        os.close(writer)
        with open(reader, encoding="ascii") as numbers:
            os.environ["QT_QPA_PLATFORM"] = "xcb"
            os.environ["DISPLAY"] = f":{numbers.readline().strip()}"
        with running("openbox", "--config-file", "/dev/null", stderr=subprocess.DEVNULL):
            until(lambda: "window id" in tool("xprop", "-root", "_NET_SUPPORTING_WM_CHECK"), "window manager")
            yield


def run(novahost, engine, script, directory, scale):
    profile = f"{directory}/profile.json"
    with open(profile, "w", encoding="utf-8") as file:
        json.dump({"dpi": {"scale": scale}}, file)
    # What the X plug-in's libraries keep can not be told by name: they are unloaded before leaks are looked for.
    environment = {**os.environ, "HOME": directory,
                   "ASAN_OPTIONS": f"{os.environ.get('ASAN_OPTIONS', '')}:detect_leaks=0"}
    if os.geteuid() == 0:
        environment["QTWEBENGINE_DISABLE_SANDBOX"] = "1"
    command = [novahost, engine, "--profile", profile, "run", script, directory, str(scale)]
    with running(*command, stdout=subprocess.PIPE, text=True, env=environment) as host:
        for line in host.stdout:
            try:
                done, step, *arguments = json.loads(line)
            except ValueError:
                sys.exit(f"novahost wrote {line}")
            STEPS[step](*arguments)
            open(done, "x", encoding="utf-8").close()
        if host.wait(timeout=PATIENCE) != 0:
            sys.exit(f"scale {scale}: exit code {host.returncode}")


def main():
    novahost, engine, source, script = sys.argv[1:]
    with display():
        for scale in (1, 1.5, 2):
            with tempfile.TemporaryDirectory() as directory:
                files = [f"{directory}/{name}" for name in ("a file.txt", "b.txt")]
                for file in files:
                    open(file, "x", encoding="utf-8").close()
                with running(source, *files):
                    run(novahost, engine, script, directory, scale)


main()
