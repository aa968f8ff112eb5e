"""Makes and extends zip archives with the exported functions, and reads them with Python's zipfile and `unzip -t`.

usage: zip_test.py LIBVEXLITEJSAPI LIBKBASE APPLICATION [--large]; with --large only what has more than 4 GiB
"""
import ctypes
import os
import pathlib
import random
import resource
import signal
import stat
import struct
import subprocess
import sys
import tempfile
import threading
import zipfile

OK, BAD_ARGUMENT, BAD_NAME, NOT_FOUND, UNREADABLE, EXISTS, NOT_ARCHIVE, WRITE_FAILED, NO_SPACE = range(0, -9, -1)
random.seed(7)
NOISE = random.randbytes(3_000_000)
faults = []


def expect(name, got, expected):
    if got != expected:
        faults.append(f"{name}: expected {expected!r}, got {got!r}"[:600])


def utf16(text):
    return None if text is None else f"{text}\0".encode("utf-16-le", "surrogatepass")


def compress(path, sources, level=-1):
    texts = [utf16(source) for source in sources]
    return LIBRARY._XCompressToZipFile(utf16(path), (ctypes.c_char_p * len(texts))(*texts), len(texts), level)


def append(path, file, name=None, level=-1):
    return LIBRARY._XAppendFileToZipFile(utf16(path), utf16(file), utf16(name), level)


def add(path, file, name=None, level=-1):
    return LIBRARY._XAddFileToZipFile(utf16(path), utf16(file), utf16(name), level)


def content(path):
    """Names and contents, as two programs read them."""
    said = subprocess.run(["unzip", "-tqq", path], capture_output=True, text=True, check=False)
    expect(f"unzip -t {path}", said.stdout + said.stderr, "")
    with zipfile.ZipFile(path) as archive:
        return {name: archive.read(name) for name in archive.namelist()}


def info(path, name):
    with zipfile.ZipFile(path) as archive:
        return archive.getinfo(name)


def check_trees():
    os.makedirs("tree/deep/empty")
    texts = {"a.txt": b"hello" * 1000, "deep/\u00fc \U0001f600.txt": b"x", "none": b"", "noise": NOISE}
    for name, text in texts.items():
        pathlib.Path("tree", name).write_bytes(text)
    os.symlink("/etc/passwd", "tree/link")
    os.mkfifo("tree/pipe")
    os.symlink("tree/a.txt", "named link")
    os.chmod("tree/a.txt", 0o640)
    os.utime("tree/a.txt", (1e9, 1e9))
    os.utime("tree/none", (0, 0))
    expected = {"tree/": b"", "tree/deep/": b"", "tree/deep/empty/": b"", **{f"tree/{k}": v for k, v in texts.items()}}
    for level in range(-1, 10):
        expect(f"level {level}", compress("tree/own.zip", ["tree/", "named link"], level), OK)
        expect(f"level {level}: content", content("tree/own.zip"), {**expected, "named link": texts["a.txt"]})
    entry = info("tree/own.zip", "tree/a.txt")
    expect("mode", oct(entry.external_attr >> 16), oct(stat.S_IFREG | 0o640))
    expect("time", struct.unpack("<HHBi", entry.extra[:9]), (0x5455, 5, 1, 10**9))
    expect("the name is flagged as UTF-8", info("tree/own.zip", "tree/deep/\u00fc \U0001f600.txt").flag_bits & 0x800, 0x800)
    subprocess.run(["unzip", "-qq", "tree/own.zip", "-d", "out"], check=True)
    expect("the time that unzip sets", os.stat("out/tree/a.txt").st_mtime, 1e9)
    expect("leftovers", [name for name in os.listdir("tree") if name.startswith(".")], [])
    expect("the current directory, empty", (os.mkdir("here"), os.chdir("here"), compress("../here.zip", ["."]), os.chdir(".."),
                                            content("here.zip")), (None, None, OK, None, {"here/": b""}))


