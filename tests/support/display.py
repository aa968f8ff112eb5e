"""An X server of a test's own, with windows that are found as a user finds them: by title."""
import contextlib
import os
import re
import subprocess
import sys
import time

PATIENCE = 60  # seconds until something counts as missing


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
    """The id of the newest window that the user sees under a title."""
    return until(lambda: visible(title), f"window {title!r}")[-1]


def prop(title, name):
    return tool("xprop", "-id", window(title), name)


@contextlib.contextmanager
def running(*command, **options):
    process = subprocess.Popen(command, **options)
    try:
        yield process
    finally:
        process.terminate()  # an X server that is killed leaves its lock and its socket behind
        try:
            process.wait(PATIENCE)
        except subprocess.TimeoutExpired:
            process.kill()
            process.wait()


@contextlib.contextmanager
def display():
    reader, writer = os.pipe()
    # Else it starts anew when its last client goes, and refuses others meanwhile.
    server = ["Xvfb", "-displayfd", str(writer), "-noreset", "-nolisten", "tcp", "-screen", "0", "1280x960x24"]
    with running(*server, pass_fds=[writer], stderr=subprocess.DEVNULL):
        os.close(writer)
        with open(reader, encoding="ascii") as numbers:
            os.environ.update(DISPLAY=f":{numbers.readline().strip()}", QT_QPA_PLATFORM="xcb")
        yield


def environment(directory, **more):
    """For a novahost on the display, with this home directory."""
    # What the X plug-in's libraries keep can not be told by name: they are unloaded before leaks are looked for.
    return {**os.environ, "HOME": directory,
            "ASAN_OPTIONS": f"{os.environ.get('ASAN_OPTIONS', '')}:detect_leaks=0", **more}
