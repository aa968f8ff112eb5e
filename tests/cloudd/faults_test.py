"""What a page sees when something is wrong with the cloud service, and that nothing is lost: novahost with the real process.

usage: faults_test.py NOVAHOST
"""
import contextlib
import json
import os
import random
import shutil
import signal
import sqlite3
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
const until = async (isSo) => { for (let i = 0; i < 3000 && !await isSo(); ++i) await pause(20); };
const show = (answer) => console.log(JSON.stringify(answer));
"""

ONE_MEMBER = "show(await outcome(() => CloudDoc.getRoamingMode()));"

# Fault, how novahost is run, script, and what the page sees.
SCRIPTS = [
    ("no cloud service", ["--without", "cloudIpc,accountSdk"], {}, ONE_MEMBER, "3 Cloud service error."),
    ("no account service", ["--without", "accountSdk"], {}, ONE_MEMBER, "3 Get account SDK error."),
    ("accounts have not begun", ["--without", "currentAccount"], {}, ONE_MEMBER, "3 Get account SDK error."),
    ("nobody signed in", [], {"account": {"current": ""}}, ONE_MEMBER, "3 User not login"),
    ("every request refused", ["--without", "cloudRequests"], {},
     'show([await outcome(() => CloudDoc.getRoamingMode()), await outcome(() => upload("/none").start())]);',
     ["3 Call larkIpcCall failed.", "3 task start failed."]),
    ("no promises", ["--without", "promiseService"], {}, ONE_MEMBER, "3 Promise Service error."),
    ("no object factory", ["--without", "objectFactory"], {}, 'show(await outcome(() => upload("/none")));',
     "3 Create upload file task failed."),
    ("process can not be started", [], {"cloud": {"program": "/none"}}, ONE_MEMBER, "3 Get roaming mode failed."),
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
    ("another company", [], {}, """
        const seen = [(await CloudDoc.getDefaultWorkSpace()).isEnterpriseIP];
        process.play("user:companyId=");
        await pause(0);
        show([...seen, (await CloudDoc.getDefaultWorkSpace()).isEnterpriseIP]);""", [True, False]),
    ("killed while requests wait", [], {"cloud": {"uploadBytesPerSecond": 1 << 20}}, """
        const logins = [];
        CloudDoc.addEventListener("clouddoc.loginstatus.changed", ({ isLogin }) => logins.push(isLogin));
        await CloudDoc.changeRoamingMode("manual");
        const waiting = Array.from({ length: 100 }, () => outcome(() =>
            CloudDoc.uploadFile2CloudFolder({ cloudPath: "slow", files: [`${data}/large`] })));
        await pause(300);
        process.play("cloud:kill");
        const seen = [...new Set(await Promise.all(waiting)), await CloudDoc.getRoamingMode()];
        process.play("logout");
        await until(() => logins.length === 4);
        show([...seen, ...logins]);""", ["3 Sync files failed.", "manual", True, False, True, False]),
    ("cancelled while signed out", [], {"cloud": {"uploadBytesPerSecond": 1 << 20}}, """
        const task = await started(upload(`${data}/large`));
        process.play("logout");
        await heard(CloudDoc, "clouddoc.loginstatus.changed");
        task.cancel();
        await heard(task, "cloud.upload.progressChanged");
        process.play("login:user-1");
        show(short(await ended(task)));""", {"status": "6", "uploadErrorCode": "10"}),
]


class Bench:
    """A data directory, and novahost in it."""

    def __init__(self, novahost, data):
        self.novahost, self.data, self.pages, self.errors = novahost, data, 0, ""
        for name, size in (("small", 1000), ("large", 12 << 20)):
            with open(f"{data}/{name}", "wb") as file:
                file.write(random.randbytes(size))

    def start(self, script, *options, profile=None, limit_kib=None, arguments=(), home=None):
        self.pages += 1
        page = f"{self.data}/page{self.pages}"
        for name, content in (("js", PRELUDE + script), ("json", json.dumps(profile or {}))):
            with open(f"{page}.{name}", "w", encoding="utf-8") as file:
                file.write(content)
        command = [self.novahost, "--data", f"{self.data}/state", "--profile", f"{page}.json", "--live-counts", *options,
                   "run", f"{page}.js", self.data, *arguments]
        if limit_kib:
            command = ["bash", "-c", f'ulimit -f {limit_kib}; exec "$@"', "bash", *command]
        environment = {**os.environ, "HOME": home} if home else None
        return subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, env=environment)

    def end(self, run, timeout=120):
        """What the page has shown."""
        try:
            out, self.errors = run.communicate(timeout=timeout)
        except subprocess.TimeoutExpired:
            run.kill()
            raise AssertionError(f"it hangs: {str(run.communicate())[-2000:]}") from None
        assert run.returncode == 0, f"exit code {run.returncode}: {out}{self.errors[-2000:]}"
        counts = [json.loads(line) for line in self.errors.splitlines() if line.startswith('{"when"')][-1]
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
    """Uploads outlive the page, and the suite, but not a cancel; the page's other requests are forgotten."""
    bench.run("""
        const cancelled = await started(upload(`${data}/large`, "many"));
        for (let i = 0; i < 1000; ++i)
            CloudDoc.getPersonalPrivateGroup();
        const tasks = Array.from({ length: 100 }, () => upload(`${data}/small`, "many"));
        const begun = Promise.all(tasks.map((task) => heard(task, "cloud.upload.started")));
        tasks.forEach((task) => task.start());
        await begun;
        cancelled.cancel();
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
    with sqlite3.connect(f"file:{bench.data}/state/cloud/records.sqlite?mode=ro", uri=True) as records:
        left, = records.execute("SELECT count(*) FROM tasks WHERE ended IS NULL").fetchone()
    assert not left, "the cancel has not arrived"


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


def unusable_files(bench):
    """What can not be used is not overwritten; the page is told soon, and the operator why, though there may be no log."""
    cloud, damaged = f"{bench.data}/state/cloud", b"not a database " * 1000
    for path, reason in ((f"{cloud}/records.sqlite", "is damaged, or no file of records"), (cloud, "can not be written to")):
        shutil.rmtree(cloud, ignore_errors=True)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "wb") as file:
            file.write(damaged)
        seen = bench.run("show(await outcome(() => CloudDoc.getDefaultWorkSpace()));")
        assert seen == ["3 Get default workspace failed."], seen
        assert reason in bench.errors, bench.errors
        with open(path, "rb") as file:
            assert file.read() == damaged, f"{path} has been overwritten"


def closed_files(bench):
    """Nothing gets into the cloud from places that the profile closes to uploads, whichever way leads there."""
    home, state = f"{bench.data}/home", f"{bench.data}/state"
    for folder in (f"{home}/.ssh", f"{home}/elsewhere", f"{state}/user", f"{state}/cloud/documents/user-1", f"{state}/cloud/documents/user-2"):
        os.makedirs(folder)
    os.symlink("elsewhere", f"{home}/.gnupg")
    files = {f"{home}/.ssh/id": "11", f"{home}/elsewhere/key": "11", f"{home}/.netrc": "11", f"{home}/.netrc2": "0", f"{home}/mine": "0",
             f"{state}/log": "11", f"{state}/user/mine": "0", f"{state}/cloud/documents/user-1/mine": "0",
             f"{state}/cloud/documents/user-2/theirs": "11"}
    for path in files:
        with open(path, "w", encoding="ascii") as file:
            file.write(path)
    os.symlink(".ssh/id", f"{home}/link")
    os.link(f"{home}/.netrc", f"{home}/other name")
    files |= {f"{home}/link": "11", f"{home}/other name": "11", f"{home}/elsewhere/../.ssh/../.ssh/id": "11"}
    seen = bench.run("""
        const codes = {};
        for (const path of process.argv.slice(3)) {
            const task = upload(path);
            task.start();
            codes[path] = (await ended(task)).uploadErrorCode;
        }
        const folder = process.argv[3].replace("/.ssh/id", "");
        const files = [`${folder}/elsewhere/key`];
        show([codes, await outcome(() => FileSystem.remove(`${folder}/.gnupg`)),
            await outcome(() => FileSystem.copy({ path: files[0], newPath: `${folder}/mine too` })),
            await outcome(() => CloudDoc.uploadFile2CloudFolder({ cloudPath: "up", files, createWhenNoExists: true }))]);""",
                     arguments=list(files), home=home)
    assert seen == [[files, "3 New path is illegal.", "3 Path is illegal.", "3 Sync files failed."]], seen


def two_suites(bench):
    """Two suites with one data directory share the process, and each hears of what the other does, its sign-out too."""
    first = bench.start("""
        const changed = heard(CloudDoc, "clouddoc.roamingmode.changed");
        const signedIn = heard(CloudDoc, "clouddoc.loginstatus.changed");
        const signedOut = heard(NovaExtension.Account, "event.account.logout");
        show(await signedIn);
        show(await changed);
        await signedOut;
        show(await outcome(() => CloudDoc.getRoamingMode()));
        process.play("login:user-2");
        await heard(CloudDoc, "clouddoc.loginstatus.changed");""")
    assert json.loads(first.stdout.readline()) == {"isLogin": True}
    seen = bench.run('show(await CloudDoc.changeRoamingMode("manual")); process.play("logout"); await pause(100);')
    assert seen == ["manual"], seen
    assert bench.end(first) == [{"roamingMode": "manual"}, "3 User not login"]
    assert len(bench.processes()) == 1, "there is more than one process"
    with open(f"{bench.data}/state/accounts.json", encoding="utf-8") as file:
        accounts = json.load(file)
    assert (accounts["current"], accounts["signedIn"]) == ("user-2", ["user-2"]), f"the sign-out is lost: {accounts}"


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


CHECKS = [full_disk, page_that_goes, frozen, unusable_files, closed_files, two_suites, replaced_directory, leaves]


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
