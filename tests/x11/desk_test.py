"""The clipboard, the eyedropper and the dialogs of a page as the user and other programs see them, on an X server of its own.

usage: desk_test.py NOVAHOST
"""
import contextlib
import json
import pathlib
import queue
import re
import struct
import subprocess
import sys
import tempfile
import threading

sys.path.insert(0, str(pathlib.Path(__file__).parents[1] / "support"))
from display import PATIENCE, display, environment, prop, running, tool, until, visible, window


def turned(jpeg):
    """The picture of a camera that was held upright: who shows it turns it to the right."""
    exif = b"Exif\0\0II*\0\x08\0\0\0\x01\0" + struct.pack("<HHIHH", 0x112, 3, 1, 6, 0) + b"\0\0\0\0"
    return jpeg[:2] + b"\xff\xe1" + struct.pack(">H", len(exif) + 2) + exif + jpeg[2:]


def same(what, got, expected):
    if got != expected:
        sys.exit(f"{what}: expected {expected!r}, got {got!r}")


@contextlib.contextmanager
def page(novahost, directory, script, **variables):
    """A page in a window that has its path as the title, and a function that returns what its script says next. Until then the
    user does something, again and again: what is done before a window is there is lost."""
    path = pathlib.Path(directory, "page.js")
    path.write_text("const { Payment, Tools, Utils, Webview } = NovaExtension;\nconst say = (value) => console.log(JSON.stringify(value));\n"
                    f"{script}\nawait new Promise(() => 1);", encoding="utf-8")
    variables = environment(directory, **variables)
    with running(novahost, "--window", "run", path, stdout=subprocess.PIPE, text=True, env=variables) as host:
        lines = queue.SimpleQueue()
        threading.Thread(target=lambda: [lines.put(line) for line in host.stdout], daemon=True).start()

        def said(act=None, *given):
            for _ in range(PATIENCE):
                if act:
                    act(*given)
                with contextlib.suppress(queue.Empty):
                    return json.loads(lines.get(timeout=1))
            sys.exit(f"the page says nothing more; it has ended: {host.poll()}")
        yield str(path), said


def clipboard(*options, text=None):
    command = ["xclip", "-selection", "clipboard", *options]
    if text is None:
        return subprocess.run([*command, "-o"], check=False, capture_output=True).stdout
    # What xclip leaves behind to serve the selection would hold pipes open.
    return subprocess.run(command, input=text, check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)


