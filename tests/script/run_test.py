"""Runs one script test in novahost: checks that it passes, that nothing crashed, and that the closed page left nothing.

usage: run_test.py NOVAHOST SCRIPTS_DIR NAME [OPTION...]; with --browser in the browser engine, without a display

walk and random find the description of all members in front of them, as `const api`.
"""
import contextlib
import hmac
import json
import os
import pathlib
import random
import re
import resource
import shutil
import subprocess
import sys
import tempfile

from preparations import INNER_PAGE, PREPARATIONS, replace_opener

RANDOM_SECONDS = 5
API = pathlib.Path(__file__).resolve().parents[2] / "types/api.json"


def start_server(outer, arguments):
    """The server of network.test.js, whose ports it gets. Answers the options for novahost: what pages may reach of it."""
    sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
    import http_server
    os.mkdir(f"{outer}/server")
    ports = http_server.Server(f"{outer}/server").ports
    arguments.append(json.dumps(ports))
    origins = [f"http://*:{ports['plain']}", f"http://127.0.0.1:{ports['plain']}", f"http://127.0.0.2:{ports['plain']}"]
    origins += [f"https://localhost:{port}" for port in ports.values()]
    permissions = [f"reachNetwork:{origin}" for origin in origins] + ["reachPrivateNetwork:127.0.0.1"]
    pathlib.Path(f"{outer}/profile.json").write_text(json.dumps({"directories": {"blacklistedDownloads": ["${DATA}/closed"]}, "network": {"caCertificates": [f"{outer}/server/ca.pem"]},
        "policy": [{"origin": "nova://*", "allow": ["*"], "permissions": permissions}]}), encoding="utf-8")
    return ["--profile", f"{outer}/profile.json"]


def check_desk(result):
    """Whether other programs were to open what desk.test.js says, and its token is what the account's server computes."""
    said = json.loads(result.stdout.splitlines()[-1])
    seen = [line.partition(" open ")[2] for line in result.stderr.splitlines() if line.startswith("suite.desktop: ")]
    if [address for address in seen if "many.example" not in address] != said["opened"]:
        sys.exit(f"opened {seen}")
    if hmac.new(said["csrf"]["session"].encode(), b"csrf", "sha256").hexdigest() != said["csrf"]["token"]:
        sys.exit(f"{said['csrf']}: another token")


def limit_files():
    """Lets files have 4 MB, beyond which writing fails."""
    resource.setrlimit(resource.RLIMIT_FSIZE, (4_000_000, 4_000_000))


def main():
    novahost, scripts, name, *options = sys.argv[1:]
    arguments = []
    if name == "random":
        arguments = [str(RANDOM_SECONDS), os.environ.get("RANDOM_SEED") or str(random.randrange(2**32))]
    with tempfile.TemporaryDirectory() as outer, contextlib.ExitStack() as held:
        # What a broken check would let a page remove above its home is the test's own.
        data = f"{outer}/home"
        os.mkdir(data)
        replace_opener(data, "exit 0\n")
        for kept in PREPARATIONS.get(name, lambda data: [])(data) or []:
            held.enter_context(kept)
        if name == "files":
            arguments = [tempfile.gettempdir()]
        if name == "network":
            options += start_server(outer, arguments)
        script = f"{scripts}/{name}.js"
        if name == "desk":
            pathlib.Path(outer, "inner.html").write_text(INNER_PAGE, encoding="utf-8")
            script = shutil.copy(script, f"{outer}/desk.js")
        if name in ("walk", "random"):
            text = pathlib.Path(script).read_text(encoding="utf-8")
            script = f"{outer}/{name}.js"
            pathlib.Path(script).write_text(f"const api = {API.read_text(encoding='utf-8')};\n{text}", encoding="utf-8")
        command = [novahost, "--data", data, "--live-counts", *options, "run", script, data, *arguments]
        # Paths with variables must not lead into the home of whoever runs the test.
        environment = {**os.environ, "HOME": data, "PATH": f"{data}/bin:{os.environ['PATH']}", "no_proxy": "*"}
        if "--browser" in options:
            environment["QT_QPA_PLATFORM"] = "offscreen"
            if os.geteuid() == 0:
                environment["QTWEBENGINE_DISABLE_SANDBOX"] = "1"
        limited = name == "archives" and "--browser" not in options
        result = subprocess.run(command, capture_output=True, text=True, errors="replace", env=environment, cwd=data,
                                restore_signals=not limited, preexec_fn=limit_files if limited else None)
        half_done = [path.name for path in pathlib.Path(data, "" if name == "network" else "plugins").glob(".*")]
        if name == "archives":
            half_done += [path.name for path in pathlib.Path(data).rglob(".*") if len(path.name) == 33]
            half_done += [path.name for path in pathlib.Path(data).glob("unfinished*")]
    if half_done:
        sys.exit(f"what did not end well left {half_done}")
    print(result.stdout, result.stderr[-4000:], sep="", end="")
    if result.returncode != 0:
        sys.exit(f"exit code {result.returncode}; arguments {arguments[-1:] if name == 'random' else ''}")
    if name == "random" and not re.search(r"^\d+ calls, ", result.stdout, re.MULTILINE):
        sys.exit(f"the page has gone before its end; arguments {arguments}")
    if name == "desk":
        check_desk(result)
    counts = [json.loads(line) for line in result.stderr.splitlines() if line.startswith('{"when"')]
    left = {key: value for key, value in counts[-1].items() if key != "when" and value}
    if counts[-1]["when"] != "closed" or left:
        sys.exit(f"a closed page left {left}")


main()
