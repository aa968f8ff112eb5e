"""Finds the tests of a configured preset whose name or label matches a regular expression.

usage: selecttests.py names|targets PRESET FILTER

`names` prints an expression for ctest -R that selects them, or nothing; `targets` what has to be built for them, a line
each: what their commands and required files name in the build folder; for one that names the folder itself, everything.
"""
import json
import pathlib
import re
import subprocess
import sys


def labels(test):
    return next((p["value"] for p in test["properties"] if p["name"] == "LABELS"), [])


def files(test):
    required = next((p["value"] for p in test["properties"] if p["name"] == "REQUIRED_FILES"), [])
    return {*test.get("command", []), *required}


def main():
    what, preset, wanted = sys.argv[1], sys.argv[2], re.compile(sys.argv[3])
    build = pathlib.Path("build").resolve() / preset
    shown = subprocess.run(["ctest", "--preset", preset, "--show-only=json-v1"], check=True, capture_output=True)
    tests = [test for test in json.loads(shown.stdout)["tests"]
             if any(wanted.search(name) for name in [test["name"], *labels(test)])]
    if what == "names":
        print(f"^({'|'.join(re.escape(test['name']) for test in tests)})$" if tests else "")
        return
    named = {name for test in tests for name in files(test) if name.startswith(f"{build}")}
    if str(build) in named:
        print("all")
        return
    print("\n".join(sorted(str(pathlib.Path(name).relative_to(build)) for name in named
                           if not pathlib.Path(name).is_dir())))


main()
