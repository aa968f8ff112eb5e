"""What a page sees when something is wrong with the cloud service, and that nothing is lost: novahost with the real process.

usage: faults_test.py NOVAHOST
"""
import contextlib
import json
import os
import random
import signal
import subprocess
import sys
import tempfile
import time

PRELUDE = """
const { CloudDoc, FileSystem } = NovaExtension;
const [, , data] = process.argv;
const pause = (ms) => new Promise((resolve) => setTimeout(resolve, ms));
const outcome = (call) => new Promise((resolve) => resolve(call())).then((answer) => answer ?? "nothing",
    (error) => `${error.code} ${error.msg}`);
const heard = (object, name) => new Promise((resolve) => object.addEventListener(name, resolve));
const ends = new Map();
const ended = (task) => ends.get(task);
const upload = (filePath, cloudDir = "up") => {
    const task = CloudDoc.createUploadFileTask({ filePath, cloudDir, autoRename: true });
    ends.set(task, heard(task, "cloud.upload.finished"));
    return task;
};
const started = async (task) => { task.start(); await heard(task, "cloud.upload.progressChanged"); return task; };
const short = ({ status, uploadErrorCode }) => ({ status, uploadErrorCode });
const stored = async (event) => FileSystem.getFileMd5(await CloudDoc.getCloudCachedFile(JSON.parse(event.data).cloudPath));
const showWhole = async (task) => { const end = await ended(task); show([end.status, await stored(end) === await FileSystem.getFileMd5(`${data}/large`)]); };
const until = async (isSo) => { for (let i = 0; i < 3000 && !await isSo(); ++i) await pause(20); };
const show = (answer) => console.log(JSON.stringify(answer));
"""

# Every member that asks the service: what it is called with, its procedure, and what it rejects with.
MEMBERS = {
    "getCloudCachedFile": ('"a"', "getCloudFileCachePath", "Get file cache info failed."),
    "uploadFile2CloudFolder": ('{ cloudPath: "a", files: ["/none"] }', "uploadFilesToCloud", "Sync files failed."),
    "openCloudFolder": ('{ cloudPath: "a" }', "openVirtualCloudDisk", "open folder failed."),
    "getDefaultWorkSpace": ("", "getDefaultWorkspace", "Get default workspace failed."),
    "getMyCloudDocumentsLocalPath": ("", "larkIpcCall", "Get my cloud documents local path failed."),
    "syncFolder": ('{ groupId: "a", folderId: "a" }', "syncFolder", "Sync folder failed."),
    "saveToCloudDir": ('{ groupId: "a", fileId: "a", fname: "a" }', "saveToCloudDir", "Save to cloud dir failed."),
    "getPersonalPrivateGroup": ("", "larkIpcCall", "Get personal private group failed."),
    "getRoamingMode": ("", "larkIpcCall", "Get roaming mode failed."),
    "changeRoamingMode": ('"manual"', "changeRoamingMode", "Change roaming mode failed."),
}
TASK = "createUploadFileTask"
ALL_MEMBERS = "const seen = {};" + "".join(
    f"seen.{name} = await outcome(() => CloudDoc.{name}({argument}));" for name, (argument, _, _) in MEMBERS.items()
) + f'seen.{TASK} = await outcome(() => {{ upload("/none").start(); return "started"; }}); show(seen);'


def all_members(text_of, task):
    return {**{name: f"3 {text_of(*facts[1:])}" for name, facts in MEMBERS.items()}, TASK: task}


def refused(text):
    return all_members(lambda *_: text, f"3 {text}")


