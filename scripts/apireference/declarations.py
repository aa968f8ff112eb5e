"""nova-extension.d.ts: the members as TypeScript sees them."""
import json
import re
import textwrap

from . import api

WIDTH = 120
# Names of the namespace that are no object's.
HELPERS = ("Answer", "Bytes", "Failure", "Failures", "FailureOf", "Int64")
# Global types that the declarations use: one of the same name within would take its place.
GLOBALS = ("ArrayBuffer", "ArrayBufferView", "Error", "Promise", "Record", "Uint8Array", "NovaExtension")
# The object that a page can pass for its bytes.
BYTES_HOLDER = "ByteBufferManager.ByteBuffer"
# Words that name no parameter.
RESERVED = frozenset("""arguments await break case catch class const continue debugger default delete do else enum eval
export extends false finally for function if implements import in instanceof interface let new null package private
protected public return static super switch this throw true try typeof var void while with yield""".split())

HEAD = """\
// Made by scripts/reference from api.json. Do not edit.

/** The native objects that a page finds. */
declare const NovaExtension: {
%s
};

declare namespace NovaExtension {
    /** What a call that succeeded returns. */
    interface Answer<Data> {
        readonly success: true;
        readonly data: Data;
    }

    /**
     * An integer of 64 bits: a time in milliseconds, a size in bytes. Beyond 2^53, where a number would lose digits,
     * script gets a BigInt; no time and no size is as large, so that the type does not make pages look for it.
     */
    type Int64 = number;

    /** What a member takes for bytes. It sees them as they are when it is called, and never changes them. */
    type Bytes = ArrayBuffer | ArrayBufferView%s;

    /**
     * What a call that failed throws, or its promise rejects with.
     *
     * Code 1: an argument is missing or wrong. Code 3: the operation failed, or the suite does not have the service.
     */
    interface Failure<Code extends number = number, Text extends string = string> extends Error {
        readonly success: false;
        readonly code: Code;
        readonly msg: Text;
        readonly message: Text;
    }

    /** The failures of each member. */
    interface Failures {
%s
    }

    /**
     * The failures of one member, so that a `catch` can tell them apart by `code` and `msg`.
     *
     * @example
     * const failure = error as NovaExtension.FailureOf<"FileSystem.copy">;
     * if (failure.code === 1)
     *     console.log(failure.msg);
     */
    type FailureOf<Member extends keyof Failures> = Failures[Member];
"""


def make(objects):
    """The text of the file."""
    roots = [comment(one["doc"], [], 4) + [f"    readonly {one['name']}: {api.ROOT}.{one['name']};"]
             for one in objects if one["instance"] != "handed out"]
    failures = [f"        {quoted(one['name'] + '.' + member['name'])}: {failure_union(member)};"
                for one in objects for member in one["members"]]
    taken = [one["name"] for one in objects if one["name"] in HELPERS + GLOBALS]
    if taken:
        raise api.ApiError(f"{taken[0]}: the declarations use this name themselves")
    holders = [f" | {api.ROOT}.{one['name']}" for one in objects if one["name"] == BYTES_HOLDER]
    lines = (HEAD % ("\n".join(line for root in roots for line in root), "".join(holders), "\n".join(failures))).splitlines()
    lines.append("}")
    for one in objects:
        lines += ["", *_Object(one, objects).lines()]
    return "\n".join(lines) + "\n"


def quoted(text):
    """A literal. What JSON leaves as it is, but ends a line or has no UTF-8, is escaped."""
    return re.sub("[\x7f-\x9f\u2028\u2029\ud800-\udfff]", lambda found: f"\\u{ord(found[0]):04x}",
                  json.dumps(text, ensure_ascii=False))


def text_type(text):
    """The literal type of a failure's text, in which %1 stands for any text."""
    parts = re.split(r"%\d", text)
    if len(parts) == 1:
        return quoted(text)
    escaped = (quoted(part)[1:-1].replace('\\"', '"').replace("`", "\\`").replace("${", "\\${") for part in parts)
    return "`" + "${string}".join(escaped) + "`"


