"""Answers the dialogs of a page with the keyboard, on an X server of its own.

usage: dialogs_test.py NOVAHOST
"""
import json
import os
import pathlib
import re
import signal
import subprocess
import sys
import tempfile
import time

sys.path.insert(0, str(pathlib.Path(__file__).parents[1] / "support"))
from display import PATIENCE, display, environment, prop, tool, until, window

# Name, the member, what the user types, and what the page is answered; $D is the directory.
ROWS = [
    ("MissingFileStays", "getOpenFileName", ["none.txt", "Return", "Escape", "Escape"], ""),
    ("SeveralFiles", "getOpenFileNames", ['"b.txt" "a space.txt"', "Return"], ["$D/b.txt", "$D/a space.txt"]),
    ("Directory", "getExistingDirectory", ["inner", "Return"], "$D/inner"),
    ("NameToSaveTo", "getWritableSaveFileName", ["new.txt", "Return"], "$D/new.txt"),
]


def start(novahost, directory, script):
    path = f"{directory}/page.js"
    with open(path, "w", encoding="utf-8") as file:
        file.write(f"with (NovaExtension.FileSystem) {{ {script} }} exit(0);")
    variables = environment(directory, PATH=f"{directory}/bin:{os.environ['PATH']}")
    return path, subprocess.Popen([novahost, "--window", "run", path], stdout=subprocess.PIPE, text=True, env=variables)


def answers_by_key(novahost, directory):
    calls = ", ".join(f"{member}({json.dumps({'caption': name, 'dir': directory})}).data" for name, member, _, _ in ROWS)
    page, host = start(novahost, directory, f"console.log(JSON.stringify([{calls}]));")
    shown = int(window(page))
    for name, _, keys, _ in ROWS:
        owner = re.search(r"# (0x[0-9a-f]+)", prop(name, "WM_TRANSIENT_FOR"))
        if name != "NameToSaveTo" and (not owner or int(owner[1], 16) != shown):
            sys.exit(f"{name}: the page's window {shown:#x} does not own the dialog: {owner and owner[1]}")
        for key in keys:
            time.sleep(0.3)
            # A dialog's question comes after the dialog, and ids grow.
            newest = max(map(int, tool("xdotool", "search", "--onlyvisible", "--pid", str(host.pid), "--name", ".").split()))
            tool("xdotool", "windowfocus", "--sync", str(newest))
            tool("xdotool", *(["key", key] if key in ("Return", "Escape") else ["type", key]))
    answers = json.loads(host.communicate(timeout=PATIENCE)[0])
    for (name, _, _, expected), answer in zip(ROWS, answers, strict=True):
        if json.loads(json.dumps(expected).replace("$D", directory)) != answer:
            sys.exit(f"{name}: expected {expected!r}, got {answer!r}")


def ends_while_a_dialog_is_open(novahost, directory):
    _, host = start(novahost, directory, f"getOpenFileName({{ caption: 'Left open', dir: {json.dumps(directory)} }});")
    window("Left open")
    host.send_signal(signal.SIGTERM)
    if host.wait(timeout=PATIENCE) != 128 + signal.SIGTERM:
        sys.exit(f"told to end while a dialog was open, novahost ended with {host.returncode}")


def opens_on_a_desktop(novahost, directory):
    _, host = start(novahost, directory, f"open({json.dumps(directory + '/a space.txt')});")
    if host.wait(timeout=PATIENCE) != 0:
        sys.exit("a file could not be opened")
    until(lambda: os.path.exists(f"{directory}/opened/a%20space.txt"), "desktop program that was told to open the file")


def main():
    with tempfile.TemporaryDirectory() as directory, display():
        for name in ("inner", "bin", "opened"):
            os.mkdir(f"{directory}/{name}")
        for name in ("a space.txt", "b.txt"):
            open(f"{directory}/{name}", "x", encoding="utf-8").close()
        # Stands for the desktop's opener.
        with open(os.open(f"{directory}/bin/xdg-open", os.O_WRONLY | os.O_CREAT, 0o755), "w", encoding="utf-8") as opener:
            opener.write('#!/bin/sh\ntouch "$HOME/opened/${1##*/}"\n')
        for test in (answers_by_key, ends_while_a_dialog_is_open, opens_on_a_desktop):
            test(sys.argv[1], directory)


main()