def shares_the_clipboard(novahost, directory):
    # Red beside green: a window bitmap has rows of whole words from the lowest up, blue first.
    size, pixels = (32, 16), (b"\0\0\xff" * 16 + b"\0\xff\0" * 16) * 16
    pathlib.Path(directory, "wide.bmp").write_bytes(
        b"BM" + struct.pack("<IIIIiiHHIIiiII", 54 + len(pixels), 0, 54, 40, *size, 1, 24, 0, len(pixels), 0, 0, 0, 0) + pixels)
    text = "a\u00fc\U0001f600\n" * 100_000
    script = f"""
        const changed = async (before) => {{
            while (Utils.getClipboardText().data === before) await new Promise((resolve) => setTimeout(resolve, 20));
        }};
        const text = Utils.getClipboardText().data;
        say(text.length);
        Utils.setTextToClipboard(text.slice(0, text.length / 2));
        say("text");
        await changed(text.slice(0, text.length / 2));
        for (const name of ["wide.bmp", "turned.jpg"]) {{
            Utils.setImageToClipboard({{ path: {json.dumps(directory)} + "/" + name }});
            say(name);
            await changed("");
        }}"""
    clipboard(text=text.encode())
    with page(novahost, directory, script) as (_, said):
        # In UTF-16.
        same("the text of another program", said(), len(text.encode("utf-16-le")) // 2)
        said()
        same("a text for another program", clipboard().decode(), text[:len(text) // 2])
        clipboard(text=b"go on")
        for name, expected in (("wide.bmp", size), ("turned.jpg", size[::-1])):
            same("picture", said(), name)
            shown = clipboard("-t", "image/bmp")
            same(name, struct.unpack_from("<ii", shown, 18), expected)
            pathlib.Path(directory, "turned.jpg").write_bytes(turned(clipboard("-t", "image/jpeg")))
            clipboard(text=name.encode())
        # The lowest row is of what was on the right.
        offset = struct.unpack_from("<I", shown, 10)[0]
        blue, green, red = shown[offset:offset + 3]
        if not blue + red < 60 < 200 < green:
            sys.exit(f"the picture is not upright: {red, green, blue}")


def picks_pixels(novahost, directory, scale):
    """A window of one colour on black, whose edges are known to the pixel."""
    script = """
        Webview.setSize({ w: 300, h: 200 });
        Webview.setWindowBackgroundColor({ r: 0x12, g: 0x34, b: 0x56 });
        while (true) {
            await new Promise((resolve) => setTimeout(resolve, 20)); // the window is painted between two
            await new Promise((resolve) => { say(Utils.getSnapperColor({}, (picked) => { say(picked); resolve(); }).data); });
        }"""
    with page(novahost, directory, script, QT_SCALE_FACTOR=str(scale)) as (title, said):
        def place():
            facts = tool("xwininfo", "-id", window(title))
            found = [int(re.search(fr"{name}: +(-?\d+)", facts)[1]) for name in ("upper-left X", "upper-left Y", "Width", "Height")]
            return found[2] * 2 == found[3] * 3 and found  # once it has its size

        def pick(x, y):
            same("shown", said(), True)
            return said(tool, "xdotool", "mousemove", str(x), str(y), "click", "1")

        left, top, width, height = until(place, "the window's size")
        inside, outside = {"accepted": True, "color": "#123456"}, {"accepted": True, "color": "#000000"}
        middle = top + height // 2
        rows = [("the first pixel", left + 1, middle, inside), ("the last", left + width - 2, middle, inside), ("beside it", left + width, middle, outside),
                ("below it", left + 10, top + height, outside), ("at the corner", 1279, 959, outside)]
        until(lambda: pick(left + width // 2, middle) == inside, "the window's colour")
        for name, x, y, expected in rows:
            same(f"scale {scale}, {name} at {x}, {y} of {place()}", pick(x, y), expected)
        for keys in (["key", "Escape"], ["click", "3"]):
            said()
            same(f"cancelled by {keys}", said(tool, "xdotool", *keys), {"accepted": False})


def press(title, key):
    for shown in visible(title):
        tool("xdotool", "windowfocus", "--sync", shown, "key", key)


def answers_dialogs(novahost, directory):
    script = """
        say(Tools.showConfirmDlg({ title: "Sure", text: "<b>bold</b>", detail: "<i>", buttons: ["No", "Save & quit"], defaultButton: 1 }).data);
        say(Tools.showConfirmDlg({ title: "Sure again", text: "?", buttons: ["Only"] }).data);
        const picked = new Promise((resolve) => {
            say(Utils.pickColor({ title: "Colour", color: "#654321" }, (color) => { say(color); resolve(); }).data);
        });
        await new Promise((resolve) => setTimeout(resolve, 100));
        say(Utils.pickColor({ title: "Second" }, say).data);
        await picked;
        say(await Payment.open({ source: "page", item: "super" }));"""
    with page(novahost, directory, script) as (title, said):
        owner = re.search(r"# (0x[0-9a-f]+)", prop("Sure", "WM_TRANSIENT_FOR"))
        same("the owner", owner and int(owner[1], 16), int(window(title)))
        same("the default button", said(press, "Sure", "Return"), 1)
        same("cancelled", said(press, "Sure again", "Escape"), -1)
        same("shown", said(), True)
        same("a second one", said(), False)
        same("the colour that it began with", said(press, "Colour", "Return"), {"accepted": True, "color": "#654321"})
        owner = re.search(r"# (0x[0-9a-f]+)", prop("Buy a membership", "WM_TRANSIENT_FOR"))
        same("the owner of the purchase", owner and int(owner[1], 16), int(window(title)))
        same("the purchase", said(press, "Buy a membership", "Return"), {"status": "purchased", "item": "super"})


def main():
    with tempfile.TemporaryDirectory() as directory, display():
        for scale in (1, 2):
            picks_pixels(sys.argv[1], directory, scale)
        shares_the_clipboard(sys.argv[1], directory)
        answers_dialogs(sys.argv[1], directory)


main()
