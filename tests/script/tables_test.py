"""Compares what the objects publish with members.txt, the reference of the API: a line a member.

usage: tables_test.py NOVAHOST MEMBERS_TXT [--update]
"""
import difflib
import json
import pathlib
import subprocess
import sys

TYPES = {0: "nothing", 8: "string", 11: "boolean", 12: "variant", 13: "object", 27: "array", 0x8004: "any"}


def line(owner, member):
    params = ", ".join((f"{p['name']}: " if p["name"] else "") + TYPES[p["type"]] for p in member["params"])
    signature = f".{member['name']}" if member["kind"] == 1 else f".{member['name']}({params})"
    return f"{owner}{signature} -> {TYPES[member['result']]}  0x{member['mask']:x}"


def main():
    novahost, reference, *options = sys.argv[1:]
    out = subprocess.run([novahost, "members", "--json"], check=True, capture_output=True)
    lines = [line(row["object"].removeprefix("NovaExtension."), member)
             for row in json.loads(out.stdout) for member in row["members"]]
    path = pathlib.Path(reference)
    if options == ["--update"]:
        path.write_text("\n".join(lines) + "\n")
    difference = list(difflib.unified_diff(path.read_text().splitlines(), lines, "members.txt", "published", lineterm=""))
    if difference:
        sys.exit("\n".join(difference))


main()
