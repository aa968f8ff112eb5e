"""Prints what checks sources with clang-tidy: a shell command a line, the long ones first.

usage: lintcommands.py [--batches] SOURCE...

With --batches all checks see the batches in which the release preset compiles most sources: nearly all time goes into Qt's
headers. Each source is then looked at alone, as the debug preset compiles it, for what a batch hides.
"""
import json
import pathlib
import re
import shlex
import sys

# A batch includes sources.
BATCH = "-bugprone-suspicious-include"
# A batch hides a missing #include, a name that only another source of the batch uses, and sources that are included.
SYNTAX = "none"
NAMES = "-*,misc-unused-using-decls,misc-unused-alias-decls,bugprone-suspicious-include"
HAS_NAMES = re.compile(r'^\s*(using\s+[\w:]+;|namespace\s+\w+\s*=|#include\s.*\.c)', re.MULTILINE)
# The compile commands are GCC's.
ONLY_GCC = "-fno-gnu-unique"


def commands(preset):
    for entry in json.loads(pathlib.Path(f"build/{preset}/compile_commands.json").read_text()):
        words = shlex.split(entry["command"])
        options = words[next(i for i, word in enumerate(words) if word.startswith("-")):]
        del options[options.index("-o"):]
        yield entry["file"], [option for option in options if option != ONLY_GCC]


def show(checks, options, source):
    print(f"TIDY_CHECKS={shlex.quote(checks)} tidy", shlex.join([*options, "-Wno-unknown-warning-option", "-c", source]))


def main():
    with_batches = sys.argv[1] == "--batches"
    given = {str(pathlib.Path(source).resolve()) for source in sys.argv[1 + with_batches:]}
    batched = set()
    if with_batches:
        for batch, options in commands("release"):
            held = set(re.findall(r'#include "(.*)"', pathlib.Path(batch).read_text())) if "/Unity/" in batch else set()
            if held & given and not re.search("/build/release/(tests|bench|tools)/", batch):
                batched |= held
                show(BATCH, options, batch)
    for source, options in commands("debug"):
        if source in given:
            given.remove(source)
            names = HAS_NAMES.search(pathlib.Path(source).read_text())
            show("" if source not in batched else NAMES if names else SYNTAX, options, source)
    if given:
        sys.exit(f"No target has {', '.join(sorted(given))}")


main()