# Fault, how novahost is run, script, and what the page sees.
SCRIPTS = [
    ("no cloud service", ["--without", "cloudIpc,accountSdk"], {}, ALL_MEMBERS, refused("Cloud service error.")),
    ("no account service", ["--without", "accountSdk"], {}, ALL_MEMBERS, refused("Get account SDK error.")),
    ("accounts have not begun", ["--without", "currentAccount"], {}, ALL_MEMBERS, refused("Get account SDK error.")),
    ("nobody signed in", [], {"account": {"current": ""}}, ALL_MEMBERS, refused("User not login")),
    ("every request refused", ["--without", "cloudRequests"], {}, ALL_MEMBERS,
     all_members(lambda procedure, _: f"Call {procedure} failed.", "3 task start failed.")),
    ("no promises", ["--without", "promiseService"], {}, ALL_MEMBERS,
     all_members(lambda *_: "Promise Service error.", "started")),
    ("no object factory", ["--without", "objectFactory"], {}, 'show(await outcome(() => upload("/none")));',
     "3 Create upload file task failed."),
    ("process can not be started", [], {"cloud": {"program": "/none"}}, ALL_MEMBERS,
     all_members(lambda _, text: text, "started")),
    ("no proxy", ["--without", "cloudProxy"], {}, """
        let told = 0;
        CloudDoc.addEventListener("clouddoc.roamingmode.changed", () => ++told);
        await CloudDoc.changeRoamingMode("manual");
        await CloudDoc.getRoamingMode();
        show(told);""", 0),
    ("texts that are no Unicode", [], {}, """
        show(await Promise.all([() => CloudDoc.getCloudCachedFile("a\\ud800"), () => upload("/a\\udc00"), () => upload("/a", "\\ud800"),
            () => CloudDoc.openCloudFolder({ cloudPath: "\\ud800", createWhenNoExists: true }),
            () => CloudDoc.uploadFile2CloudFolder({ cloudPath: "a", files: [`${data}/small`, "/\\ud800"] }),
            () => CloudDoc.saveToCloudDir({ groupId: "a", fileId: "a", fname: "a", extraParam: { "\\ud800": "a" } }),
            () => CloudDoc.syncFolder({ groupId: "a", folderId: "a", extraParam: { a: "\\ud800" } })].map(outcome)));""",
     ["1 wrong parameters."] * 7),
    ("an upload that the page does not keep", [], {}, """
        let finished = 0;
        for (let i = 0; i < 20; ++i) {
            const task = CloudDoc.createUploadFileTask({ filePath: `${data}/small`, cloudDir: "let go", autoRename: true });
            task.addEventListener("cloud.upload.finished", ({ status }) => { finished += status === "1"; });
            task.start();
        }
        await until(() => Array.from({ length: 20000 }, () => ({})) && finished === 20);
        show(finished);""", 20),
    ("an upload that can not begin", [], {}, """
        const task = upload("relative");
        task.start();
        show(await ended(task));""", {"taskId": "", "status": "-1", "data": "", "uploadErrorCode": "1", "type": ""}),
    ("cancelled and restarted before it has begun", [], {"cloud": {"uploadBytesPerSecond": 1 << 20}}, """
        const task = upload(`${data}/large`);
        const seen = [await outcome(() => task.cancel().data)];
        task.start();
        task.restart();
        task.cancel();
        seen.push((await ended(task)).status, await outcome(() => task.cancel().data));
        await CloudDoc.getRoamingMode();
        show(seen);""", ["3 task cancel failed.", "6", "3 task cancel failed."]),
    ("source is not there", [], {}, 'const task = upload("/none"); task.start(); show(short(await ended(task)));',
     {"status": "2", "uploadErrorCode": "5"}),

    ("killed while requests wait", [], {"cloud": {"uploadBytesPerSecond": 1 << 20}}, """
        await CloudDoc.getRoamingMode();
        const waiting = Array.from({ length: 100 }, () => outcome(() =>
            CloudDoc.uploadFile2CloudFolder({ cloudPath: "slow", files: [`${data}/large`] })));
        await pause(300);
        process.play("cloud:kill");
        show([...new Set(await Promise.all(waiting)), await CloudDoc.getRoamingMode()]);""",
     ["3 Sync files failed.", "auto"]),
    ("killed: the login that is told", [], {}, """
        const seen = [];
        CloudDoc.addEventListener("clouddoc.loginstatus.changed", ({ isLogin }) => seen.push(isLogin));
        await CloudDoc.getRoamingMode();
        process.play("cloud:kill");
        await pause(100);
        await CloudDoc.getRoamingMode();
        process.play("logout");
        await until(() => seen.length === 4);
        show(seen);""", [True, False, True, False]),
    ("killed again and again", [], {}, """
        const seen = new Set();
        for (let i = 0; i < 8; ++i) {
            process.play("cloud:kill");
            await pause(20 * i);
            seen.add(typeof await CloudDoc.getPersonalPrivateGroup().catch((error) => error.msg));
        }
        show([...seen, await CloudDoc.changeRoamingMode("manual"), (await outcome(() => process.play("cloud:kill"))),
            await pause(100), await CloudDoc.getRoamingMode()]);""",
     ["string", "manual", "nothing", None, "manual"]),
    ("killed during an upload", [], {"cloud": {"uploadBytesPerSecond": 5 << 20}}, """
        const task = await started(upload(`${data}/large`));
        process.play("cloud:kill");
        await showWhole(task);""", ["1", True]),
    ("killed, and the upload restarted at once", [], {"cloud": {"uploadBytesPerSecond": 5 << 20}}, """
        const task = await started(upload(`${data}/large`));
        process.play("cloud:kill");
        await pause(50);
        task.restart();
        await heard(task, "cloud.upload.started");
        await showWhole(task);""", ["1", True]),
    ("cancelled and killed at that moment", [], {"cloud": {"uploadBytesPerSecond": 1 << 20}}, """
        const task = await started(upload(`${data}/large`));
        task.cancel();
        process.play("cloud:kill");
        show(short(await ended(task)));""", {"status": "6", "uploadErrorCode": "10"}),
    ("cancelled while signed out", [], {"cloud": {"uploadBytesPerSecond": 1 << 20}}, """
        const task = await started(upload(`${data}/large`));
        process.play("logout");
        await heard(CloudDoc, "clouddoc.loginstatus.changed");
        task.cancel();
        await heard(task, "cloud.upload.progressChanged");
        process.play("login:user-1");
        show(short(await ended(task)));""", {"status": "6", "uploadErrorCode": "10"}),
    ("signed out during an upload", [], {"cloud": {"uploadBytesPerSecond": 5 << 20}}, """
        const task = await started(upload(`${data}/large`));
        process.play("logout");
        await heard(CloudDoc, "clouddoc.loginstatus.changed");
        process.play("login:user-1");
        await showWhole(task);""", ["1", True]),
]


