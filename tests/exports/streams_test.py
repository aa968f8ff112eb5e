"""Reads what the compressors write with Python's zlib, and compares it with what zlib writes for the same parameters.

usage: streams_test.py LIBVEXLITEJSAPI LIBKBASE APPLICATION
"""
import ctypes
import random
import sys
import zlib

MARKER = b"\0\0\xff\xff"
LAST_BLOCK = b"\x01\0\0\xff\xff"

random.seed(7)
WORDS = [bytes(random.choices(b"abcdefghijklmnopqrstuvwxyz", k=random.randint(2, 9))) for _ in range(2000)]
INPUTS = {
    "empty": b"",
    "one byte": b"x",
    "text": b" ".join(random.choices(WORDS, k=1000000)),
    "noise": random.randbytes(1000000),
    "zeros": bytes(5000000),
    "nearly a window": random.randbytes(32767) * 2,
}


def zlib_faults(stream, data, level):
    if zlib.decompress(stream) != data:
        yield "reads back as something else"
    # Stored blocks depend on the room for the output, which is not the same here.
    if level == 0 and len(stream) < len(data):
        yield "is not stored"
    elif level and stream != zlib.compress(data, level):
        yield "differs from zlib's"


def raw_faults(stream, data):
    reader = zlib.decompressobj(-15)
    if reader.decompress(stream) != data:
        yield "reads back as something else"
    if reader.eof:
        yield "is finished"
    if reader.decompress(MARKER + LAST_BLOCK) or not reader.eof:
        yield "can not be closed by the marker and a last block"
    writer = zlib.compressobj(-1, zlib.DEFLATED, -15, 9)
    if stream + MARKER != writer.compress(data) + writer.flush(zlib.Z_SYNC_FLUSH):
        yield "differs from zlib's"


class Library:
    """The compressors, called as C does."""

    def __init__(self, path, kbase, application):
        self.kbase = ctypes.CDLL(kbase, mode=ctypes.RTLD_GLOBAL)
        self.application = ctypes.CDLL(application, mode=ctypes.RTLD_GLOBAL)
        self.library = ctypes.CDLL(path)

    def zlib(self, data, level):
        block = ctypes.c_void_p()
        assert self.library._XZlibCompress(data, ctypes.c_uint32(len(data)), ctypes.byref(block), level) == 0
        stream = ctypes.string_at(block, self.library._XGblSize(block))
        self.library._XGblFree(block)
        return stream

    def raw(self, data):
        block, size = ctypes.c_void_p(), ctypes.c_uint32()
        assert self.library._XDeflate(data, ctypes.c_uint32(len(data)), ctypes.byref(block), ctypes.byref(size)) == 0
        stream = ctypes.string_at(block, size.value)
        self.kbase.mfxGlobalFree(block)
        return stream


def main():
    library = Library(*sys.argv[1:])
    faults = []
    for name, data in INPUTS.items():
        for level in range(-1, 10):
            faults += [f"{name}, level {level}: {fault}" for fault in zlib_faults(library.zlib(data, level), data, level)]
        faults += [f"{name}, raw: {fault}" for fault in raw_faults(library.raw(data), data)]
    if faults:
        sys.exit("\n".join(faults))


main()