def failure_union(member):
    kinds = dict.fromkeys(f"Failure<{failure['code']}, {text_type(failure['text'])}>" for failure in member["failures"])
    return " | ".join(kinds) or "never"


def property_name(name):
    return name if api.is_identifier(name) else quoted(name)


def comment(doc, tags, indent):
    """The lines of a JSDoc comment; none when there is nothing to say."""
    margin = " " * indent
    paragraphs = [doc] if doc.strip() else []
    body = []
    for index, text in enumerate(paragraphs + tags):
        tag, _, rest = text.partition(" ") if index >= len(paragraphs) else ("", "", text)
        # Neither the end of the comment nor a tag of its own may come from the text.
        rest = re.sub(r"(^| )@", r"\1\\@", api.words(rest).replace("*/", "*\\/"))
        if index == len(paragraphs) and paragraphs:
            body.append("")
        wrapped = textwrap.wrap(f"{tag} {rest}".strip(), WIDTH - indent - 3, break_long_words=False,
                                break_on_hyphens=False)
        body += [wrapped[0], *("  " + line if tag else line for line in wrapped[1:])] if wrapped else []
    if not body:
        return []
    if len(body) == 1 and len(body[0]) < WIDTH - indent - 7:
        return [f"{margin}/** {body[0]} */"]
    return [f"{margin}/**", *(f"{margin} * {line}".rstrip() for line in body), f"{margin} */"]


