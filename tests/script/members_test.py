"""What novahost says of the members: whether the tables that are published are those that are described, the
documentation as commands and in the repl, and how calls end.

usage: members_test.py NOVAHOST
"""
import json
import pathlib
import re
import subprocess
import sys

API = pathlib.Path(__file__).resolve().parents[2] / "types/api.json"

# name, arguments, what is typed, what is printed (regular expressions that match somewhere), exit code.
ROWS = [
    ["a member by its last parts", ["members", "filesystem.copy"], "", [r"^FileSystem\.copy\(options: ", r"\n  +overwrite\?: boolean = false",
        r'\n  fails with code 3  "New path is illegal\."\n', r"\n  category Usual \(0x40\)\n$"], 0],
    ["a rejection", ["members", "FileSystem.getFileMd5"], "", [r'^[^\n]*Promise<string>\n', r"""\n  rejects with code 3  "%1 can't been opened"\n"""], 0],
    ["an object and the member that makes it", ["members", "FileSystem.File"], "",
        [r"^NovaExtension\.FileSystem\.File  \(handed out", r"\n  size\(\) +-> any +0x40 +Usual\n", r"\nFileSystem\.File\(options: "], 0],
    ["a member for programs", ["members", "--json", "Log.logInfo"], "", [r'^\[\{"name":"logInfo","kind":"method",.*\}\]\n$'], 0],
    ["no such member", ["members", "Log.nothing"], "", [r'^novahost: OBJECT: there is no "Log\.nothing"; '], 2],
    ["the legend", ["members"], "", [r"\nTypes\n.*\n  any +any value", r"\nCategories.*\n  0x80000 +Account\n"], 0],
    ["hidden members are no difference", ["--deny", "0x40", "members", "Log"], "", [r"^NovaExtension\.Log  \(shared, 0 members\)\n$"], 0],
    ["a rejection in the trace", ["--trace", "eval", "NovaExtension.FileSystem.getFileMd5('/no')"], "",
        [r'(?m)^ +[0-9.]+ ms  FileSystem\.getFileMd5\("/no"\) → promise 1  [0-9.]+ [um]s\n',
         r'(?m)^ +[0-9.]+ ms  promise 1 of FileSystem\.getFileMd5 rejected: code 3 "/no is not existed"  after '], 1],
    *[[f"a suite without {service}", ["--without", service, "eval", f"NovaExtension.{call}"], "", [fr"\nUncaught Error: {failure}\n"], 1] for service, call, failure in (
        ("skin", "Skin.switchSkin('dark')", "skin is nullptr"), ("fileFilter", "Skin.getFileTypeIconInfo({})", "empty fileFilter"),
        ("pluginManager", "PluginManager.getPlugin()", "plugin manager is null"), ("browserGroups", "PluginManager.getPlugin()", "empty pBrowsersGroup"),
        ("purchase", "Payment.open({ source: 'x' })", "Purchase service error\\."))],
    ["a purchase of a user who signs out", ["--profile", "/dev/stdin", "--play", "logout@100ms", "eval", "NovaExtension.Payment.open({ source: 'x' })"],
        '{"dialogs": {"mode": "show"}}', [r'"status":"cancelled"'], 0],
    ["a page that may not buy", ["--profile", "/dev/stdin", "eval", "NovaExtension.Payment.open({ source: 'x' })"],
        '{"policy": [{"origin": "nova://script", "allow": ["*"], "permissions": []}]}', [r"\nUncaught Error: Permission denied\."], 1],
    ["failures that no file can be made for", ["--failures", "/proc/none", "eval", "1"], "", [r"^novahost: --failures: no file"], 2],
    ["help", ["repl"], ".help\n.help log\n .help Log.logInfo \n.help Nope\n.5+1\n",
        [r"^\.help \[NAME\]", r"\nNovaExtension\.Log, shared\n.*\n  Log\.logWarning\(", r"\n    moduleName: string", r"\nThere is no Nope;", r"\n1\.5\n$"], 0],
    ["a member's value", ["repl"], "const { Log } = NovaExtension\nLog.logInfo\nLog\n1\n",
        [r"\n\[Function: logInfo\]\nLog\.logInfo\(options: [^\n]*\n\[?[^\n]*Log[^\n]*\n1\n$"], 0],
]


def main():
    novahost = sys.argv[1]
    faults = []
    result = subprocess.run([novahost, "members", "--json"], capture_output=True, text=True, check=False)
    if result.returncode or result.stderr:
        faults.append(f"{result.stderr}To describe what is published: scripts/reference")
    # The description that novahost was built with is the one in the sources.
    paths = [f"{row['object']}.{member['name']}" for row in json.loads(result.stdout) for member in row["members"]]
    described = [f"NovaExtension.{one['name']}.{member['name']}"
                 for one in json.loads(API.read_text(encoding="utf-8"))["objects"] for member in one["members"]]
    faults += [f"{path}: published, or in types/api.json, but not both" for path in sorted(set(paths) ^ set(described))]
    if not faults and paths != described:
        faults.append("the members are in another order than in types/api.json")
    for name, arguments, typed, patterns, code in ROWS:
        result = subprocess.run([novahost, *arguments], input=typed, capture_output=True, text=True, check=False)
        printed = result.stdout + result.stderr
        faults += [f"{name}: {pattern} is not in\n{printed}" for pattern in patterns if not re.search(pattern, printed, re.DOTALL)]
        if result.returncode != code:
            faults.append(f"{name}: exit code {result.returncode}")
    if faults:
        sys.exit("\n".join(faults))


main()
