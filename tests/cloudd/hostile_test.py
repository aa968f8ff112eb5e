"""What novacloudd does with bytes from strangers: it neither ends nor takes memory without limit, and others are served.

usage: hostile_test.py NOVACLOUDD [SECONDS]
"""
import contextlib
import os
import random
import socket
import stat
import struct
import subprocess
import sys
import tempfile
import time

from wire import FAILURE, NOTICE, REPLY, Connection, Process, envelope, frame, mutated, text, text_map, varint

MOST_MIB = 400  # beyond what it has after its start; the sanitizers keep freed memory back
LENGTH = struct.pack

WORKSPACE = b"\x18" + text("x") + b"\x1b" + text_map({}) + b"\0"
# Each on a connection of its own: bytes, and what becomes of the connection ("closed", "open", or the answer's kind).
ROWS = {
    "frame of no bytes": (b"\0\0\0\0", "closed"),
    "frame of 4 GiB": (b"\xff\xff\xff\xff", "closed"),
    "frame just too long": (LENGTH(">I", (4 << 20) + 1), "closed"),
    "announced but not sent": (LENGTH(">I", 4 << 20) + b"x", "open"),
    "no head": (LENGTH(">I", 3) + b"abc", "closed"),
    "no such kind": (frame(envelope("x"), kind=7), "closed"),
    "old protocol": (LENGTH(">I", 4) + b"\x80\x01\0\1", "closed"),
    "name of 1 MiB": (frame(envelope("x"), procedure="x" * (1 << 20)), "closed"),
    "name that announces 2 GiB": (LENGTH(">I", 9) + b"\x82\x21\x01\xff\xff\xff\xff\x07x", "closed"),
    "no such procedure": (frame(envelope("x"), procedure="formatDisk"), NOTICE),
    "no procedure": (frame(envelope("x"), procedure=""), NOTICE),
    "type without procedure": (frame(envelope("x"), procedure="getRpcReqState"), NOTICE),
    "no such method": (frame(envelope("formatDisk")), FAILURE),
    "no message": (frame(b""), NOTICE),
    "half a message": (frame(envelope("getRoamingMode", userId="user-1")[:-5]), NOTICE),
    "bytes behind the message": (frame(envelope("getRoamingMode") + b"x"), NOTICE),
    "text that announces 2 GiB": (frame(b"\x18\xff\xff\xff\xff\x07"), NOTICE),
    "map that announces 2 billion": (frame(b"\x3b\xff\xff\xff\xff\x07\x88"), NOTICE),
    "list of lists of lists": (frame(b"\x79" + b"\x19" * 100_000), NOTICE),
    "structs 100,000 deep": (frame(b"\x7c" + b"\x1c" * 100_000), NOTICE),
    "a million empty texts": (frame(b"\x39\xf8" + varint(1_000_000) + b"\0" * 1_000_001, "uploadFilesToCloud"), FAILURE),
    "text that is no UTF-8": (frame(envelope("setCurrentUser", userId=b"\xff\xfe", signedIn=b"\xff\xfe")), FAILURE),
    "reply to nobody": (frame(envelope("x"), kind=REPLY), "open"),
    "notice": (frame(envelope("setCurrentUser", userId="user-1"), kind=NOTICE), "open"),
    "user with a path": (frame(envelope("setCurrentUser", userId="../../x", signedIn="../../x"))
                         + frame(envelope("getMyCloudDocumentsLocalPath", userId="../../x")), REPLY),
}


def becomes(connection):
    try:
        connection.socket.settimeout(0.3)
        return connection.next()[0]
    except TimeoutError:
        return "open"
    except (EOFError, ConnectionError):
        return "closed"


def is_served(directory):
    with Connection(directory) as connection:
        kind, message = connection.sign_in()
        assert (kind, message[1]) == (REPLY, 0), message
        assert connection.ask(envelope("getRoamingMode", userId="user-1"))[0] == REPLY


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


def flood(directory):
    """Requests without end from one that does not read: its bytes are not taken any more, others are served."""
    connection = Connection(directory)
    connection.sign_in()
    connection.socket.setblocking(False)
    request = frame(envelope("getPersonalPrivateGroup", userId="user-1")) * 200
    end = time.monotonic() + 30
    quiet = 0
    while quiet < 20 and time.monotonic() < end:
        try:
            connection.socket.send(request)
            quiet = 0
        except BlockingIOError:
            quiet += 1
            time.sleep(0.05)
    assert quiet == 20, "a client that does not read is still listened to"
    return connection


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

        for name, (data, expected) in ROWS.items():
            with Connection(directory) as connection:
                connection.send(data)
                if name == "user with a path":
                    connection.next()
                found = becomes(connection)
            if found != expected:
                failures.append(f"{name}: {found} instead of {expected}")
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
        second = subprocess.run([program, "--directory", directory], capture_output=True, timeout=30, check=False)
        if second.returncode == 0:
            failures.append("a second one serves the same directory")

        count = mutations(directory, seconds)
        held.enter_context(contextlib.closing(flood(directory).socket))
        is_served(directory)
        # No more connections than it has room for; the others are closed at once.
        crowd = [held.enter_context(Connection(directory)) for _ in range(100)]
        if sum(becomes(one) == "closed" for one in crowd[-20:]) != 20:
            failures.append("there is no end to connections")
        for one in crowd:
            one.socket.close()
        time.sleep(0.2)
        is_served(directory)
        grown = (process.peak_kib() - before) / 1024
        if grown > MOST_MIB:
            failures.append(f"took {grown:.0f} MiB")
        if os.path.exists(f"{outer}/x") or any("x" in names for _, names, _ in os.walk(outer)):
            failures.append("a user's name has become a path")
    for failure in failures:
        print(failure)
    print(f"{len(ROWS)} rows, {count} mutations, seed {seed}, {grown:.0f} MiB more")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
