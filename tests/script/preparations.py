"""What scripts of tests find in their data directory, which is their home, too."""
import fcntl
import json
import os
import pathlib
import shutil
import struct
import subprocess
import zlib

import archives


def replace_opener(data, script):
    """Puts a script in the place of the desktop's opener, which is not to open anything here."""
    os.makedirs(f"{data}/bin", exist_ok=True)
    with open(f"{data}/bin/xdg-open", "w", encoding="utf-8") as opener:
        opener.write(f"#!/bin/sh\n{script}")
    os.chmod(f"{data}/bin/xdg-open", 0o755)


def prepare_files(data):
    """What files.test.js finds in its data directory. Answers the open files whose locks it needs."""
    for name in ("tree", "odd", "opened", "closed", "holder/deep/inner", "links out", "links", "a folder",
                 "velmora/testproduct/linux-x64/addons/POOL/x", "velmora/testproduct/linux-x64/addons/pool",
                 "velmora/testproduct/linux-x64/addons/poolside"):
        os.makedirs(f"{data}/{name}")
    texts = {"plain.txt": "hello", "other.txt": "other", "empty.txt": "", "short-lived.txt": "x", "closed/kept.txt": "x",
             "holder/deep/kept.txt": "x", "tree/leaf.txt": "x", "script.txt": "#!/bin/sh\n", "locked whole.txt": "x",
             "locked part.txt": "x" * 10, "settings.ini": "[g]\nold=1\n",
             "commented.ini": "; kept by hand\n[g]\nold=1\n", "twice.ini": "[g]\nold=2\nold=1\n", "launcher.ini": "[g]\nold=1\n[Desktop Entry]\nExec=a; b\n",
             "deep.ini": "a=@Variant(" + r"\0\0\0\b\xff\xff\xff\xff\xff\xff\xff\xff" * 50000 + ")\n",
             "hidden.ini": "a=@Variant(" + r"\x10000\x10000\x10000\t\x10000\x10000\x10000\x1" * 50000 + ")\n", "other.ini": "[g]\nother=2\n",
             "notes.lock": "hello", "bytes.ini": "a=@ByteArray(caf\\xc3\\xa9)\n"}
    odd = ("with space", 'quote"', 'three"""', "line\nbreak", "$(x) `x` ; & ", "%1 %HOME%", "\U0001f600 \u00fc\u0301\u05d0",
           "-option", "back\\slash")
    texts.update({f"odd/{name}.txt": "x" for name in odd})
    for name, text in texts.items():
        with open(f"{data}/{name}", "w", encoding="utf-8") as file:
            file.write(text)
    for name, size in {"sparse.bin": 2**32 + 1, "shrinking.bin": 2**40, "restored.bin": 2**40}.items():
        with open(f"{data}/{name}", "wb") as file:
            file.truncate(size)
    os.utime(f"{data}/notes.lock", (0, 0))
    shutil.copy("/bin/true", f"{data}/program")
    for name in ("pipe", "full pipe", "held.lock"):
        os.mkfifo(f"{data}/{name}")
    links = {"broken": "none", "link to tree": "tree", "link to outer": "..", "link to odd": "odd", "link to copied": "copied.txt", "link to data": ".",
             "link to plain": "plain.txt", "tree/to closed": "../closed", "links out/home": data, "links out/closed": "../closed",
             "links out/file": "../plain.txt", "link to settings": "settings.ini",
             "link to deep": "holder/deep", "links/file": "../plain.txt", "links/tree": "../tree", "links/broken": "none"}
    for name, target in links.items():
        os.symlink(target, f"{data}/{name}")
    # Changes files of these names: one gets another size, one another byte and its old time of modification.
    replace_opener(data, """case "$1" in
*/shrinking.bin) truncate -s 10 "$1" ;;
*/full?pipe) exec timeout 10 cat "$1" > "$HOME/opened/full pipe" ;;
*/restored.bin) time=$(stat -c %y "$1"); printf x | dd of="$1" conv=notrunc status=none; touch -d "$time" "$1" ;;
esac
touch -- "$HOME/opened/${1##*/}"
""")
    # The working directory has another one, as a page could have left it there.
    with open(f"{data}/xdg-open", "w", encoding="utf-8") as trap:
        trap.write('touch "$HOME/trapped"; . "$HOME/bin/xdg-open"\n')
    # Waits for a reader, and has nobody to give its text to when that goes without reading.
    subprocess.Popen(["timeout", "60", "sh", "-c", 'printf hello > "$0"', f"{data}/full pipe"])
    locked = [open(f"{data}/locked {what}.txt", "r+", encoding="utf-8") for what in ("whole", "part")]
    fcntl.flock(locked[0], fcntl.LOCK_EX)
    fcntl.lockf(locked[1], fcntl.LOCK_EX, 4, 2)
    return locked