class _Object:
    """One object: its interface, and beside it a namespace with the shapes of its options and answers."""

    def __init__(self, one, objects):
        self._one = one
        self._path = one["name"].split(".")
        self._shapes = {}
        inner = {other["name"].split(".")[-1] for other in objects
                 if other["name"].startswith(one["name"] + ".")}
        self._taken = inner | set(GLOBALS) | set(HELPERS)

    def lines(self):
        one = self._one
        body = [line for member in one["members"] for line in self._member(member)]
        outer = ".".join([api.ROOT, *self._path[:-1]])
        remark = f"@remarks {api.INSTANCES[one['instance']]}"
        lines = [f"declare namespace {outer} {{", *comment(one["doc"], [remark], 4),
                 f"    interface {self._path[-1]} {{", *body, "    }", "}"]
        if self._shapes:
            lines += ["", f"declare namespace {api.ROOT}.{one['name']} {{"]
            for name, (kind, directions) in sorted(self._shapes.items()):
                lines += [f"    interface {name} {{", *self._fields(kind, directions == {True}, name), "    }"]
            lines.append("}")
        return lines

    def _member(self, member):
        path = f"{self._one['name']}.{member['name']}"
        tags = [f"@param {parameter['name']} {parameter['doc']}" for parameter in member["parameters"] if parameter["doc"]]
        if not member["built"]:
            tags.append('@deprecated not built yet: throws code 3, "not supported."')
        else:
            tags += [f"@throws {'rejects with ' if failure['rejects'] else ''}{failure['code']} {quoted(failure['text'])}"
                     for failure in member["failures"]]
        answer = self._answer(member, path)
        if member["kind"] == "property":
            return [*comment(member["doc"], tags, 8), f"        readonly {member['name']}: {answer};"]
        if self._one["events"] and member["name"] in ("addEventListener", "removeEventListener"):
            return self._listener_overloads(member, tags, answer, path)
        event = api.event_of(self._one, member)
        return [*comment(member["doc"], tags, 8),
                f"        {member['name']}({self._parameters(member, path, event)}): {answer};"]

    def _listener_overloads(self, member, tags, answer, path):
        optional = "?" if member["parameters"][-1]["optional"] else ""
        lines = []
        for event in self._one["events"]:
            lines += comment(f"{member['doc']} {event['doc']}", tags, 8)
            lines.append(f"        {member['name']}(eventName: {quoted(event['name'])}, "
                         f"callback{optional}: {self._listener(event, path)}): {answer};")
        return [*lines, *comment(member["doc"], tags, 8),
                f"        {member['name']}(eventName: string, callback{optional}: (...payload: any[]) => void): {answer};"]

    def _listener(self, event, path):
        if event["payload"]["kind"] == "void":
            return "() => void"
        return f"(payload: {self._type(event['payload'], False, path)}) => void"

    def _parameters(self, member, path, event):
        given = member["parameters"]
        last_required = max((i for i, parameter in enumerate(given)
                             if not parameter["optional"] and not parameter["rest"]), default=-1)
        texts = []
        for index, parameter in enumerate(given):
            name = parameter["name"]
            if not api.is_identifier(name) or name in RESERVED:
                name = f"argument{index + 1}"
            kind = self._type(parameter["type"], True, path)
            if api.is_listener(member, parameter):
                kind = self._listener(event, path) if event else "(...payload: any[]) => void"
            if parameter["rest"]:
                texts.append(f"...{name}: {array_of(kind)}")
            elif parameter["optional"] and index > last_required:
                texts.append(f"{name}?: {kind}")
            else:
                texts.append(f"{name}: {kind} | undefined" if parameter["optional"] else f"{name}: {kind}")
        return ", ".join(texts)

    def _answer(self, member, path):
        if not member["built"]:
            return "never"
        form, kind = member["answer"]["form"], member["answer"]["type"]
        if form == "plain" and kind["kind"] == "void":
            return "void"
        text = self._type(kind, False, path)
        return {"envelope": f"Answer<{text}>", "promise": f"Promise<{text}>"}.get(form, text)

    def _type(self, kind, given, path):
        """The type; `given` says that script passes it, rather than getting it."""
        match kind["kind"]:
            case "string" | "number" | "integer":
                values = " | ".join(map(quoted, kind.get("values", ())))
                return values or ("string" if kind["kind"] == "string" else "number")
            case "int64":
                return "number | bigint" if given else "Int64"
            case "boolean":
                return "boolean"
            case "bytes":
                return "Bytes" if given else "Uint8Array"
            case "any":
                return "unknown" if given else "any"
            case "void":
                return "undefined"
            case "array":
                return ("readonly " if given else "") + array_of(self._type(kind["items"], given, path))
            case "map":
                inner = self._type(kind["values"], given, path)
                return f"Readonly<Record<string, {inner}>>" if given else f"Record<string, {inner}>"
            case "union":
                return " | ".join(self._type(one, given, path) for one in kind["types"])
            case "handle":
                return f"{api.ROOT}.{kind['name']}"
            case "function":
                # What a script function is called with comes from the object.
                texts = [f"{p['name'] if p['name'] not in RESERVED and api.is_identifier(p['name']) else f'argument{i + 1}'}"
                         f": {self._type(p['type'], not given, path)}" for i, p in enumerate(kind["parameters"])]
                return f"({', '.join(texts) or '...values: any[]'}) => void"
        return self._shape(kind, given, path)

    def _fields(self, kind, given, path):
        lines = []
        for field in kind["fields"]:
            tags = [f"@default {quoted(field['default'])}"] if "default" in field else []
            optional = ("?", " | undefined" if given else "") if field["optional"] else ("", "")
            lines += [*comment(field["doc"], tags, 8), f"        {property_name(field['name'])}{optional[0]}: "
                      f"{self._type(field['type'], given, path)}{optional[1]};"]
        return lines

    def _shape(self, kind, given, path):
        name = kind["name"]
        if not name:
            inner = " ".join(line.strip() for line in self._fields(kind, given, path)
                             if not line.lstrip().startswith(("/*", "*")))
            return f"{{ {inner} }}" if inner else "object"
        if not api.is_identifier(name) or name in self._taken:
            raise api.ApiError(f"{path}: {name!r} names no shape of its own")
        known, directions = self._shapes.setdefault(name, (kind, set()))
        if known != kind:
            raise api.ApiError(f"{path}: there is another shape {name!r}")
        if given not in directions:
            directions.add(given)
            self._fields(kind, given, path)  # for the shapes within
        return f"{api.ROOT}.{self._one['name']}.{name}"


def array_of(kind):
    return f"({kind})[]" if re.search(r"[ (]", kind) else f"{kind}[]"
