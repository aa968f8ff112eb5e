"""Type-checks every script of examples/ and tests/script/, and every block of script in README.md, docs/ and types/.
The explorer has a project of its own: it runs in a browser, of which it may use no more than there was in 2021.

usage: check_test.py NODE SOURCE_DIR
"""
import json
import pathlib
import re
import sys
import tempfile

from compiler import compile_errors

BLOCK = re.compile(r"^```js\n(.*?)^```$", re.MULTILINE | re.DOTALL)
HARNESS = "tests/script/harness.js"


def scripts(source):
    """(name, text) of everything to check. A block of a page keeps its line numbers."""
    for path in sorted([*source.glob("examples/*.js"), *source.glob("tests/script/*.js")]):
        yield path.relative_to(source).as_posix(), path.read_text(encoding="utf-8")
    for path in sorted([source / "README.md", source / "types/README.md", *source.glob("docs/**/*.md")]):
        page = path.read_text(encoding="utf-8")
        for block in BLOCK.finditer(page):
            above = page.count("\n", 0, block.start(1))
            yield f"{path.relative_to(source).as_posix()}.{above}.js", "\n" * above + block[1]


def main():
    node, source = sys.argv[1], pathlib.Path(sys.argv[2])
    with tempfile.TemporaryDirectory() as place:
        kinds = set()
        for name, text in scripts(source):
            copy = pathlib.Path(place, name)
            copy.parent.mkdir(parents=True, exist_ok=True)
            # A module, so that scripts do not share what they declare: all but the harness, which is for all tests.
            copy.write_text(text if name == HARNESS else f"{text}\nexport {{}};\n", encoding="utf-8")
            kinds.add(name.split("/")[0].split(".")[0])
        if kinds != {"examples", "tests", "docs", "types", "README"}:
            sys.exit(f"scripts were found in {sorted(kinds)} only")
        types = [str(source / name) for name in ("types/nova-extension.d.ts", "types/standin.d.ts", "tests/types/api.d.ts")]
        pathlib.Path(place, "tsconfig.json").write_text(json.dumps({
            "extends": str(source / "types/tsconfig.json"), "files": types, "include": ["**/*.js"]}))
        lines = compile_errors(node, source, "-p", ".", cwd=place)
    lines += compile_errors(node, source, "-p", source / "examples/explorer", cwd=source)
    if lines:
        sys.exit(re.sub(r"(?m)\.md\.\d+\.js\(", ".md(", "\n".join(lines)))


main()
