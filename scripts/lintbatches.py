"""Writes batches for clang-tidy: sources that are compiled alike, put together in one, which reads Qt's headers once.

usage: lintbatches.py BUILD_DIR SOURCE...

Reads BUILD_DIR/compile_commands.json and writes BUILD_DIR/batches/: N.cpp with the sources' text, N.sources with their
names, a line each, and compile_commands.json. syntax.sh there has a command for each of the library's sources that only
parses it: the build compiles these in batches as well, which hides a missing #include. (It compiles host/ one by one.)
Prints the sources that are in no batch: no other is compiled alike.
"""
import collections
import json
import pathlib
import shlex
import shutil
import sys

MAX_SOURCES = 24

# A macro is defined between sources: what the text before it includes may be included again.
SEPARATOR = "\n#define NEXT_SOURCE\n#undef NEXT_SOURCE\n"


def flags(entry):
    """The arguments of a compile command without its input and output."""
    words = shlex.split(entry["command"])
    for option in ("-o", "-c"):
        at = words.index(option)
        del words[at:at + 2]
    return tuple(words)


def slices(sources):
    """Parts of about the same length, as few as MAX_SOURCES allows."""
    count = -(-len(sources) // MAX_SOURCES)
    return [sources[i::count] for i in range(count)]


def main():
    build = pathlib.Path(sys.argv[1])
    given = {str(pathlib.Path(source).resolve()): source for source in sys.argv[2:]}
    alike = collections.defaultdict(list)
    alone = dict(given)
    for entry in json.loads((build / "compile_commands.json").read_text()):
        if entry["file"] in given:
            alike[entry["directory"], flags(entry)].append(entry["file"])

    batches = build / "batches"
    shutil.rmtree(batches, ignore_errors=True)
    batches.mkdir()
    commands = []
    syntax = []
    for (directory, words), files in alike.items():
        for part in slices(files) if len(files) > 1 else []:
            batch = batches.resolve() / f"{len(commands)}.cpp"
            batch.write_text(SEPARATOR.join(pathlib.Path(file).read_text() for file in part))
            batch.with_suffix(".sources").write_text("".join(f"{given[file]}\n" for file in part))
            commands.append({"directory": directory, "arguments": [*words, "-c", str(batch)], "file": str(batch)})
            for file in part:
                alone.pop(file, None)
                if not given[file].startswith("host/"):
                    syntax.append(shlex.join(["clang++", *words[1:], "-fsyntax-only", file]))
    (batches / "compile_commands.json").write_text(json.dumps(commands, indent=1))
    (batches / "syntax.sh").write_text("".join(f"{command}\n" for command in syntax))
    print("".join(f"{source}\n" for source in alone.values()), end="")


main()