def check_refusals():
    pathlib.Path("older.zip").write_bytes(b"older")
    os.makedirs("other/tree")
    os.makedirs("bad")
    pathlib.Path("bad/a\\b").touch()
    os.mkfifo("pipe")
    tree = ["tree/a.txt"]
    rows = [("no source", [], -1, BAD_ARGUMENT), ("an empty source", [""], -1, BAD_ARGUMENT), ("a null source", [None], -1, BAD_ARGUMENT),
            ("half a pair", ["\ud800"], -1, BAD_ARGUMENT), ("level", tree, 10, BAD_ARGUMENT), ("level below", tree, -2, BAD_ARGUMENT),
            ("missing", ["tree", "missing"], -1, NOT_FOUND), ("pipe", ["pipe"], -1, UNREADABLE), ("the root", ["/"], -1, BAD_NAME),
            ("no size", ["/proc/self/status"], -1, UNREADABLE), ("itself", ["tree", "older.zip"], -1, UNREADABLE), ("the same name", ["tree", "other/tree"], -1, EXISTS),
            ("backslash", ["bad"], -1, BAD_NAME)]
    for name, sources, level, code in rows:
        expect(name, compress("older.zip", sources, level), code)
        expect(f"{name}: the older archive", pathlib.Path("older.zip").read_bytes(), b"older")
    expect("no directory", compress("missing/a.zip", tree), WRITE_FAILED)
    expect("a directory is there", compress("other", tree), WRITE_FAILED)
    for name in ("/a", "../a", "a/..", "a//b", "./a", "a\\b", "C:a", "a\n", "a\x85", "", "a/", "x" * 256, "x/" * 100 + "x", "\udc00"):
        expect(f"entry name {name!r}", append("new.zip", "tree/a.txt", name), BAD_NAME)
    pathlib.Path("blank.zip").write_bytes(b"PK\5\6" + bytes(16) + b"\1\0x")
    expect("an archive of nothing", (append("blank.zip", "tree/a.txt"), list(content("blank.zip"))), (OK, ["a.txt"]))
    expect("no archive", append("older.zip", "tree/a.txt"), NOT_ARCHIVE)
    expect("append a directory", append("new.zip", "tree"), UNREADABLE)
    expect("append what is not there", append("new.zip", "missing"), NOT_FOUND)
    expect("leftovers", [name for name in os.listdir() if name.startswith(".") or name == "new.zip"], [])


def check_additions():
    with zipfile.ZipFile("made.zip", "w", zipfile.ZIP_DEFLATED) as archive:
        archive.comment = b"of the archive"
        entry = zipfile.ZipInfo("old.txt", (1999, 12, 31, 23, 59, 58))
        entry.comment, entry.external_attr = b"of the entry", 0o600 << 16
        archive.writestr(entry, NOISE[:100_000] + b"x" * 100_000)
        archive.writestr("replaced.txt", NOISE)
        with archive.open("streamed.txt", "w") as streamed: # with a data descriptor
            streamed.write(b"y" * 1000)
    os.chmod("made.zip", 0o600)
    os.symlink("made.zip", "made link.zip")
    before = content("made.zip")
    text = pathlib.Path("tree/a.txt").read_bytes()
    expect("append", append("made link.zip", "tree/a.txt"), OK)
    expect("append under a name", append("made.zip", "tree/a.txt", "d/\u00fc.txt", 0), OK)
    expect("append what is there", append("made.zip", "tree/none", "old.txt"), EXISTS)
    expect("a link to the archive stays", os.path.islink("made link.zip"), True)
    after = {**before, "a.txt": text, "d/\u00fc.txt": text}
    expect("appended", content("made.zip"), after)
    size = os.path.getsize("made.zip")
    expect("replace", [add("made.zip", "tree/a.txt", "replaced.txt") for _ in range(3)], [OK] * 3)
    expect("replaced", content("made.zip"), {**after, "replaced.txt": text})
    expect("the old content has gone", os.path.getsize("made.zip") < size - 2_900_000, True)
    kept = info("made.zip", "old.txt")
    expect("what is kept", (kept.comment, kept.date_time, kept.external_attr >> 16, os.stat("made.zip").st_mode & 0o777),
           (b"of the entry", (1999, 12, 31, 23, 59, 58), 0o600, 0o600))
    with zipfile.ZipFile("made.zip") as archive:
        expect("the comment", archive.comment, b"of the archive")
    expect("into a new archive", (append("fresh.zip", "tree/a.txt"), add("fresh2.zip", "tree/a.txt")), (OK, OK))
    expect("new archives", (content("fresh.zip"), content("fresh2.zip")), ({"a.txt": text},) * 2)
    with zipfile.ZipFile("bzip2.zip", "w", zipfile.ZIP_BZIP2) as archive:
        archive.writestr("a.txt", "a")
        archive.writestr("b.txt", "b" * 1000)
    expect("a method that is not known is kept", (append("bzip2.zip", "tree/a.txt", "c"), len(content("bzip2.zip"))), (OK, 3))
    expect("and taken over", (add("bzip2.zip", "tree/a.txt", "a.txt"), content("bzip2.zip")),
           (OK, {"a.txt": text, "b.txt": b"b" * 1000, "c": text}))
    pathlib.Path("ahead.zip").write_bytes(b"#!/bin/sh\n" * 100 + pathlib.Path("bzip2.zip").read_bytes())
    expect("something stands ahead", (add("ahead.zip", "tree/none", "a.txt"), append("ahead.zip", "tree/a.txt", "d")), (OK, OK))
    with zipfile.ZipFile("ahead.zip") as archive:
        expect("what is in it", (archive.testzip(), {name: archive.getinfo(name).file_size for name in archive.namelist()}),
               (None, {"a.txt": 0, "b.txt": 1000, "c": 5000, "d": 5000}))
    expect("it still stands ahead", pathlib.Path("ahead.zip").read_bytes()[:9], b"#!/bin/sh")
    pathlib.Path("cut.zip").write_bytes(pathlib.Path("made.zip").read_bytes()[:-60])
    expect("cut off", append("cut.zip", "tree/a.txt"), NOT_ARCHIVE)


