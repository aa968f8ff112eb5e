"""Uploads, cancels, restarts and requests of two suites while their cloud process is killed or frozen again and again, also
before it has begun to serve: nothing is lost, stored twice or stuck, and what was cancelled is not stored.

usage: storm_test.py NOVAHOST [KILLS] [SEED]
"""
import collections
import contextlib
import hashlib
import os
import random
import signal
import sqlite3
import sys
import tempfile
import threading
import time

from faults_test import Bench

UPLOADS = 100  # of each suite
CANCELS = 10  # of each suite, of a large file
WAITS = (0, 0.005, 0.02, 0.1, 0.3)  # seconds between two kills
PAGE = """
const [, , , first, spread] = process.argv;
const again = {};
let left = %d;
const begin = async (name, delay) => {
    await pause(delay);
    const task = CloudDoc.createUploadFileTask({ filePath: `${data}/${name}`, cloudDir: "storm", autoRename: true });
    let runs = 0;
    const start = () => { ++runs; task.start(); };
    task.addEventListener("cloud.upload.finished", ({ status }) => {
        if (--runs)
            show(`${name} has ended twice`);
        if (status === "1")
            return --left;
        if (status !== "-1")
            show(`${name} has ended with ${status}`);
        again[name] = (again[name] ?? 0) + 1;
        setTimeout(start, 20);
    });
    start();
};
const doom = async (isRestarted, delay) => {
    await pause(delay);
    const task = upload(`${data}/large`, "storm");
    // One whose beginning has no reply has no name to be cancelled by.
    task.addEventListener("cloud.upload.finished", ({ taskId }) => { again.large = (again.large ?? 0) + !taskId; });
    task.start();
    await Promise.race([heard(task, "cloud.upload.started"), ended(task)]);
    await pause(Math.random() * 300);
    const end = heard(task, "cloud.upload.finished");
    if (isRestarted)
        task.restart();
    const isPromised = await outcome(() => task.cancel().success) === true;
    process.play("cloud:kill");
    if (isPromised && (await end).status === "1")
        show("a cancelled upload has finished");
};
for (let i = 0; i < left; ++i)
    begin(`s${+first + i}`, i * spread);
const dooms = Array.from({ length: %d }, (_, i) => doom(i %% 2, i * 5 * spread));
for (; left; await pause(5))
    await outcome(() => CloudDoc.getRoamingMode());
await Promise.all(dooms);
await CloudDoc.getRoamingMode();
show(again);
""" % (UPLOADS, CANCELS)
# Stands in for a novacloudd that dies in its first milliseconds as long as a file is there.
WRAPPER = """#!/bin/sh
[ -e "{young}" ] && kill -9 $$
exec "{program}" "$@"
"""


def send(process, number):
    with contextlib.suppress(ProcessLookupError):
        os.kill(process, number)


def kill_one(bench, chance, young):
    """Now, or the next one while it starts, or, by the wrapper, all that start for a while; or freezes it for a while."""
    before, wait = set(bench.processes()), chance.choice(WAITS)
    kind = chance.choice(("now", "now", "next", "young", "frozen"))
    if kind == "young":
        open(young, "wb").close()
    for process in before if kind == "frozen" else ():
        send(process, signal.SIGSTOP)
    end = time.monotonic() + wait
    while time.monotonic() < end and not (kind == "next" and set(bench.processes()) - before):
        time.sleep(0.002)
    for process in bench.processes():
        send(process, signal.SIGCONT if kind == "frozen" else signal.SIGKILL)
    if kind == "young":
        os.remove(young)


def storm(bench, kills, seed):
    young, wrapper = f"{bench.data}/young", f"{bench.data}/wrapper"
    with open(wrapper, "w", encoding="ascii") as file:
        file.write(WRAPPER.format(young=young, program=os.path.abspath(f"{os.path.dirname(bench.novahost)}/novacloudd")))
    os.chmod(wrapper, 0o755)
    with open(f"{bench.data}/large", "rb") as file:
        digests = {"large": hashlib.sha256(file.read()).hexdigest()}
    for i in range(2 * UPLOADS):
        content = random.randbytes(random.randrange(60_000))
        digests[f"s{i}"] = hashlib.sha256(content).hexdigest()
        with open(f"{bench.data}/s{i}", "wb") as file:
            file.write(content)
    spread = 1000 * kills * sum(WAITS) / len(WAITS) / UPLOADS
    runs = [bench.start(PAGE, arguments=[str(first), str(spread)], profile={"cloud": {"program": wrapper, "uploadBytesPerSecond": 4 << 20}})
            for first in (0, UPLOADS)]
    chance = random.Random(seed)
    killer = threading.Thread(target=lambda: [kill_one(bench, chance, young) for _ in range(kills)])
    killer.start()
    again = {}
    for run in runs:
        *complaints, more = bench.end(run, timeout=60 + kills)
        assert not complaints, complaints
        again.update({**more, "large": again.get("large", 0) + more.get("large", 0)})
    killer.join()
    with sqlite3.connect(f"file:{bench.data}/state/cloud/records.sqlite?mode=ro", uri=True) as records:
        end = time.monotonic() + 60
        while (left := records.execute("SELECT count(*) FROM tasks WHERE ended IS NULL").fetchone()[0]) and time.monotonic() < end:
            time.sleep(0.1)
        rows = records.execute("SELECT name, sha256 FROM items WHERE isFolder = 0").fetchall()
    copies = collections.Counter(name.split(" ")[0] for name, _ in rows)
    # One that the page began again may have been taken on the first time, though no reply came.
    wrong = {name: copies[name] for name in digests if not 0 <= copies[name] - (name != "large") <= again.get(name, 0)}
    assert not wrong, f"copies in the cloud: {wrong}"
    wrong = [name for name, digest in rows if digests[name.split(" ")[0]] != digest]
    assert not wrong, f"other bytes in the cloud: {wrong}"
    assert not left, f"{left} uploads have no end"
    return sum(again.values())


def main():
    kills = int((sys.argv[2:] + ["50"])[0])
    seed = int(sys.argv[3]) if len(sys.argv) > 3 else random.randrange(2**32)
    with tempfile.TemporaryDirectory(ignore_cleanup_errors=True) as data:
        bench = Bench(sys.argv[1], data)
        try:
            print(f"{kills} kills, seed {seed}", flush=True)
            print(f"{storm(bench, kills, seed)} uploads were begun again")
        finally:
            for process in bench.processes():
                os.kill(process, signal.SIGKILL)


if __name__ == "__main__":
    main()
