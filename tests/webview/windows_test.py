"""Runs windows.test.js at several scales on an X server of its own with a window manager, and does what its
user does.

usage: windows_test.py NOVAHOST DRAG_SOURCE SCRIPT
"""
import contextlib
import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import time

sys.path.insert(0, str(pathlib.Path(__file__).parents[1] / "support"))
from display import PATIENCE, display, environment, prop, running, tool, until, visible, window


def active():
    return tool("xdotool", "getactivewindow").strip()


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
def desktop():
    with display(), running("openbox", "--config-file", "/dev/null", stderr=subprocess.DEVNULL):
        until(lambda: "window id" in tool("xprop", "-root", "_NET_SUPPORTING_WM_CHECK"), "window manager")
        yield


def run(novahost, engine, script, directory, scale):
    profile = f"{directory}/profile.json"
    with open(profile, "w", encoding="utf-8") as file:
        json.dump({"dpi": {"scale": scale}}, file)
    root = {"QTWEBENGINE_DISABLE_SANDBOX": "1"} if os.geteuid() == 0 else {}
    command = [novahost, engine, "--profile", profile, "run", script, directory, str(scale)]
    with running(*command, stdout=subprocess.PIPE, text=True, env=environment(directory, **root)) as host:
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
    with desktop():
        for scale in (1, 1.5, 2):
            with tempfile.TemporaryDirectory() as directory:
                files = [f"{directory}/{name}" for name in ("a file.txt", "b.txt")]
                for file in files:
                    open(file, "x", encoding="utf-8").close()
                with running(source, *files):
                    run(novahost, engine, script, directory, scale)


main()
