"""Runs one script test in novahost: checks that it passes, that nothing crashed, and that the closed page left nothing.

usage: run_test.py NOVAHOST SCRIPTS_DIR NAME [OPTION...]
"""
import json
import os
import random
import subprocess
import sys
import tempfile

RANDOM_SECONDS = 5


def published(novahost):
    """The tables as {path: {members, unsupported}}; what a property hands out is named as script reaches it."""
    def tables(*options):
        out = subprocess.run([novahost, "members", "--json", *options], check=True, capture_output=True)
        return {row["object"]: row["members"] for row in json.loads(out.stdout)}
    unsupported = tables("--unsupported")
    return {name: {"members": members, "unsupported": [m["name"] for m in unsupported[name]]}
            for name, members in tables().items()}


def main():
    novahost, scripts, name, *options = sys.argv[1:]
    arguments = []
    if name == "walk":
        arguments = [json.dumps(published(novahost))]
    elif name == "random":
        arguments = [str(RANDOM_SECONDS), os.environ.get("RANDOM_SEED") or str(random.randrange(2**32))]
    with tempfile.TemporaryDirectory() as data:
        command = [novahost, "--data", data, "--live-counts", *options, "run", f"{scripts}/{name}.js", data, *arguments]
        # Paths with variables must not lead into the home of whoever runs the test.
        environment = {**os.environ, "HOME": data}
        result = subprocess.run(command, capture_output=True, text=True, errors="replace", env=environment)
    print(result.stdout, result.stderr[-4000:], sep="", end="")
    if result.returncode != 0:
        sys.exit(f"exit code {result.returncode}; arguments {arguments[-1:] if name == 'random' else ''}")
    counts = [json.loads(line) for line in result.stderr.splitlines() if line.startswith('{"when"')]
    left = {key: value for key, value in counts[-1].items() if key != "when" and value}
    if counts[-1]["when"] != "closed" or left:
        sys.exit(f"a closed page left {left}")


main()
