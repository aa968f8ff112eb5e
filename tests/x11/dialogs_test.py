"""Answers the dialogs of a page with the keyboard, on an X server of its own.

usage: dialogs_test.py NOVAHOST
"""
import contextlib
import json
import os
import re
import signal
import subprocess
import sys
import tempfile
import time

PATIENCE = 60  # seconds until a window counts as missing

# Name, the call ($T its title, $D the directory), what the user types, and what the page is answered.
ROWS = [
    ("OneFile", "getOpenFileName({ caption: $T, dir: $D }).data", ["b.txt", "Return"], "$D/b.txt"),
    ("FileByFilter", "getOpenFileName({ caption: $T, dir: $D, filter: 'Text (*.txt)' }).data", ["a space.txt", "Return"], "$D/a space.txt"),
    ("FileCancelled", "getOpenFileName({ caption: $T, dir: $D }).data", ["Escape"], ""),
    ("MissingFileStays", "getOpenFileName({ caption: $T, dir: $D }).data", ["none.txt", "Return", "Escape", "Escape"], ""),
    ("SeveralFiles", "getOpenFileNames({ caption: $T, dir: $D }).data", ['"b.txt" "a space.txt"', "Return"], ["$D/b.txt", "$D/a space.txt"]),
    ("Directory", "getExistingDirectory({ caption: $T, dir: $D }).data", ["inner", "Return"], "$D/inner"),
    ("LocalFolder", "selectLocalFolder({ caption: $T, dir: $D }).data", ["inner", "Return"], "$D/inner"),
    ("NameToSaveTo", "getWritableSaveFileName({ caption: $T, dir: $D }).data", ["new.txt", "Return"], "$D/new.txt"),
]
KEYS = {"Return", "Escape"}


def tool(*command):
    return subprocess.run(command, capture_output=True, text=True, check=False).stdout


def until(find, what):
    end = time.monotonic() + PATIENCE
    while time.monotonic() < end:
        found = find()
        if found:
            return found
        time.sleep(0.05)
    sys.exit(f"there was no {what}")


def window(title):
    """The id of the window that the user sees under a title."""
    return until(lambda: tool("xdotool", "search", "--onlyvisible", "--name", f"^{re.escape(title)}$").split(), f"window {title!r}")[-1]


def newest_window(pid):
    """The window that takes the keys: a dialog's question comes after the dialog. Ids grow."""
    return str(max(map(int, tool("xdotool", "search", "--onlyvisible", "--pid", str(pid), "--name", ".").split())))


@contextlib.contextmanager
def display():
    reader, writer = os.pipe()
    server = subprocess.Popen(["Xvfb", "-displayfd", str(writer), "-screen", "0", "1280x1024x24", "-nolisten", "tcp"],
                              pass_fds=[writer], stderr=subprocess.DEVNULL)
    os.close(writer)
    try:
        with open(reader, encoding="ascii") as numbers:
            os.environ["DISPLAY"] = f":{numbers.readline().strip()}"
        yield
    finally:
        server.terminate()
        server.wait()


def start(novahost, directory, script):
    path = f"{directory}/page.js"
    with open(path, "w", encoding="utf-8") as file:
        file.write(script)
    # What the X plug-in's libraries keep can not be told by name: they are unloaded before leaks are looked for.
    environment = {**os.environ, "HOME": directory, "PATH": f"{directory}/bin:{os.environ['PATH']}", "QT_QPA_PLATFORM": "xcb",
                   "ASAN_OPTIONS": f"{os.environ.get('ASAN_OPTIONS', '')}:detect_leaks=0"}
    return path, subprocess.Popen([novahost, "--window", "run", path], stdout=subprocess.PIPE, text=True, env=environment)


def answers_by_key(novahost, directory):
    calls = ",\n".join(call.replace("$T", json.dumps(name)).replace("$D", json.dumps(directory)) for name, call, _, _ in ROWS)
    page, host = start(novahost, directory, f"with (NovaExtension.FileSystem) console.log(JSON.stringify([{calls}])); exit(0);")
    shown = int(window(page))
    for name, _, keys, _ in ROWS:
        dialog = window(name)
        owner = re.search(r"# (0x[0-9a-f]+)", tool("xprop", "-id", dialog, "WM_TRANSIENT_FOR"))
        if name != "NameToSaveTo" and (not owner or int(owner[1], 16) != shown):
            sys.exit(f"{name}: the page's window {shown:#x} does not own the dialog: {owner and owner[1]}")
        for key in keys:
            time.sleep(0.3)
            tool("xdotool", "windowfocus", "--sync", newest_window(host.pid))
            tool("xdotool", *(["key", key] if key in KEYS else ["type", key]))
    answers = json.loads(host.communicate(timeout=PATIENCE)[0])
    for (name, _, _, expected), answer in zip(ROWS, answers, strict=True):
        if json.loads(json.dumps(expected).replace("$D", directory)) != answer:
            sys.exit(f"{name}: expected {expected!r}, got {answer!r}")


def ends_while_a_dialog_is_open(novahost, directory):
    script = f"NovaExtension.FileSystem.getOpenFileName({{ caption: 'Left open', dir: {json.dumps(directory)} }}); exit(0);"
    _, host = start(novahost, directory, script)
    window("Left open")
    host.send_signal(signal.SIGTERM)
    if host.wait(timeout=PATIENCE) != 128 + signal.SIGTERM:
        sys.exit(f"told to end while a dialog was open, novahost ended with {host.returncode}")


def opens_on_a_desktop(novahost, directory):
    script = f"NovaExtension.FileSystem.open({json.dumps(directory + '/a space.txt')}); exit(0);"
    _, host = start(novahost, directory, script)
    if host.wait(timeout=PATIENCE) != 0:
        sys.exit("a file could not be opened")
    until(lambda: os.path.exists(f"{directory}/opened"), "desktop program that was told to open the file")
    with open(f"{directory}/opened", encoding="utf-8") as file:
        if not file.read().endswith("/a%20space.txt\n"):
            sys.exit("another file was opened")


def main():
    with tempfile.TemporaryDirectory() as directory, display():
        os.makedirs(f"{directory}/inner")
        os.makedirs(f"{directory}/bin")
        for name in ("a space.txt", "b.txt", "c.png"):
            with open(f"{directory}/{name}", "w", encoding="utf-8"):
                pass
        # Stands for the desktop's opener.
        with open(f"{directory}/bin/xdg-open", "w", encoding="utf-8") as opener:
            opener.write('#!/bin/sh\nprintf "%s\\n" "$1" > "$HOME/opening" && mv "$HOME/opening" "$HOME/opened"\n')
        os.chmod(f"{directory}/bin/xdg-open", 0o755)
        for test in (answers_by_key, ends_while_a_dialog_is_open, opens_on_a_desktop):
            test(sys.argv[1], directory)


main()
