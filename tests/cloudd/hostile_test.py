"""What novacloudd does with bytes from strangers: it neither ends nor takes memory without limit, and others are served.

usage: hostile_test.py NOVACLOUDD [SECONDS]
"""
import contextlib
import fcntl
import os
import random
import select
import socket
import stat
import struct
import subprocess
import sys
import tempfile
import time

from wire import FAILURE, NOTICE, REPLY, Connection, Process, envelope, frame, mutated, text, text_map, varint

MOST_MIB = 64  # beyond what it has after its start
MOST_MIB_SANITIZED = 400  # the sanitizers keep freed memory back
LONG = 60  # seconds for what must happen
LENGTH = struct.pack


def uploads(sources, data=b"", user="user-1"):
    """uploadFilesToCloud"""
    texts = b"".join(map(text, sources))
    return frame(b"\x18" + text(user) + b"\x18" + text("up") + b"\x19\xf8" + varint(len(sources)) + texts + b"\x11"
                 + b"\x18" + text(data) + b"\0", "uploadFilesToCloud")


WORKSPACE = b"\x18" + text("x") + b"\x1b" + text_map({}) + b"\0"
# Each on a connection of its own: bytes, and what becomes of it: the answers' kinds, "closed", "open".
ROWS = {
    "frame of no bytes": (b"\0\0\0\0", "closed"),
    "frame of 4 GiB": (b"\xff\xff\xff\xff", "closed"),
    "frame just too long": (LENGTH(">I", (4 << 20) + 1), "closed"),
    "announced but not sent": (LENGTH(">I", 4 << 20) + b"x", "open"),
    "no head": (LENGTH(">I", 3) + b"abc", "closed"),
    "no such kind": (frame(envelope("x"), kind=7), "closed"),
    "name of 1 MiB": (frame(envelope("x"), procedure="x" * (1 << 20)), "closed"),
    "name that announces 2 GiB": (LENGTH(">I", 9) + b"\x82\x21\x01\xff\xff\xff\xff\x07x", "closed"),
    "no such procedure": (frame(envelope("x"), procedure="formatDisk"), NOTICE),
    "no procedure": (frame(envelope("x"), procedure=""), NOTICE),
    "type without procedure": (frame(envelope("x"), procedure="getRpcReqState"), NOTICE),
    "bytes behind the message": (frame(envelope("getRoamingMode") + b"x"), NOTICE),
    "a million empty texts": (frame(b"\x39\xf8" + varint(1_000_000) + b"\0" * 1_000_001, "uploadFilesToCloud"), FAILURE),
    "reply to nobody": (frame(envelope("x"), kind=REPLY), "open"),
    "notice": (frame(envelope("setCurrentUser", userId="user-1"), kind=NOTICE), "open"),
    "user with a path": (frame(envelope("setCurrentUser", userId="../../x", signedIn="../../x"))
                         + frame(envelope("getMyCloudDocumentsLocalPath", userId="../../x")), REPLY, REPLY),
    "too many sources": (uploads(["/none"] * 10_001), FAILURE),
    "a million users": (frame(envelope("setCurrentUser", userId="user-1", signedIn="a\n" * 1_000_000)), FAILURE),
    "missing sources, with something to keep": (uploads(["/none"] * 2000, b"u" * (64 << 10)), FAILURE),
    "too much to keep": (uploads(["/none"], b"u" * (64 << 10) + b"u"), FAILURE),
}


def becomes(connection, expected):
    """The next answer's kind, or what has become of the connection. Only what is to stay open is not waited for long."""
    try:
        connection.socket.settimeout(0.3 if expected == "open" else LONG)
        while True:
            kind = connection.next()[0]
            if kind != NOTICE or expected == NOTICE:
                return kind
    except TimeoutError:
        return "open"
    except (EOFError, ConnectionError):
        return "closed"


def eventually(condition, complaint):
    end = time.monotonic() + LONG
    while not condition():
        assert time.monotonic() < end, complaint
        time.sleep(0.05)


def is_served(directory):
    with Connection(directory) as connection:
        kind, message = connection.sign_in()
        assert (kind, message[1]) == (REPLY, 0), message
        assert connection.ask(envelope("getRoamingMode", userId="user-1"))[0] == REPLY


def succeeds(check, argument):
    with contextlib.suppress(EOFError, OSError):
        check(argument)
        return True
    return False


def mutations(directory, seconds):
    """Valid frames with a few bytes changed, on connections that end in the middle of them."""
    seeds = [frame(envelope("setCurrentUser", userId="user-1", signedIn="user-1")), frame(WORKSPACE, "getDefaultWorkspace"),
             frame(envelope("getTaskState", userId="user-1", taskId="1")), frame(envelope("getPersonalPrivateGroup", userId="user-1"))]
    end = time.monotonic() + seconds
    count = 0
    while time.monotonic() < end:
        with Connection(directory) as connection, contextlib.suppress(ConnectionError):
            for _ in range(random.randrange(1, 30)):
                connection.send(mutated(random.choice(seeds)))
                count += 1
    return count


def flood(connection, request, most):
    """Sends the request again and again, until its bytes are not taken any more."""
    connection.socket.setblocking(False)
    sent = quiet = 0
    while quiet < 20:
        try:
            sent += connection.socket.send(request[sent % len(request):])
            quiet = 0
        except BlockingIOError:
            quiet += 1
            time.sleep(0.05)
        assert sent < most, f"more than {sent >> 20} MiB of requests without answers have been read"


