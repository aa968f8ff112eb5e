"""The files of archives.test.js: archives that are made by hand, most of them hostile."""
import os
import pathlib
import stat
import struct
import zlib

DEFLATED, BZIP2 = 8, 12
UNIX = 3 << 8
LINK, DEVICE, SETUID = stat.S_IFLNK | 0o777, stat.S_IFBLK | 0o666, stat.S_IFREG | 0o6755


def entry(name, text=b"hello", *, flags=0x800, method=DEFLATED, mode=0, crc=None, declared=None, extra=b"", again=False):
    """An entry; `again` lists the bytes of the one before once more."""
    packer = zlib.compressobj(9, zlib.DEFLATED, -15)
    packed = packer.compress(text) + packer.flush() if method else text
    size = len(text) if declared is None else declared
    name = name if isinstance(name, bytes) else name.encode()
    fields = struct.pack("<HHHIIII", method, 12 << 11, 33 << 9 | 1 << 5 | 1, zlib.crc32(text) if crc is None else crc,
                         len(packed), size, len(name) | len(extra) << 16)
    head = struct.pack("<HH", 45, flags)
    return (b"PK\3\4" + head + fields + name + extra + packed, again,
            b"PK\1\2" + struct.pack("<H", UNIX | 30) + head + fields + struct.pack("<HHHI", 0, 0, 0, mode << 16), name + extra)


def archive(*entries, count=None):
    content, directory, begin = b"", b"", 0
    for local, again, record, name in entries:
        if not again:
            begin = len(content)
            content += local
        directory += record + struct.pack("<I", begin) + name
    count = len(entries) if count is None else count
    return content + directory + b"PK\5\6" + struct.pack("<HHHHIIH", 0, 0, count, count, len(directory), len(content), 0)


def large(size):
    return struct.pack("<HHQ", 1, 8, size)


ARCHIVES = {
    "good": archive(entry("a/", b""), entry("a/b.txt", mode=SETUID), entry("a/c/\u00fc.txt"), entry("stored.txt", method=0)),
    "nothing": archive(), "old": archive(entry(b"\x81.txt", flags=0)), "unflagged": archive(entry("\u00fc.txt", flags=0)),
    "one": archive(entry("kept/new.txt"), entry("kept/old.txt", b"other")), "over": archive(entry("kept/old.txt", b"other"), entry("z.txt")),
    "on directory": archive(entry("a.txt"), entry("kept")), "through link": archive(entry("a.txt"), entry("link/b.txt")),
    "closed": archive(entry("deep/inner/b.txt")), "zeros": archive(entry("a.txt"), entry("zeros", bytes(8_000_000))),
    "case": archive(entry("a.txt"), entry("A.txt")),
    # refused by the name of the entry
    "climbs": archive(entry("../x.txt")), "climbs below": archive(entry("a.txt"), entry("a/../../x.txt")), "absolute": archive(entry("/x.txt")),
    "drive": archive(entry("C:/x.txt")), "backslash": archive(entry("..\\x.txt")), "zero": archive(entry(b"x.txt\0.png")),
    "control": archive(entry("x\x1b.txt")), "overlong": archive(entry(b"\xc0\xae\xc0\xae/x.txt")), "half a pair": archive(entry(b"\xed\xa0\x80x.txt")),
    "no UTF-8": archive(entry(b"\x81.txt")), "no step": archive(entry("a//x.txt")), "no name": archive(entry("")), "long": archive(entry("x" * 256)),
    "deep": archive(entry("x/" * 100 + "x.txt")), "dot": archive(entry("./x.txt")),
    # by what it is
    "link": archive(entry("x.txt", b"/etc/passwd", mode=LINK)), "device": archive(entry("x.txt", b"", mode=DEVICE)),
    "twice": archive(entry("x.txt"), entry("x.txt")), "file as directory": archive(entry("x.txt"), entry("x.txt/b.txt")),
    "directory as file": archive(entry("x.txt/", b""), entry("x.txt")), "program": archive(entry("a.txt"), entry("x.txt", b"#!/bin/sh\n")),
    "script": archive(entry("x.py", b"import os\n")), "bzip2": archive(entry("x.txt", method=BZIP2)), "encrypted": archive(entry("x.txt", flags=0x801)),
    "full directory": archive(entry("x.txt/", b"x")),
    # by its content
    "checksum": archive(entry("a.txt"), entry("x.txt", crc=1)), "less": archive(entry("x.txt", b"hello" * 9, declared=5)),
    "more": archive(entry("x.txt", declared=6)), "cut": archive(entry("a.txt"), entry("x.txt", b"x" * 99))[:-80], "no archive": b"hello" * 100,
    "lost": archive(entry("x.txt", b"x" * 99))[99:], "count": archive(entry("x.txt"), count=9), "many": archive(*[entry("a.txt")] * 2, count=0xffff),
    "overlaps": archive(entry("a.txt"), *[entry(name, bytes(1000), again=name > "x") for name in ("b.txt", "x.txt")]),
    "large": archive(entry("x.txt", declared=2**31)), "huge": archive(entry("x.txt", declared=0xffffffff, extra=large(2**63))),
    "all bits": archive(entry("a.txt"), entry("x.txt", declared=0xffffffff, extra=large(2**64 - 1))),
    "real size": archive(entry("x.txt", bytes(2000))),
}


def prepare(data):
    for name in ("archives", "place/kept", "place/closed/inner", "tree/deep/empty", "pile"):
        os.makedirs(f"{data}/{name}")
    for name, content in ARCHIVES.items():
        pathlib.Path(f"{data}/archives/{name}.zip").write_bytes(content)
    texts = {"tree/a.txt": "hello", "tree/deep/\u00fc.txt": "other", "place/kept/old.txt": "old", "older.zip": "older", "script.txt": "#!/bin/sh\n", "keys": "x",
             "odd\\name.txt": "x"}
    for name, text in texts.items():
        pathlib.Path(data, name).write_text(text, encoding="utf-8")
    for name, target in {"tree/link": "/etc/passwd", "place/link": "kept", "link": "tree/a.txt"}.items():
        os.symlink(target, f"{data}/{name}")
    os.mkfifo(f"{data}/tree/pipe")
    os.mkfifo(f"{data}/pipe")
    with open(f"{data}/noise", "wb") as file:
        file.write(os.urandom(8_000_000))
    for name, size in {"zeros": 2_000_000, "sparse": 2**28}.items():
        with open(f"{data}/{name}", "wb") as file:
            file.truncate(size)
    for number in range(100_001):
        os.close(os.open(f"{data}/pile/{number}", os.O_CREAT))