def prepare_plugins(data):
    """The plugins of plugins.test.js: in own/, and in hostile/ what is none."""
    files = {"a": "x" * 1_000_000, "deep/b": "x" * 2_000_000}
    few = {"resources/a": "hello", "b": "x" * 95}
    makes = {"big": (3_000_000, files, {}), "slow": (100, few, {"bytesPerSecond": 1}), "missing": (1, {}, {}),
             "short": (101, few, {}), "long": (99, few, {}), "changed": (100, few, {"sha256": "0" * 64}), "linked": (100, few, {}),
             "nested": (2, {"plugin.json": "{}"}, {})}
    plugins = {f"own/{name}": {"name": name, "version": "1", "source": f"{data}/source {name}", "bytes": size, **more}
               for name, (size, _, more) in makes.items()}
    for name, (_, texts, _) in makes.items():
        for path, text in texts.items():
            os.makedirs(os.path.dirname(f"{data}/source {name}/{path}"), exist_ok=True)
            pathlib.Path(f"{data}/source {name}/{path}").write_text(text, encoding="utf-8")
    os.symlink("/etc/hostname", f"{data}/source linked/c")
    plugins |= {"own/here": {"name": "here", "version": "1", "properties": {"any": {"": [1, 1.5, None, True, {"a": "\0"}], "large": 2**40}}},
                "own/broken": {"name": "broken", "version": "1", "library": "plugin.json"},
                "hostile/outside": {"name": "outside", "version": "1", "resources": "/etc"},
                "hostile/climbs": {"name": "climbs", "version": "1", "source": "a/../../own"},
                "hostile/named": {"name": "../own/here", "version": "1"},
                "hostile/typed": {"name": "typed", "version": 1, "titel": "x" * 100_000},
                "hostile/large": {"name": "large", "version": "1", "title": "x" * 2**20},
                "hostile/fetched": {"name": "fetched", "version": "1", "source": "a", "library": "b.so"}}
    for path, manifest in plugins.items():
        os.makedirs(f"{data}/{path}/resources")
        pathlib.Path(f"{data}/{path}/plugin.json").write_text(json.dumps(manifest), encoding="utf-8")
    os.symlink("/etc", f"{data}/own/here/resources/link")
    for name, text in {"deep": '{"name": "deep", "version": "1", "properties": {"a": ' + "[" * 400_000,
                       "twice": '{"name": "twice", "version": "1", "version": "2"}', "cut": '{"name"'}.items():
        os.makedirs(f"{data}/hostile/{name}")
        pathlib.Path(f"{data}/hostile/{name}/plugin.json").write_text(text, encoding="utf-8")
    os.makedirs(f"{data}/hostile/directory/plugin.json")


