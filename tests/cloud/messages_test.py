"""Checks the cloud messages against a writer and a reader of the compact protocol that are independent of Thrift's. The
.thrift files are the only common ground.

usage: messages_test.py RECODE SCHEMA...
"""
import random
import re
import subprocess
import sys

MUTATIONS = 300
KINDS = {"i32": 5, "i64": 6, "string": 8, "list": 9, "map": 11, "struct": 12}  # bool has two: 1 true, 2 false


def schema_of(paths):
    """For each struct its fields' ids and types: "i32", ("map", "string", "string"), or the name of a struct."""
    structs = {}
    for path in paths:
        text = re.sub(r"//.*", "", open(path, encoding="utf-8").read())
        for name, body in re.findall(r"struct (\w+) \{(.*?)\}", text, re.S):
            structs[name] = []
            for number, kind in re.findall(r"(\d+): ([\w<>, ]+?) \w+ *\n", body):
                words = re.findall(r"\w+", kind)
                structs[name].append((int(number), words[0] if len(words) == 1 else tuple(words)))
    return structs


def varint(number):
    out = b""
    while number > 127:
        out += bytes([number & 127 | 128])
        number >>= 7
    return out + bytes([number])


class Writer:
    """Random values, and their encoding, with the fields of a struct and a map's entries in any order."""

    def __init__(self, structs):
        self.structs = structs

    def value(self, kind):
        if kind == "bool":
            return random.random() < 0.5
        if kind in ("i32", "i64"):
            edge = 2 ** (int(kind[1:]) - 1)
            return random.choice((0, -1, edge - 1, -edge, random.randrange(-edge, edge) >> random.randrange(60)))
        if kind == "string":
            return "".join(random.choices("aZ09 \0/é文🙂", k=random.choice((0, 1, 20, 127, 128)))).encode()
        if kind[0] == "list":
            return [self.value(kind[1]) for _ in range(random.choice((0, 1, 14, 15, 40)))]
        if kind[0] == "map":
            return {self.value(kind[1]): self.value(kind[2]) for _ in range(random.choice((0, 1, 30)))}
        return {number: self.value(field) for number, field in self.structs[kind]}

    def code(self, kind):
        return KINDS["struct"] if kind in self.structs else KINDS[kind if isinstance(kind, str) else kind[0]]

    def bytes(self, kind, value):
        if kind in ("i32", "i64"):
            return varint(2 * value if value >= 0 else -2 * value - 1)
        if kind == "string":
            return varint(len(value)) + value
        if kind[0] == "list":
            head = varint(len(value)) if len(value) > 14 else b""
            head = bytes([min(len(value), 15) << 4 | self.code(kind[1])]) + head
            return head + b"".join(self.bytes(kind[1], element) for element in value)
        if kind[0] == "map":
            types = bytes([self.code(kind[1]) << 4 | self.code(kind[2])]) if value else b""
            return varint(len(value)) + types + b"".join(
                self.bytes(kind[1], k) + self.bytes(kind[2], value[k]) for k in random.sample(list(value), len(value)))
        out = b""
        for number, field in random.sample(self.structs[kind], len(self.structs[kind])):
            out += bytes([2 - value[number] if field == "bool" else self.code(field)]) + varint(2 * number)
            out += b"" if field == "bool" else self.bytes(field, value[number])
        return out + b"\0"


class Reader:
    """Reads what Thrift has written, without a schema; a struct becomes a dict by ids."""

    def __init__(self, data):
        self.data = data
        self.at = 0

    def byte(self):
        self.at += 1
        return self.data[self.at - 1]

    def varint(self):
        byte = self.byte()
        return byte & 127 | (self.varint() << 7 if byte & 128 else 0)

    def value(self, code):
        if code in (1, 2):
            return code == 1
        if code in (4, 5, 6):
            number = self.varint()
            return number >> 1 ^ -(number & 1)
        if code == 8:
            size = self.varint()
            self.at += size
            return self.data[self.at - size:self.at]
        if code == 9:
            head = self.byte()
            return [self.value(head & 15) for _ in range(self.varint() if head >> 4 == 15 else head >> 4)]
        if code == 11:
            size = self.varint()
            types = self.byte() if size else 0
            pairs = [(self.value(types >> 4), self.value(types & 15)) for _ in range(size)]
            assert pairs == sorted(pairs), "a map is not in the order of its keys"
            return dict(pairs)
        assert code == 12, f"type {code}"
        fields, number = {}, 0
        while head := self.byte():
            number = number + (head >> 4) if head >> 4 else self.value(4)
            fields[number] = self.value(head & 15)
        assert list(fields) == sorted(fields), "fields are not in the order of their ids"
        return fields

    def message(self):
        fields = self.value(KINDS["struct"])
        assert self.at == len(self.data), "bytes are left over"
        return fields


