"""Compares the failures that pages saw in the tests with those that are described for the members. What the engine refuses
before it calls a member (a symbol as an argument) is no failure of the member and is not recorded.

usage: failures_test.py API_JSON RECORDS_DIR

What no test saw is written beside the directory: unseen-failures.txt.
"""
import json
import pathlib
import re
import sys


def pattern_of(text):
    """%1 stands for any text."""
    return re.compile(".*".join(re.escape(part) for part in re.split(r"%\d", text)), re.DOTALL)


def main():
    api, records = map(pathlib.Path, sys.argv[1:])
    described = {f"{one['name']}.{member['name']}": [(failure["code"], failure["rejects"], failure["text"], pattern_of(failure["text"]))
                                                     for failure in member["failures"]]
                 for one in json.loads(api.read_text(encoding="utf-8"))["objects"] for member in one["members"]}
    seen = set()
    undeclared = {}
    lines = {line for path in records.glob("*.jsonl") for line in path.read_text(encoding="utf-8").splitlines()}
    for line in sorted(lines):
        failure = json.loads(line)
        fitting = [(failure["member"], code, rejects, text)
                   for code, rejects, text, pattern in described.get(failure["member"], ())
                   if (code, rejects) == (failure["code"], failure["rejects"]) and pattern.fullmatch(failure["msg"])]
        seen.update(fitting)
        if not fitting:
            kind = failure["member"], failure["code"], failure["rejects"], failure["msg"][-10:]
            undeclared.setdefault(kind, show(failure["member"], failure["code"], failure["rejects"], failure["msg"]))
    if not lines:
        sys.exit(f"no failure was seen: {records} is empty")
    unseen = [show(member, code, rejects, text) for member, failures in described.items()
              for code, rejects, text, _ in failures if (member, code, rejects, text) not in seen]
    report = [f"{len(seen)} of the described failures were seen. No test saw these {len(unseen)}:", *unseen]
    records.with_name("unseen-failures.txt").write_text("\n".join([*report, ""]), encoding="utf-8")
    if undeclared:
        sys.exit("\n".join(["Seen, but not described:", *undeclared.values()]))


def show(member, code, rejects, text):
    return f"{member} {'rejects with' if rejects else 'throws'} {code} {json.dumps(text, ensure_ascii=False)}"


main()
