"""What pages print and how their errors are shown: values as Node prints them, errors alike in both engines.

usage: output_test.py NOVAHOST NODE [--browser]
"""
import difflib
import os
import pathlib
import subprocess
import sys
import tempfile

CONSOLE = pathlib.Path(__file__).with_name("console.js")

# name: the script, and what is printed to standard error for it, where FILE stands for its path.
ERRORS = {
    "first line": ("const f = () => { throw new TypeError('no'); }; f();", """FILE:1:25
const f = () => { throw new TypeError('no'); }; f();
                        ^

Uncaught TypeError: no
    at f (FILE:1:25)
    at FILE:1:49
"""),
    "refusal": ("\n\tNovaExtension.FileSystem.copy({});", """FILE:2:27
\tNovaExtension.FileSystem.copy({});
\t                         ^

Uncaught Error: Path is empty.
    at FILE:2:27
    code: 3, from FileSystem.copy
"""),
    "promise of a member": ("await NovaExtension.FileSystem.getFileMd5('/no/file');", """FILE:1:32
await NovaExtension.FileSystem.getFileMd5('/no/file');
                               ^

Uncaught Error: /no/file is not existed
    at FILE:1:32
    code: 3, from FileSystem.getFileMd5
"""),
    "listener": ("const E = NovaExtension.Event;\nE.addEventListener('saved', () => { throw 'text' }); E.dispatchEvent('saved');",
                 "Uncaught (in a listener of saved) 'text'\n"),
    "microtask": ("queueMicrotask(() => { throw 5; }); await new Promise((done) => setTimeout(done, 50));", "Uncaught (in a microtask) 5\n"),
    "rejection": ("const a = Promise.reject({ a: 1 }); await new Promise((done) => setTimeout(done, 50));", "Uncaught (in promise) { a: 1 }\n"),
    "causes and properties": ("const e = new Error('outer'); e.cause = new RangeError('inner');\ne.more = [1]; throw e;", """FILE:1:11
const e = new Error('outer'); e.cause = new RangeError('inner');
          ^

Uncaught Error: outer
    at FILE:1:11 {
  more: [ 1 ]
}
Caused by: RangeError: inner
    at FILE:1:41
"""),
    "several errors": ("const e = new AggregateError([new Error('a'), 'b'], 'both'); e.stack = ''; throw e;",
                       "Uncaught AggregateError: both\n    Error: a\n        at FILE:1:31\n    'b'\n"),
    "syntax": ("let a = 1;\nlet b = (1 + ;\n", "FILE:2:14\nlet b = (1 + ;\n             ^\n\nUncaught SyntaxError: Unexpected token ';'\n    at FILE:2:14\n"),
    "syntax on the first line": ("a ; b ) ; c", "FILE:1:7\na ; b ) ; c\n      ^\n\nUncaught SyntaxError: Unexpected token ')'\n    at FILE:1:7\n"),
    "declared twice": ("let a = 1;\nlet a;", "FILE:2:5\nlet a;\n    ^\n\nUncaught SyntaxError: Identifier 'a' has already been declared\n    at FILE:2:5\n"),
    "own class": ("class E extends Error { constructor() { super('x'); } }\nthrow new E();", "FILE:2:7\nthrow new E();\n      ^\n\nUncaught E [Error]: x\n    at FILE:2:7\n"),
    "own name, async": ("const f = async () => {\n  throw Object.assign(new Error('x'), { name: 'Mine' });\n};\nawait f();",
                        "FILE:2:23\n  throw Object.assign(new Error('x'), { name: 'Mine' });\n                      ^\n\n"
                        "Uncaught Mine: x\n    at f (FILE:2:23)\n    at FILE:4:7\n"),
    "end": ("if (1) {\n  f();\n\n", "FILE:2:7\n  f();\n      ^\n\nUncaught SyntaxError: Unexpected end of input\n    at FILE:2:7\n"),
    "hostile": ("throw Object.defineProperty(new Error('x'), 'message', { get() { throw 1; } });",
                "FILE:1:29\nthrow Object.defineProperty(new Error('x'), 'message', { get() { throw 1; } });\n"
                "                            ^\n\nUncaught Error\n    at FILE:1:29\n"),
}


def run(command, **environment):
    result = subprocess.run(command, capture_output=True, text=True, errors="replace", env={**os.environ, **environment})
    return result.stdout, "".join(line for line in result.stderr.splitlines(True) if not line.startswith("hint: "))


def main():
    novahost, node, *options = sys.argv[1:]
    if options:
        os.environ.update(QT_QPA_PLATFORM="offscreen", QT_LOGGING_RULES="default.info=false")
        if os.geteuid() == 0:
            os.environ["QTWEBENGINE_DISABLE_SANDBOX"] = "1"
    host = [novahost, *options, "run"]
    os.environ.pop("NO_COLOR", None)
    faults = []

    def compare(name, found, expected):
        if found != expected:
            faults.append(f"{name}:\n{found}" + (f"instead of\n{expected}" if expected else ""))

    for color in ("0", "1"):
        given, model = run([*host, str(CONSOLE)], FORCE_COLOR=color), run([node, str(CONSOLE)], FORCE_COLOR=color)
        for stream, found, expected in zip(("out", "err"), given, model):
            differences = list(difflib.unified_diff(expected.splitlines(), found.splitlines(), "Node", "novahost", lineterm="", n=1))
            compare(f"console, colour {color}, std{stream}", "\n".join(line[:200] for line in differences), "")
    with tempfile.TemporaryDirectory() as folder:
        for name, (source, expected) in ERRORS.items():
            script = pathlib.Path(folder, "a page.js")
            script.write_text(source, encoding="utf-8")
            out, errors = run([*host, str(script)], FORCE_COLOR="0")
            compare(name, out + errors, expected.replace("FILE", str(script)))
    sys.exit("\n".join(faults[:20]) if faults else 0)


main()