# Bytes that are to be a LarkIpcResult: what they are, what the answer says if they are none, and the bytes.
NESTED = b"\x9c" + b"\x1c" * 62
HUGE = varint(2 ** 31 - 1)
HOSTILE = [
    ("nothing", "no bytes", b""),
    ("no end", "end within", b"\x48\x01a"),
    ("bytes after the end", "1 bytes after", b"\0\0"),
    ("structs within structs, as deep as may be", None, NESTED + b"\0" * 64),
    ("structs within structs, one deeper", "depth limit", NESTED + b"\x1c" + b"\0" * 65),
    ("lists within lists", "depth limit", b"\x99" + b"\x19" * 100000),
    ("a text longer than the bytes", "limit", b"\x48" + HUGE + b"a"),
    ("a text of negative length", "Negative", b"\x48" + varint(2 ** 32 - 1)),
    ("a list that announces more than the bytes", "limit", b"\x39\xf8" + HUGE + b"\0"),
    ("the same, of elements that need no bytes", "limit", b"\x39\xfc" + varint(10 ** 6) + b"\0"),
    ("a map that announces more than the bytes", "limit", b"\x2b" + HUGE + b"\x88\0"),
    ("an unknown list of structs that are not there", "limit", b"\x99\xfc" + HUGE + b"\0"),
    ("a number without an end", "over 10 bytes", b"\x95" + b"\x80" * 20),
    ("a type that does not exist", "does not exist", b"\x9d\0"),
    ("more bytes than may be", "more bytes than", b"\x48" + varint(2 ** 20) + b"a" * 2 ** 20 + b"\0"),
    ("as many as may be, in one text", None, b"\x48" + varint(2 ** 20 - 5) + b"a" * (2 ** 20 - 5) + b"\0"),
]

# Bytes that are a SyncFolderResult, and what is kept of them.
EMPTY, STATE = b"\x15\0\x1b\0\0", b"\x15\x0e\x1b\0\0"
KEPT = [
    ("no fields", b"\0", EMPTY),
    ("fields in any order", b"\x2b\0\x05\x02\x0e\0", STATE),
    ("an unknown id", b"\x15\x0e\x98\x03new\0", STATE),
    ("an unknown struct", b"\x15\x0e\x9c\x18\x01k\x11\0\0", STATE),
    ("an unknown double", b"\x9712345678\x05\x02\x0e\0", STATE),
    ("a field of another type", b"\x18\x02no\x1b\x01\x88\x01x\x01y\0", b"\x15\0\x1b\x01\x88\x01x\x01y\0"),
    ("a number of another size", b"\x16\x0e\0", EMPTY),
]


def mutated(data):
    data = bytearray(data)
    for _ in range(random.randint(1, 3)):
        at = random.randrange(len(data) or 1)
        data[at:at + random.choice((0, 1, 1, 9))] = random.choice((
            b"", random.randbytes(1), random.choice((b"\xff", b"\x80", b"\0", b"\x1c", b"\xf9")), HUGE, data[:random.randrange(20)]))
    return bytes(data if random.random() < 0.8 else data[:random.randrange(len(data) or 1)])


def main(program, *schemas):
    random.seed(11)
    structs = schema_of(schemas)
    types = subprocess.run([program, "--types"], check=True, capture_output=True, text=True).stdout.split()
    faults = []
    records = {name for name in structs if not structs[name]}
    if set(types) != set(structs) - records:
        faults.append(f"not the types of the schema: {set(types) ^ set(structs) ^ records}")

    writer = Writer(structs)
    cases = []  # what it is, type, bytes, and a check of the answer
    for name in types:
        for _ in range(30):
            value = writer.value(name)
            cases.append((f"random {name}", name, writer.bytes(name, value),
                lambda answer, value=value: Reader(bytes.fromhex(answer)).message() == value))
    for what, fault, data in HOSTILE:
        cases.append((what, "LarkIpcResult", data,
            lambda answer, fault=fault: fault in answer if fault else not answer.startswith("error")))
    cases += [(what, "SyncFolderResult", data, lambda answer, kept=kept: bytes.fromhex(answer) == kept) for what, data, kept in KEPT]
    for name in types:
        for _ in range(MUTATIONS):
            cases.append((f"mutated {name}", name, mutated(writer.bytes(name, writer.value(name))),
                lambda answer: len(answer) > 7 if answer.startswith("error: ") else Reader(bytes.fromhex(answer)).message()))

    lines = "".join(f"{name} {data.hex()}\n" for _, name, data, _ in cases)
    run = subprocess.run([program], input=lines, capture_output=True, text=True)
    answers = run.stdout.split("\n")[:-1]
    if run.returncode or len(answers) != len(cases):
        last = cases[min(len(answers), len(cases) - 1)]
        faults.append(f"status {run.returncode} at {last[0]}: {last[2].hex()[:400]}\n{run.stderr}")
    accepted = 0
    for (what, name, data, holds), answer in zip(cases, answers):
        try:
            good = holds(answer)
        except (AssertionError, IndexError, ValueError) as error:
            good, answer = False, f"{error}: {answer}"
        accepted += what.startswith("mutated") and not answer.startswith("error")
        if not good:
            faults.append(f"{what}: {name} {data.hex()[:400]}\n  {answer[:400]}")
    share = accepted / (MUTATIONS * len(types))
    if not 0.1 < share < 0.9:
        faults.append("the mutations do not search both sides")
    print(f"{len(cases)} messages, {share:.0%} of the mutations accepted")
    print("\n".join(faults[:10]))
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