def check_full_disk():
    """A limit of the size of files is a full disk to who writes."""
    child = os.fork()
    if child == 0:
        signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
        resource.setrlimit(resource.RLIMIT_FSIZE, (2_000_000, 2_000_000))
        made = pathlib.Path("fresh.zip").read_bytes()
        got = [compress("fresh.zip", ["tree"]), append("fresh.zip", "tree/noise"), add("fresh.zip", "tree/noise", "a.txt")]
        kept = pathlib.Path("fresh.zip").read_bytes() == made
        os._exit(0 if got == [NO_SPACE] * 3 and kept else 1)
    expect("full disk", os.waitpid(child, 0)[1], 0)
    expect("leftovers", [name for name in os.listdir() if name.startswith(".")], [])


def check_killed():
    """Whenever the process dies, the archive is the old one or the new one."""
    expect("two archives", (compress("one.zip", ["tree"], 1), compress("two.zip", ["tree", "here"], 1)), (OK, OK))
    names = [set(content("one.zip")), set(content("two.zip"))]
    for after in range(8):
        child = os.fork()
        if child == 0:
            while True:
                compress("one.zip", ["tree", "here"], 1)
                compress("one.zip", ["tree"], 1)
        threading.Event().wait(after / 50)
        os.kill(child, signal.SIGKILL)
        os.waitpid(child, 0)
        expect("after a kill", set(content("one.zip")) in names, True)


def check_many():
    os.mkdir("many")
    for number in range(65_600):
        os.close(os.open(f"many/{number}", os.O_CREAT))
    expect("many", compress("many.zip", ["many"]), OK)
    expect("one more", append("many.zip", "tree/a.txt"), OK)
    expect("one replaced", add("many.zip", "tree/a.txt", "many/7"), OK)
    expect("as many as there are", len(content("many.zip")), 65_602)


def check_large():
    """Zeros, but for the ends; what is stored is larger than 4 GiB as well, and an entry begins beyond."""
    size = 2**32 + 5
    with open("large", "wb") as file:
        file.truncate(size)
        file.seek(size - 3)
        file.write(b"end")
    expect("large", compress("large.zip", ["large"], 1), OK)
    expect("stored", compress("stored.zip", ["large"], 0), OK)
    pathlib.Path("small").write_bytes(b"x")
    for name in ("large.zip", "stored.zip"):
        expect(f"append to {name}", append(name, "small"), OK)
        expect(f"add to {name}", add(name, "small"), OK)
        with zipfile.ZipFile(name) as archive:
            expect(name, [(entry.filename, entry.file_size) for entry in archive.infolist()],
                   [("large", size), ("small", 1)])
        said = subprocess.run(["unzip", "-tqq", name], capture_output=True, text=True, check=False)
        expect(f"unzip -t {name}", said.stdout + said.stderr, "")


def check_streams():
    """The table of functions, as C sees it. exports_test has what they do."""
    stream, block, done = ctypes.c_void_p(), ctypes.c_void_p(), ctypes.c_uint32()
    expect("stream", LIBRARY._XCreateStreamOnHGBL(None, 1, ctypes.byref(stream)), 0)
    table = ctypes.cast(ctypes.cast(stream, ctypes.POINTER(ctypes.c_void_p))[0], ctypes.POINTER(ctypes.c_void_p))

    def function(slot, *types):
        return lambda *given: ctypes.CFUNCTYPE(ctypes.c_int32, ctypes.c_void_p, *types)(table[slot])(stream, *given)
    expect("Write", function(4, ctypes.c_char_p, ctypes.c_uint32, ctypes.c_void_p)(b"hello", 5, None), 0)
    expect("Seek", function(5, ctypes.c_int64, ctypes.c_uint32, ctypes.c_void_p)(1, 0, None), 0)
    text = ctypes.create_string_buffer(10)
    expect("Read", function(3, ctypes.c_void_p, ctypes.c_uint32, ctypes.c_void_p)(text, 10, ctypes.addressof(done)), 0)
    expect("what was read", (text.value, done.value), (b"ello", 4))
    stat_buffer = (ctypes.c_uint64 * 10)()
    expect("Stat", (function(12, ctypes.c_void_p, ctypes.c_uint32)(stat_buffer, 0), stat_buffer[1], stat_buffer[2]), (0, 2, 5))
    expect("the block", LIBRARY._XGetHGBLFromStream(stream, ctypes.byref(block)), 0)
    expect("its content", ctypes.string_at(block, 5), b"hello")
    expect("AddRef and Release", (function(1)(), function(2)(), function(2)()), (2, 1, 0))


def load(library, kbase, application):
    for path in (kbase, application):
        ctypes.CDLL(path, mode=ctypes.RTLD_GLOBAL)
    return ctypes.CDLL(library)


LIBRARY = load(*sys.argv[1:4])
with tempfile.TemporaryDirectory() as place:
    os.chdir(place)
    if "--large" in sys.argv:
        check_large()
    else:
        for check in (check_streams, check_trees, check_refusals, check_additions, check_full_disk, check_killed, check_many):
            check()
    os.chdir("/")
sys.exit("\n".join(faults) or 0)
