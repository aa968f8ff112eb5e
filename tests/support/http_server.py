"""A server with faults, for tests of requests and downloads: HTTP, and HTTPS with a right and with wrong certificates.

Nothing here waits for a time: what is held goes on when another request asks for it.
"""
import gzip
import json
import pathlib
import socket
import ssl
import subprocess
import threading
import urllib.parse
import zlib

CONTENT = bytes(range(256)) * 4000
CERTIFICATES = {"right": "DNS:localhost,IP:127.0.0.1", "wrong_name": "DNS:other.example", "expired": "DNS:localhost,IP:127.0.0.1"}


def make_certificates(directory):
    """An authority, and certificates of it; one that nobody has signed."""
    def openssl(*arguments):
        subprocess.run(["openssl", *arguments], cwd=directory, check=True, capture_output=True)
    openssl("req", "-x509", "-newkey", "rsa:2048", "-nodes", "-keyout", "ca.key", "-out", "ca.pem", "-subj", "/CN=Test CA", "-days", "2")
    openssl("req", "-x509", "-newkey", "rsa:2048", "-nodes", "-keyout", "unknown.key", "-out", "unknown.pem", "-subj", "/CN=localhost",
            "-addext", "subjectAltName=DNS:localhost,IP:127.0.0.1", "-days", "2")
    for name, names in CERTIFICATES.items():
        pathlib.Path(directory, f"{name}.ext").write_text(f"subjectAltName={names}\n", encoding="utf-8")
        openssl("req", "-newkey", "rsa:2048", "-nodes", "-keyout", f"{name}.key", "-out", f"{name}.csr", "-subj", "/CN=test")
        openssl("x509", "-req", "-in", f"{name}.csr", "-CA", "ca.pem", "-CAkey", "ca.key", "-CAcreateserial", "-out", f"{name}.pem",
                "-extfile", f"{name}.ext", "-days", "-1" if name == "expired" else "2")