def prepare_remote_config(data):
    """The configurations of remoteconfig.test.js: config.json, and those that take its place."""
    config = {"version": "1", "data": {"a": 1, "b.c": [None, "x", {"y": 1.5}],
                                       "object": {"title": "", "title_nb": "", "title_nb_NO": "", "text_nb": "", "name_en": ""}},
              "groups": {"team": {"rules": [{"when": {"plan": "team"}, "value": "on"}], "value": "off"},
                         "versions": {"rules": [{"minVersion": "12.10", "value": 99}, {"minVersion": "12.5", "value": 12}]},
                         "share.0": {"rules": [{"percent": 0, "value": True}]},
                         "share.100": {"rules": [{"percent": 100, "value": True}]},
                         "everyone": {"rules": [{"when": {"language": ["nn", "nb"]}, "value": {"to": "nb"}}]}},
              "switches": {"fixed": {"on": True}, "free": {"on": False, "users": True}},
              "sections": {"editor": {"seconds": 60}}}
    following = {**config, "version": "2", "groups": {}, "switches": {"free": {"on": False}}}
    for name, text in {"config": json.dumps(config), "next": json.dumps(following), "broken": '{"version": 3}'}.items():
        pathlib.Path(f"{data}/{name}.json").write_text(text, encoding="utf-8")
    replace_opener(data, 'cp "$1" "$HOME/new.json" && mv "$HOME/new.json" "$HOME/config.json" && touch "$1.published"')


# Says what was passed along to it.
INNER_PAGE = """<!DOCTYPE html><title>inner</title><script>
    const { Event, Utils, Webview } = NovaExtension;
    Event.dispatchEvent("inner", false, Utils.getParamExtra().data, Utils.getParamExtra({ key: "a" }).data, Utils.getParamExtra({ key: "none" }).data,
        Webview.getSize().data.w);
</script>"""


def make_png(width, height, content=b""):
    """A picture in grey; without content it is cut off."""
    parts = [(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 0, 0, 0, 0)), (b"IDAT", zlib.compress(content)), (b"IEND", b"")][:3 if content else 1]
    return b"\x89PNG\r\n\x1a\n" + b"".join(struct.pack(">I", len(text)) + kind + text + struct.pack(">I", zlib.crc32(kind + text)) for kind, text in parts)


def prepare_desk(data):
    """What desk.test.js finds in its data directory."""
    os.mkdir(f"{data}/started")
    os.mkfifo(f"{data}/pipe")
    small = make_png(1, 1, b"\0\x80")
    files = {"upright.png": small, "other.png": small, "text.png": b"hello", "huge.png": make_png(16384, 16384, b"\0"), "cut.png": make_png(2, 2),
             "drawing.svg": b'<svg xmlns="http://www.w3.org/2000/svg" width="1" height="1"/>'}
    for name, content in files.items():
        pathlib.Path(data, name).write_bytes(content)


def prepare_document_chat(data):
    """What the document chat of documentchat.test.js reads."""
    os.makedirs(f"{data}/user/documents")
    pathlib.Path(f"{data}/user/documents/notes.txt").write_text(
        "The fox lives in the old forest. Nobody has seen its den.\n\nA forest fire broke out in\n2019! The fox fled.\n",
        encoding="utf-8")


def prepare_cloud(data):
    """The folders of cloudadapter.test.js and syncfolder.test.js."""
    for folder in ("user/papers/deep", "Desktop", "user/holder/deep/closed"):
        os.makedirs(f"{data}/{folder}")
    for path, text in {"a.txt": "123456", "deep/b.txt": "abc"}.items():
        pathlib.Path(f"{data}/user/papers/{path}").write_text(text, encoding="utf-8")
    for path in ("link", "papers/link"):
        os.symlink(f"{data}/user/papers", f"{data}/user/{path}")


# By the name of the test; a function may answer files that are to stay open.
PREPARATIONS = {"archives": archives.prepare, "cloudadapter": prepare_cloud, "desk": prepare_desk,
                "documentchat": prepare_document_chat, "files": prepare_files, "plugins": prepare_plugins,
                "remoteconfig": prepare_remote_config, "syncfolder": prepare_cloud}
