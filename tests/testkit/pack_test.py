"""Packs testkit/ and types/ as for their users, installs both beside a copy of examples/testing/, runs its tests there as a user
does, and compiles them, with and without a mistake in a row.

usage: pack_test.py NODE NPM SOURCE_DIR
"""
import json
import pathlib
import shutil
import subprocess
import sys
import tempfile

FILES = {"README.md", "api.js", "index.d.ts", "index.js", "members.d.ts", "package.json"}
MISTAKES = {
    'import { createKit } from "nova-extension-testkit";\ncreateKit({ rows: [{ member: "FileSystem.exists", answer: "yes" }] });\n': "TS2322",
    'import { createKit } from "nova-extension-testkit";\ncreateKit().emit("Account", "event.account.logn", {});\n': "TS2769",
    'import { createKit } from "nova-extension-testkit";\ncreateKit().use({ member: "FileSystem.mkpath", failure: "no" });\n': "TS2322",
}


def main():
    node, npm, source = sys.argv[1], sys.argv[2], pathlib.Path(sys.argv[3])
    sys.path.insert(0, str(source / "tests/types"))
    from compiler import compile_errors  # pylint: disable=import-outside-toplevel
    with tempfile.TemporaryDirectory() as place:
        def run(*command):
            done = subprocess.run(command, cwd=place, capture_output=True, text=True, check=False)
            if done.returncode:
                sys.exit(done.stdout + done.stderr)
            return done.stdout

        shutil.copytree(source / "examples/testing", place, dirs_exist_ok=True, ignore=shutil.ignore_patterns("node_modules"))
        pathlib.Path(place, "package.json").write_text('{ "private": true, "type": "module" }')
        run(npm, "pack", "--pack-destination", place, str(source / "testkit"), str(source / "types"))
        run(npm, "install", "--offline", "--no-audit", "--no-fund", *sorted(f"./{path.name}" for path in pathlib.Path(place).glob("*.tgz")))
        packed = pathlib.Path(place, "node_modules/nova-extension-testkit")
        files = {path.relative_to(packed).as_posix() for path in packed.rglob("*") if path.is_file()}
        if {name for name in files if not name.startswith("src/")} != FILES or len(files) == len(FILES):
            sys.exit(f"packed: {sorted(files)}")
        print(run(node, "--test"))
        readme = (packed / "README.md").read_text(encoding="utf-8")
        pathlib.Path(place, "readme.test.js").write_text(readme.split("```js\n", 2)[1].split("```", 1)[0], encoding="utf-8")
        run(node, "--test", "readme.test.js")
        # What Node has is not to be installed for this.
        pathlib.Path(place, "node.d.ts").write_text("declare module 'node:assert/strict';\ndeclare module 'node:fs';\ndeclare module 'node:test';\n")
        pathlib.Path(place, "tsconfig.json").write_text(json.dumps({"compilerOptions": {
            "strict": True, "allowJs": True, "checkJs": True, "noEmit": True, "target": "es2022", "lib": ["es2022", "dom"], "module": "esnext",
            "moduleResolution": "bundler", "types": ["@vexlite/nova-extension-types"]},
            "include": ["node.d.ts", "notes.js", "suite.js", "notes.test.js", "mistake.ts"]}))
        problems = compile_errors(node, source, "-p", ".", cwd=place)
        for text, code in MISTAKES.items():
            pathlib.Path(place, "mistake.ts").write_text(text, encoding="utf-8")
            found = [line for line in compile_errors(node, source, "-p", ".", cwd=place) if not line.startswith(" ")]
            if len(found) != 1 or f"mistake.ts(2," not in found[0] or code not in found[0]:
                problems += [f"expected {code} in {text}", *found]
    if problems:
        sys.exit("\n".join(problems))


main()