class Server:
    """Listens from the beginning; `ports` has the port of each kind."""

    def __init__(self, directory):
        make_certificates(directory)
        self.ports = {}
        self.seen = []  # requests, in their order
        self.released = set()
        self.changed = threading.Condition()
        for name in ("plain", *CERTIFICATES, "unknown"):
            listeners = [socket.create_server(("127.0.0.1", 0))]
            self.ports[name] = listeners[0].getsockname()[1]
            listeners.append(socket.create_server(("127.0.0.2", self.ports[name])))
            context = None
            if name != "plain":
                context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
                context.load_cert_chain(f"{directory}/{name}.pem", f"{directory}/{name}.key")
            for listener in listeners:
                threading.Thread(target=self.accept, args=(listener, context), daemon=True).start()

    def accept(self, listener, context):
        while True:
            connection = listener.accept()[0]
            threading.Thread(target=self.serve, args=(connection, context), daemon=True).start()

    def serve(self, connection, context):
        try:
            with connection, (context.wrap_socket(connection, server_side=True) if context else connection) as stream:
                reader = stream.makefile("rb")
                while self.answer(stream, reader):
                    pass
        except OSError:
            pass

    def answer(self, stream, reader):
        """Answers one request. Returns whether another one may follow."""
        first = reader.readline().decode("latin-1").split()
        if len(first) != 3:
            return False
        headers = {}
        while (line := reader.readline().decode("latin-1").strip()):
            name, _, value = line.partition(":")
            headers[name.lower()] = value.strip()
        body = reader.read(int(headers.get("content-length", 0)))
        address = urllib.parse.urlsplit(first[1])
        query = dict(urllib.parse.parse_qsl(address.query, keep_blank_values=True))
        self.seen.append({"method": first[0], "path": first[1], "headers": headers, "body": body.decode("latin-1")})
        member = getattr(self, address.path.strip("/").split("/")[0], None)
        if not member:
            self.send(stream, 404, b"nothing here")
            return True
        return member(stream, query) is not False

    @staticmethod
    def send(stream, status, body=b"", headers=(), length=None):
        lines = [f"HTTP/1.1 {status} Said", f"Content-Length: {len(body) if length is None else length}", *headers]
        stream.sendall("\r\n".join([*lines, "", ""]).encode("latin-1") + body)

    def wait(self, stream, key):
        with self.changed:
            self.changed.wait_for(lambda: key in self.released)

    # The paths.
    def echo(self, stream, query):
        body = json.dumps(self.seen[-1]).encode()
        self.send(stream, query.get("status", 200), b"" if self.seen[-1]["method"] == "HEAD" else body, ["X-Two: a", "X-Two: b", "Set-Cookie: a=b"],
                  len(body))

    def raw(self, stream, _):
        self.send(stream, 200, self.seen[-1]["body"].encode("latin-1"))

    def log(self, stream, query):
        self.send(stream, 200, json.dumps([one for one in self.seen if query["about"] in one["path"] + one["headers"]["host"]]).encode())

    def release(self, stream, query):
        with self.changed:
            self.released.add(query["key"])
            self.changed.notify_all()
        self.send(stream, 200)

    def to(self, stream, query):
        self.send(stream, query["status"], b"moved", [f"Location: {query['url']}"])

    def redirects(self, stream, query):
        left = int(query["left"]) - 1
        self.send(stream, 302, b"", [f"Location: /redirects?left={left}" if left else "Location: echo"])

    def loop(self, stream, _):
        self.send(stream, 302, b"", ["Location: /loop"])

    def text(self, stream, query):
        self.send(stream, 200, query["text"].encode("latin-1"))

    def login(self, stream, query):
        self.send(stream, 401, b"who?", [f"WWW-Authenticate: {query['scheme']}"])

    def cut(self, stream, _):
        self.send(stream, 200, b"x" * 10, length=100)
        return False

    def long(self, stream, _):
        self.send(stream, 200, b"hello and more", length=5)
        return False

    def closing(self, stream, _):
        stream.sendall(b"HTTP/1.1 200 OK\r\n\r\nuntil the end")
        return False

    def chunked(self, stream, query):
        stream.sendall(b"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n5\r\nhello\r\n6;a=b\r\n world\r\n")
        if "cut" in query:
            return False
        stream.sendall(b"0\r\nX-Last: 1\r\n\r\n")
        return True

    def garbage(self, stream, _):
        stream.sendall(b"\0\1\2 no response\r\n\r\n")
        return False

    def packed(self, stream, query):
        content = b"hello " * 100 if "bomb" not in query else b"\0" * (80 << 20)
        packed = {"gzip": lambda: gzip.compress(content), "twice": lambda: gzip.compress(content) * 2, "cut": lambda: gzip.compress(content)[:-9],
                  "wrong": lambda: b"no gzip at all", "deflate": lambda: zlib.compress(content),
                  "raw": lambda: zlib.compress(content)[2:-4]}[query["how"]]()
        self.send(stream, 200, packed, ["Content-Encoding: " + ("deflate" if query["how"] in ("deflate", "raw") else "gzip")])

    def hang(self, stream, query):
        stream.sendall(query.get("first", "").encode("latin-1"))
        self.wait(stream, "the end of the test")

    def headers(self, stream, _):
        stream.sendall(b"HTTP/1.1 200 OK\r\n")
        for number in range(300):
            stream.sendall(f"X-{number}: {'x' * 1000}\r\n".encode())
        stream.sendall(b"\r\n")
        return False

    def drop(self, _, __):
        return False

    def early(self, stream, _):
        stream.sendall(b"HTTP/1.1 103 Early\r\n\r\n")
        self.wait(stream, "early")
        stream.sendall(b"HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\nok")

    def lengths(self, stream, _):
        self.send(stream, 200, b"hello", ["Content-Length: 7"])

    def held(self, stream, query):
        stream.sendall(b"HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\nfirst")
        self.wait(stream, query["key"])
        stream.sendall(b" half")

    def file(self, stream, query):
        """A file that can be had from any byte on. `cut`: so many bytes come of it; `tag`, `date`: its validators; `then`: the
        first time 2000 bytes come, and how it is the second time."""
        headers = self.seen[-1]["headers"]
        content = CONTENT
        again = "then" in query and self.times(self.seen[-1]["path"]) > 1
        then = query.get("then") if again else None
        if then == "changes":
            query["tag"] = '"b"'
        if then == "shrinks":
            content = content[:1000]
        lines = ["Date: Sun, 06 Nov 2022 10:00:00 GMT"]
        lines += [f"ETag: {query['tag']}"] if "tag" in query else []
        lines += [f"Last-Modified: {query['date']}"] if "date" in query else []
        start = int(headers.get("range", "bytes=0-")[6:-1])
        if then == "whole" or headers.get("if-range") not in (query.get("tag"), query.get("date")):
            start = 0
        if start >= len(content):
            return self.send(stream, 416)
        cut = 2000 if "then" in query and not again else int(query.get("cut", len(content)))
        end = min(len(content), start + cut)
        if start:
            lines.append(f"Content-Range: bytes {start + (then == 'shifts')}-{len(content) - 1}/{len(content)}")
        self.send(stream, 206 if start else 200, content[start:end], lines, len(content) - start)
        if query.get("then") == "held" and not again:
            self.wait(stream, "the end of the test")
        return end == len(content)

    def times(self, path):
        return sum(one["path"] == path for one in self.seen)