class Bench:
    """A data directory, and novahost in it."""

    def __init__(self, novahost, data):
        self.novahost, self.data = novahost, data
        for name, size in (("small", 1000), ("large", 12 << 20)):
            with open(f"{data}/{name}", "wb") as file:
                file.write(random.randbytes(size))

    def start(self, script, *options, profile=None, limit_kib=None):
        for name, content in (("page.js", PRELUDE + script), ("profile.json", json.dumps(profile or {}))):
            with open(f"{self.data}/{name}", "w", encoding="utf-8") as file:
                file.write(content)
        command = [self.novahost, "--data", f"{self.data}/state", "--profile", f"{self.data}/profile.json", "--live-counts", *options,
                   "run", f"{self.data}/page.js", self.data]
        if limit_kib:
            command = ["bash", "-c", f'ulimit -f {limit_kib}; exec "$@"', "bash", *command]
        return subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)

    def end(self, run):
        """What the page has shown."""
        try:
            out, errors = run.communicate(timeout=120)
        except subprocess.TimeoutExpired:
            run.kill()
            raise AssertionError(f"it hangs: {run.communicate()}") from None
        assert run.returncode == 0, f"exit code {run.returncode}: {out}{errors[-2000:]}"
        counts = [json.loads(line) for line in errors.splitlines() if line.startswith('{"when"')][-1]
        assert counts.pop("when") == "closed" and not any(counts.values()), f"the page left {counts}"
        return [json.loads(line) for line in out.splitlines()]

    def run(self, script, *options, **how):
        return self.end(self.start(script, *options, **how))

    def processes(self):
        """The novacloudd of this directory."""
        found = []
        for name in filter(str.isdigit, os.listdir("/proc")):
            with contextlib.suppress(OSError), open(f"/proc/{name}/cmdline", "rb") as file:
                words = file.read().split(b"\0")
                if words[0].endswith(b"novacloudd") and f"{self.data}/state/cloud".encode() in words:
                    found.append(int(name))
        return found


def full_disk(bench):
    """An upload that does not fit fails, what fits is kept, and the process goes on."""
    seen = bench.run("""
        const seen = [];
        for (const name of ["large", "small"]) {
            const task = upload(`${data}/${name}`);
            task.start();
            seen.push(short(await ended(task)));
        }
        show(seen);""", limit_kib=4096)
    assert seen == [[{"status": "2", "uploadErrorCode": "6"}, {"status": "1", "uploadErrorCode": "0"}]], seen
    left = os.listdir(f"{bench.data}/state/cloud/incoming")
    assert not left, f"half a file is left: {left}"


def page_that_goes(bench):
    """Uploads outlive the page, and the suite; the page's other requests are forgotten."""
    bench.run("""
        await CloudDoc.getRoamingMode();
        for (let i = 0; i < 1000; ++i)
            CloudDoc.getPersonalPrivateGroup();
        const tasks = Array.from({ length: 100 }, () => upload(`${data}/small`, "many"));
        const begun = Promise.all(tasks.map((task) => heard(task, "cloud.upload.started")));
        tasks.forEach((task) => task.start());
        await begun;
        exit(0);""", profile={"cloud": {"uploadBytesPerSecond": 50_000}})
    seen = bench.run("""
        const names = ["small", ...Array.from({ length: 99 }, (_, i) => `small (${i + 1})`)];
        const digest = await FileSystem.getFileMd5(`${data}/small`);
        await until(async () => await outcome(() => CloudDoc.getCloudCachedFile("many/small (99)")) !== "3 Get file cache info failed.");
        let whole = 0;
        for (const name of names)
            whole += await FileSystem.getFileMd5(await CloudDoc.getCloudCachedFile(`many/${name}`)) === digest;
        show(whole);""")
    assert seen == [100], seen


