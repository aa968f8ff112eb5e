"""Speaks with novacloudd as the suite does: frames of compact-protocol messages, written by hand and read by Thrift's own
reader for Python, which shares no code with what wrote them."""
import os
import random
import socket
import struct
import subprocess
import time

from thrift.protocol.TCompactProtocol import TCompactProtocol
from thrift.Thrift import TType
from thrift.transport.TTransport import TMemoryBuffer

CALL, REPLY, FAILURE, NOTICE = 1, 2, 3, 4


def varint(number):
    out = b""
    while number > 127:
        out += bytes([number & 127 | 128])
        number >>= 7
    return out + bytes([number])


HUGE = varint(2 ** 31 - 1)


def mutated(data):
    data = bytearray(data)
    for _ in range(random.randint(1, 3)):
        at = random.randrange(len(data) or 1)
        data[at:at + random.choice((0, 1, 9))] = random.choice((b"", b"\xff", b"\x1c", random.randbytes(1), HUGE, data[:random.randrange(20)]))
    return bytes(data[:random.randrange(1, 5 * len(data) + 2)])


def read_value(protocol, kind):
    """A value of a message; a struct becomes a dict by its fields' ids."""
    plain = {TType.BOOL: protocol.readBool, TType.I32: protocol.readI32, TType.I64: protocol.readI64,
             TType.STRING: protocol.readBinary}
    if kind in plain:
        return plain[kind]()
    if kind == TType.LIST:
        element, size = protocol.readListBegin()
        value = [read_value(protocol, element) for _ in range(size)]
        protocol.readListEnd()
    elif kind == TType.MAP:
        key, element, size = protocol.readMapBegin()
        value = {read_value(protocol, key): read_value(protocol, element) for _ in range(size)}
        protocol.readMapEnd()
        assert list(value) == sorted(value), "a map is not in the order of its keys"
    else:
        assert kind == TType.STRUCT, f"type {kind}"
        value = {}
        protocol.readStructBegin()
        while (field := protocol.readFieldBegin())[1] != TType.STOP:
            value[field[2]] = read_value(protocol, field[1])
            protocol.readFieldEnd()
        protocol.readStructEnd()
    return value


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
        protocol = TCompactProtocol(TMemoryBuffer(body))
        _, _, number = protocol.readMessageBegin()
        message = read_value(protocol, TType.STRUCT)
        assert not protocol.trans.read(1), "bytes are left over"
        return body[1] >> 5, number, message

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
