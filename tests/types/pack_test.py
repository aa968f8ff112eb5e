"""Packs types/ as for its users, installs the package into an empty folder, and compiles two pages there: one without
mistakes, and one with three, which must be all that the compiler finds.

usage: pack_test.py NODE NPM SOURCE_DIR
"""
import json
import pathlib
import subprocess
import sys
import tempfile

from compiler import compile_errors

RIGHT = """\
const { Account, FileSystem, SettingsManager } = NovaExtension;
const settings: NovaExtension.SettingsManager.Settings = SettingsManager.settings({ format: 0 });
settings.setValue({ key: "view", value: "outline" });
Account.addEventListener("event.account.login", ({ userName }) => console.log(userName.length));
Account.addLoginListener(({ isSwitching }) => console.log(isSwitching === true));
Account.addEventListener("some event of my own", (first, second) => console.log(first, second));
const digest: Promise<string> = FileSystem.getFileMd5("/etc/hostname");
digest.catch((failure: NovaExtension.Failure) => console.log(failure.code, failure.msg));
try {
    const made: boolean = FileSystem.mkpath("%HOME%/notes").data;
} catch (error) {
    const failure = error as NovaExtension.FailureOf<"FileSystem.mkpath">;
    if (failure.code === 1) {
        const text: "Path is empty." = failure.msg;
    } else {
        const code: 3 = failure.code;
    }
}
"""
WRONG = """\
// @ts-check
const { Account, FileSystem } = NovaExtension;
FileSystem.copy({ path: "a", newPath: "b", overwrite: "yes" });
Account.addEventListener("event.account.login", ({ userNam }) => console.log(userNam));
try {
    FileSystem.mkpath("%HOME%/notes");
} catch (error) {
    const failure = /** @type {NovaExtension.FailureOf<"FileSystem.mkpath">} */ (error);
    if (failure.msg === "Path is emtpy.")
        console.log("no path");
}
"""
MISTAKES = [("page.js(3,44)", "TS2322", "'boolean"), ("page.js(4,52)", "TS2339", "'userNam'"),
            ("page.js(9,9)", "TS2367", "Path is emtpy.")]


def main():
    node, npm, source = sys.argv[1:]
    with tempfile.TemporaryDirectory() as place:
        def run(*command):
            result = subprocess.run([npm, *command], cwd=place, capture_output=True, text=True, check=False)
            if result.returncode:
                sys.exit(result.stdout + result.stderr)
            return result.stdout
        run("pack", "--pack-destination", place, str(pathlib.Path(source, "types")))
        [package] = pathlib.Path(place).glob("*.tgz")
        run("install", "--offline", "--no-audit", "--no-fund", f"./{package.name}")
        installed = pathlib.Path(place, "node_modules/@vexlite/nova-extension-types")
        files = sorted(path.name for path in installed.iterdir())
        if files != ["README.md", "nova-extension.d.ts", "package.json", "standin.d.ts"]:
            sys.exit(f"packed: {files}")
        pathlib.Path(place, "page.ts").write_text(f"{RIGHT}export {{}};\n", encoding="utf-8")
        pathlib.Path(place, "page.js").write_text(f"{WRONG}export {{}};\n", encoding="utf-8")
        pathlib.Path(place, "tsconfig.json").write_text(json.dumps({"compilerOptions": {
            "strict": True, "allowJs": True, "checkJs": True, "noEmit": True, "target": "es2022",
            "types": ["@vexlite/nova-extension-types"]}, "files": ["page.ts", "page.js"]}))
        lines = compile_errors(node, source, "-p", ".", cwd=place)
    found = [line for line in lines if not line.startswith(" ")]
    print("\n".join(found))
    if len(found) != len(MISTAKES) or not all(part in line for line, parts in zip(found, MISTAKES) for part in parts):
        sys.exit(f"expected {MISTAKES}, got\n" + "\n".join(lines))


main()
