"""Finds string literals of Qt's in a library: they lie in its own data, and whatever the suite keeps of them is gone when the
library is unloaded. Constant strings are made on the heap.

usage: literals_test.py LIBRARY
"""
import pathlib
import re
import struct
import sys

# QStaticStringData: reference count -1, size, capacity 0, and the offset of the characters from here, behind a gap.
HEAD = re.compile(rb"\xff\xff\xff\xff(.{4})\0\0\0\0.{4}\x18\0\0\0\0\0\0\0", re.DOTALL)


def main(path):
    data = pathlib.Path(path).read_bytes()
    literals = []
    for head in HEAD.finditer(data):
        size, = struct.unpack("<I", head[1])
        characters = data[head.end():head.end() + 2 * size + 2]
        text = characters[:-2].decode("utf-16-le", "replace")
        # The names of a class with signals look the same, but for their bytes.
        if 0 < size < 1 << 16 and characters.endswith(b"\0\0") and "\0" not in text:
            literals.append(text)
    if literals:
        sys.exit("\n".join(["These are literals of the library; make them with heapString:", *map(ascii, literals)]))


main(sys.argv[1])