def waiting(program, directory):
    """What waits is limited: replies that come late to one that does not read, and requests that have no reply yet."""
    os.makedirs(directory)
    source = f"{directory}/source"
    with open(source, "wb") as file:
        file.write(b"x" * 10_000)
    with Process(program, directory, "--upload-rate", "1"):
        with Connection(directory) as other, Connection(directory) as connection:
            # Three slow uploads hold up those that follow.
            other.sign_in("user-2")
            slow = [other.ask(envelope("uploadFileToCloud", userId="user-2", filePath=source))[1][2][b"taskId"] for _ in range(3)]
            connection.sign_in()
            # Their replies are six times as long. Nobody is signed in then, so there are no notices.
            connection.send(uploads(["/" + "\1" * 4000 + "/x"] * 43) * 80)
            assert connection.ask(envelope("setCurrentUser"))[0] == REPLY
            for task in slow:
                other.ask(envelope("cancelTransferTask", userId="user-2", taskId=task))
            eventually(lambda: is_dropped(connection), "replies pile up for one that does not read")
        with Connection(directory) as connection:
            connection.sign_in("user-2")
            flood(connection, uploads([source], b"u" * (64 << 10), "user-2"), 20 << 20)
        is_served(directory)


def is_dropped(connection):
    poll = select.poll()
    poll.register(connection.socket, 0)
    return bool(poll.poll(0))


def turns(program, directory):
    """A process waits for the one before; one that finds its directory served, or gone, ends."""
    os.makedirs(directory, 0o755)
    with open(f"{directory}/lock", "wb") as lock:
        fcntl.flock(lock, fcntl.LOCK_EX)
        waiter = subprocess.Popen([program, "--directory", directory])
        time.sleep(2)
        assert os.listdir(directory) == ["lock"], f"it does not wait, or has made {os.listdir(directory)}"
    with Process(program, directory) as other:
        eventually(lambda: other.process.poll() is not None or waiter.poll() is not None, "two processes serve")
        codes = {process.poll() for process in (waiter, other.process)}
        assert codes == {None, 0}, f"exit codes {codes}"
        mode = stat.S_IMODE(os.stat(directory).st_mode)
        assert mode == 0o700, f"the directory is open to others: {mode:o}"
        server = waiter if waiter.poll() is None else other.process
        with Connection(directory) as connection:
            connection.sign_in()
            os.rename(directory, directory + ".gone")
            eventually(lambda: server.poll() is not None, "a process without its directory stays")


def most_mib(program):
    with open(program, "rb") as file:
        return MOST_MIB_SANITIZED if b"__asan_init" in file.read() else MOST_MIB


def main():
    program, seconds = sys.argv[1], float((sys.argv[2:] + ["3"])[0])
    failures = []
    seed = os.environ.get("RANDOM_SEED") or str(random.randrange(2**32))
    random.seed(seed)
    with tempfile.TemporaryDirectory() as outer, contextlib.ExitStack() as held:
        directory = f"{outer}/{'long ' * 40}/cloud"  # beyond what a socket's name has room for
        os.makedirs(directory)
        process = held.enter_context(Process(program, directory))
        is_served(directory)
        before = process.peak_kib()
        steady = held.enter_context(Connection(directory))
        steady.sign_in()

        for name, (data, *kinds) in ROWS.items():
            with Connection(directory) as connection:
                connection.sign_in()  # one that does not is closed in the end, whatever it sends
                connection.send(data)
                found = [becomes(connection, kind) for kind in kinds]
            if found != kinds:
                failures.append(f"{name}: {found} instead of {kinds}")
            is_served(directory)

        mode = stat.S_IMODE(os.stat(f"{directory}/service.sock").st_mode)
        if mode & 0o077:
            failures.append(f"the socket is open to others: {mode:o}")
        if os.geteuid() == 0:
            os.chmod(outer, 0o711)  # only the process's own directory is in a stranger's way
            stranger = subprocess.run(
                [sys.executable, "-c", "import socket,sys; socket.socket(socket.AF_UNIX).connect(sys.argv[1])", "service.sock"],
                cwd=directory, user=65534, capture_output=True, check=False)
            if stranger.returncode == 0:
                failures.append("another user has got through")
        count = mutations(directory, seconds)
        flooder = held.enter_context(Connection(directory))
        flooder.sign_in()
        flood(flooder, frame(envelope("getPersonalPrivateGroup", userId="user-1")) * 200, 100 << 20)
        is_served(directory)
        # No more connections than it has room for; the others are closed at once, and the silent ones in the end.
        with contextlib.ExitStack() as crowd:
            known = [succeeds(Connection.sign_in, crowd.enter_context(Connection(directory))) for _ in range(40)]
            if not any(known) or all(known) or succeeds(is_served, directory):
                failures.append("there is no end to connections")
        silent = [held.enter_context(Connection(directory)) for _ in range(40)]
        if any(becomes(one, "closed") != "closed" for one in silent):
            failures.append("silent connections shut others out")
        steady.send(frame(envelope("getRoamingMode", userId="user-1")))
        if becomes(steady, REPLY) != REPLY:
            failures.append("one that has signed in is ended")
        grown = (process.peak_kib() - before) / 1024
        if grown > most_mib(program):
            failures.append(f"took {grown:.0f} MiB")
        if os.path.exists(f"{outer}/x") or any("x" in names for _, names, _ in os.walk(outer)):
            failures.append("a user's name has become a path")
        for check in (waiting, turns):
            try:
                check(program, f"{outer}/{check.__name__}")
            except AssertionError as error:
                failures.append(f"{check.__name__}: {error}")
    for failure in failures:
        print(failure)
    print(f"{len(ROWS)} rows, {count} mutations, seed {seed}, {grown:.0f} MiB more")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
