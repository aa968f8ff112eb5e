"""Speaks with novacloudd as the suite does: frames of compact-protocol messages, written and read by hand."""
import os
import socket
import struct
import subprocess
import sys
import time

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "cloud"))
from messages_test import Reader, mutated, varint  # noqa: E402, F401

CALL, REPLY, FAILURE, NOTICE = 1, 2, 3, 4


def text(value):
    value = value.encode() if isinstance(value, str) else value
    return varint(len(value)) + value


def text_map(pairs):
    return varint(len(pairs)) + (b"\x88" if pairs else b"") + b"".join(text(k) + text(v) for k, v in pairs.items())


def envelope(method, **arguments):
    """A LarkIpcArg."""
    return b"\x18" + text("") + b"\x18" + text(method) + b"\x1b" + text_map(arguments) + b"\0"


def frame(body, procedure="larkIpcCall", kind=CALL, number=1):
    message = b"\x82" + bytes([kind << 5 | 1]) + varint(number) + text(procedure) + body
    return struct.pack(">I", len(message)) + message


class Connection:
    def __init__(self, directory):
        self.socket = socket.socket(socket.AF_UNIX)
        self.socket.settimeout(60)
        opened = os.open(directory, os.O_PATH)
        try:
            while True:
                try:
                    return self.socket.connect(f"/proc/self/fd/{opened}/service.sock")
                except BlockingIOError:  # many are waiting
                    time.sleep(0.01)
        finally:
            os.close(opened)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.socket.close()

    def exactly(self, size):
        data = b""
        while len(data) < size:
            part = self.socket.recv(size - len(data))
            if not part:
                raise EOFError
            data += part
        return data

    def next(self):
        """The next frame: kind, number, and the message as a dict by field ids."""
        body = self.exactly(struct.unpack(">I", self.exactly(4))[0])
        reader = Reader(body[2:])
        number = reader.varint()
        reader.value(8)
        return body[1] >> 5, number, reader.value(12)

    def send(self, data):
        self.socket.sendall(data)

    def ask(self, body, procedure="larkIpcCall"):
        """The answer to a request: kind and message. Notices in between are dropped."""
        self.send(frame(body, procedure))
        while True:
            kind, _, message = self.next()
            if kind != NOTICE:
                return kind, message

    def sign_in(self, user="user-1"):
        return self.ask(envelope("setCurrentUser", userId=user, signedIn=user, companyId=""))


class Process:
    """A novacloudd of the test's own."""

    def __init__(self, program, directory, *options, **how):
        self.directory = directory
        self.process = subprocess.Popen([program, "--directory", directory, *options], **how)
        deadline = time.monotonic() + 60
        while True:
            try:
                with Connection(directory):
                    return
            except OSError:
                assert self.process.poll() is None, "novacloudd has ended"
                assert time.monotonic() < deadline, "novacloudd does not listen"
                time.sleep(0.02)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.kill()
        self.process.wait()

    def peak_kib(self):
        with open(f"/proc/{self.process.pid}/status", encoding="ascii") as status:
            return next(int(line.split()[1]) for line in status if line.startswith("VmHWM"))