def frozen(bench):
    """A process that does not answer holds neither the page nor the promise's later answer."""
    run = bench.start("""
        await CloudDoc.getRoamingMode();
        show("ready");
        await until(() => FileSystem.exists(`${data}/stopped`).data);
        const answer = CloudDoc.getPersonalPrivateGroup();
        show(await Promise.race([answer.then(() => "answered"), pause(300).then(() => "the page goes on")]));
        show(typeof JSON.parse(await answer).groupId);""")
    assert json.loads(run.stdout.readline()) == "ready"
    process, = bench.processes()
    os.kill(process, signal.SIGSTOP)
    open(f"{bench.data}/stopped", "wb").close()
    assert json.loads(run.stdout.readline()) == "the page goes on"
    os.kill(process, signal.SIGCONT)
    assert bench.end(run) == ["string"]


def damaged_records(bench):
    """Records that can not be read are not overwritten; the page is told soon."""
    os.makedirs(f"{bench.data}/state/cloud")
    records, damaged = f"{bench.data}/state/cloud/records.sqlite", b"not a database " * 1000
    with open(records, "wb") as file:
        file.write(damaged)
    seen = bench.run("show(await outcome(() => CloudDoc.getDefaultWorkSpace()));")
    assert seen == ["3 Get default workspace failed."], seen
    with open(records, "rb") as file:
        assert file.read() == damaged, "the records have been overwritten"


def two_suites(bench):
    """Two suites with one data directory share the process, and one that only listens hears of the other's changes."""
    first = bench.start("""
        const login = heard(CloudDoc, "clouddoc.loginstatus.changed");
        const changed = heard(CloudDoc, "clouddoc.roamingmode.changed");
        show(await login);
        show(await changed);""")
    assert json.loads(first.stdout.readline()) == {"isLogin": True}
    seen = bench.run('show(await CloudDoc.changeRoamingMode("manual"));')
    assert seen == ["manual"], seen
    assert bench.end(first) == [{"roamingMode": "manual"}]
    assert len(bench.processes()) == 1, "there is more than one process"


def replaced_directory(bench):
    """A process is found again when its directory is another one."""
    run = bench.start("""
        await CloudDoc.getRoamingMode();
        show("ready");
        await until(() => FileSystem.exists(`${data}/replaced`).data);
        await outcome(() => CloudDoc.getRoamingMode());
        show(await CloudDoc.getRoamingMode());""")
    assert json.loads(run.stdout.readline()) == "ready"
    process, = bench.processes()
    os.rename(f"{bench.data}/state/cloud", f"{bench.data}/state/before")
    os.kill(process, signal.SIGKILL)
    open(f"{bench.data}/replaced", "wb").close()
    assert bench.end(run) == ["auto"]


def leaves(bench):
    """A process that nobody needs ends, and one whose data are temporary leaves nothing."""
    place = f"{bench.data}/tmp"
    os.mkdir(place)
    subprocess.run([bench.novahost, "eval", "NovaExtension.CloudDoc.getRoamingMode()"], check=True, capture_output=True, timeout=180,
                   env={**os.environ, "TMPDIR": place})
    assert not os.listdir(place), os.listdir(place)
    bench.run("await CloudDoc.getRoamingMode();")
    mode = os.stat(f"{bench.data}/state/cloud").st_mode
    assert not mode & 0o077, f"the directory is open to others: {mode:o}"
    end = time.monotonic() + 60
    while bench.processes():
        assert time.monotonic() < end, "it stays"
        time.sleep(0.1)


CHECKS = [full_disk, page_that_goes, frozen, damaged_records, two_suites, replaced_directory, leaves]


def main():
    failures = 0
    rows = [(name, lambda bench, options=options, profile=profile, script=script, expected=expected: check_script(
        bench, options, profile, script, expected)) for name, options, profile, script, expected in SCRIPTS]
    rows += [(check.__name__, check) for check in CHECKS]
    for name, check in rows:
        if len(sys.argv) > 2 and sys.argv[2] not in name:
            continue
        with tempfile.TemporaryDirectory(ignore_cleanup_errors=True) as data:
            bench = Bench(sys.argv[1], data)
            try:
                check(bench)
            except AssertionError as error:
                failures += 1
                print(f"{name}: {error}")
            finally:
                for process in bench.processes():
                    os.kill(process, signal.SIGKILL)
    print(f"{len(rows)} faults, {failures} failures")
    return 1 if failures else 0


def check_script(bench, options, profile, script, expected):
    seen = bench.run(script, *options, profile=profile)
    assert seen == [expected], f"the page sees {seen}"


if __name__ == "__main__":
    sys.exit(main())
