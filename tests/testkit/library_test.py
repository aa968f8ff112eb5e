"""Runs in novahost, against the library, what the testkit's own tests run against the testkit: the shared cases, the refusals
of arguments and of missing services, and the example for users; and the examples of the reference. With `recording` a page is recorded,
and played back by the testkit.

usage: library_test.py NOVAHOST NODE SOURCE_DIR cases|sweep|services|example|reference|recording [--browser]
"""
import json
import os
import pathlib
import subprocess
import sys
import tempfile

CASES = """\
const folder = process.argv[2];
const happen = async (step) => process.play(step);
%s
%s
await check(cases.map(([name, , act, expected]) => [name, act, expected]));
exit(failures ? 1 : 0);
"""


def main():
    novahost, node, source, what, *options = sys.argv[1:]
    source = pathlib.Path(source)
    tests = source / "tests/testkit"
    environment = {**os.environ, "QT_QPA_PLATFORM": "offscreen"}
    if "--browser" in options and os.geteuid() == 0:
        environment["QTWEBENGINE_DISABLE_SANDBOX"] = "1"

    def run_script(text, profile, *further):
        """Runs a script in a folder of its own, which is its home and holds letter.txt, own.txt and the folder made."""
        # The cloud process may write a last file when novahost has ended.
        with tempfile.TemporaryDirectory(ignore_cleanup_errors=True) as place:
            home = pathlib.Path(place, "home")
            (home / "made").mkdir(parents=True)
            (home / "letter.txt").write_text("Dear Ada\n")
            (home / "own.txt").write_text("x")
            pathlib.Path(place, "script.js").write_text(text, encoding="utf-8")
            pathlib.Path(place, "profile.json").write_text(profile.replace("${FOLDER}", str(home)), encoding="utf-8")
            command = [novahost, "--no-hints", "--data", f"{place}/data", "--profile", f"{place}/profile.json", *options, *further, "run",
                       f"{place}/script.js", str(home)]
            done = subprocess.run(command, cwd=home, env={**environment, "HOME": str(home)}, capture_output=True, text=True,
                                  errors="replace", check=False)
        lines = [line for line in done.stderr.splitlines() if not line.startswith("suite.")]
        print(done.stdout, *lines[:40], sep="\n")
        return done.returncode == 0

    def sweep(service=None, *further):
        calls = subprocess.run([node, tests / "sweep.mjs", source / "testkit", *([service] if service else [])],
                               stdout=subprocess.PIPE, text=True, check=True).stdout
        text = calls + (tests / "sweep.js").read_text(encoding="utf-8")
        return run_script(text, (source / "examples/tour.profile.json").read_text(encoding="utf-8"), *further)

    if what == "cases":
        harness, cases = ((source / name).read_text(encoding="utf-8") for name in ("tests/script/harness.js", "tests/testkit/cases.js"))
        passed = run_script(CASES % (harness, cases), (tests / "cases.profile.json").read_text(encoding="utf-8"))
    elif what == "sweep":
        passed = sweep()
    elif what == "services":
        names = subprocess.run([node, "--input-type=module", "--eval", "import { serviceNames } from "
                                f"{json.dumps((source / 'testkit/src/faults.js').as_uri())}; console.log(serviceNames.join(' '))"],
                               stdout=subprocess.PIPE, text=True, check=True).stdout.split()
        passed = bool(names) and all([sweep(name, "--without", name) for name in names])
    elif what == "recording":
        page = (tests / "page.js").read_text(encoding="utf-8")
        with tempfile.TemporaryDirectory() as place:
            file = pathlib.Path(place, "page.jsonl")
            passed = run_script(f"const happen = (steps) => process.play(steps);\n{page}\nconsole.log(JSON.stringify(heard));\nexit(0);\n",
                                "{}", "--record", str(file))
            passed = subprocess.run([node, "--test", tests / "kit.mjs"], check=False, env={
                **environment, "TESTKIT": str(source / "testkit"), "RECORDING": str(file)}).returncode == 0 and passed
    elif what == "reference":
        examples = sorted((source / "docs/examples").glob("*.js"))
        profile = (source / "docs/examples/profile.json").read_text(encoding="utf-8")
        failed = [path.name for path in examples if not run_script(path.read_text(encoding="utf-8"), profile)]
        print(f"{len(examples)} examples run; failed: {failed}")
        passed = bool(examples) and not failed
    else:
        passed = subprocess.run([node, source / "examples/testing/run.mjs", novahost, *options], env=environment,
                                check=False).returncode == 0
    sys.exit(0 if passed else 1)


main()
