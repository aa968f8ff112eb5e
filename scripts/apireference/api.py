"""Reads types/api.json, refusing what it should not have with the place where it stands."""
import json
import re

ROOT = "NovaExtension"
# How often a page can have an object.
INSTANCES = {"shared": "one object, shared by all pages", "page": "one object for each page",
             "handed out": "handed out by another object"}
# Type codes that the JS core sees.
CORE_TYPES = {0: "nothing", 8: "string", 11: "boolean", 12: "variant", 13: "object", 27: "array", 0x8004: "any"}
CORE_TYPE_DOCS = {
    "any": "any value; the member itself reads what it needs of it",
    "array": "a list of values",
    "boolean": "true or false",
    "nothing": "no answer",
    "object": "an object or a function",
    "string": "a string",
    "variant": "any value, handed on as it is",
}
_OBJECT = {"name": str, "instance": str, "doc": str, "members": list, "events": list}
_MEMBER = {"name": str, "kind": str, "category": str, "mask": int, "core": dict, "built": bool, "doc": str,
           "parameters": list, "answer": dict, "failures": list, "event": (str, type(None))}
_PARAMETER = {"name": str, "type": dict, "optional": bool, "rest": bool, "doc": str}
_FAILURE = {"code": int, "text": str, "rejects": bool}
_EVENT = {"name": str, "doc": str, "payload": dict}
_FIELD = {"name": str, "type": dict, "optional": bool, "doc": str}
_TYPES = {"string": {}, "number": {}, "integer": {}, "int64": {}, "boolean": {}, "bytes": {}, "any": {}, "void": {},
          "array": {"items": dict}, "map": {"values": dict}, "union": {"types": list}, "object": {"name": str, "fields": list},
          "function": {"parameters": list}, "handle": {"name": str}}
# What a parameter or a property refuses with, where that is not what all others do: for those who call, not for readers.
REFUSALS = ("expected", "missing", "wrong", "refusals")
_IDENTIFIER = re.compile(r"[A-Za-z_$][A-Za-z0-9_$]*")


class ApiError(Exception):
    """Something is wrong in api.json; the message begins with the place."""


# The members that all objects with events have.
LISTENING = ("addEventListener", "removeEventListener", "dispatchEvent", "getAllEventInfo")


def for_readers(given):
    """The same without what only those need who call members."""
    if isinstance(given, dict):
        return {key: for_readers(value) for key, value in given.items() if key not in (*REFUSALS, "plain", "utf8")}
    return [for_readers(value) for value in given] if isinstance(given, list) else given


def is_identifier(name):
    return _IDENTIFIER.fullmatch(name) is not None


def load(path):
    """The list of objects of a file."""
    with open(path, encoding="utf-8") as file:
        return check(json.load(file))


def check(api):
    """The list of objects, which are what the other modules expect."""
    _check(api, {"objects": list}, "api.json")
    names = {one.get("name") for one in api["objects"]}
    for one in api["objects"]:
        _check_object(one, names)
    return api["objects"]


def _check(given, shape, place, optional=()):
    if not isinstance(given, dict):
        raise ApiError(f"{place}: an object is expected")
    for key, kind in shape.items():
        if not isinstance(given.get(key, ...), kind):
            raise ApiError(f'{place}: "{key}" is missing or of another type')
    for key in given.keys() - shape.keys() - set(optional):
        raise ApiError(f'{place}: nothing is made of "{key}"')


def _check_object(one, names):
    place = one.get("name", "?")
    _check(one, _OBJECT, place)
    if one["instance"] not in INSTANCES or not all(map(is_identifier, one["name"].split("."))):
        raise ApiError(f"{place}: the name or the instance is none")
    seen = set()
    for member in one["members"]:
        where = f"{place}.{member.get('name', '?')}"
        _check(member, _MEMBER, where)
        if member["name"] in seen or not is_identifier(member["name"]):
            raise ApiError(f"{where}: the name is no identifier, or not the only one")
        seen.add(member["name"])
        for parameter in member["parameters"]:
            _check(parameter, _PARAMETER, where, REFUSALS)
            _check_type(parameter["type"], f"{where}({parameter['name']})", names)
        _check(member["answer"], {"form": str, "type": dict}, where)
        if member["answer"]["form"] not in ("envelope", "promise", "object", "plain"):
            raise ApiError(f"{where}: the form of the answer is none")
        _check_type(member["answer"]["type"], where, names)
        for failure in member["failures"]:
            _check(failure, _FAILURE, where)
    for event in one["events"]:
        _check(event, _EVENT, place)
        _check_type(event["payload"], f"{place} \"{event['name']}\"", names)


def _check_type(given, place, names):
    kind = given.get("kind")
    if kind not in _TYPES:
        raise ApiError(f"{place}: there is no type {kind!r}")
    optional = {"string": ("values", "utf8"), "number": ("values",), "integer": ("values",), "object": ("strict",),
                "any": ("plain",), "function": ("watches",)}.get(kind, ())
    _check(given, {"kind": str, **_TYPES[kind]}, place, optional)
    if kind == "handle" and given["name"] not in names:
        raise ApiError(f"{place}: there is no object {given['name']}")
    for field in given.get("fields", ()):
        _check(field, _FIELD, f"{place}.{field.get('name')}", ("default", *REFUSALS))
        _check_type(field["type"], f"{place}.{field['name']}", names)
    for parameter in given.get("parameters", ()):
        _check(parameter, {"name": str, "type": dict}, place)
        _check_type(parameter["type"], place, names)
    for inner in {"array": [given.get("items")], "map": [given.get("values")], "union": given.get("types")}.get(kind, []):
        _check_type(inner, place, names)


def categories(objects):
    """(name, mask) of every category that a member has, in the order of the masks."""
    return sorted({(member["category"], member["mask"]) for one in objects for member in one["members"]},
                  key=lambda pair: (pair[1], pair[0]))


def event_of(one, member):
    """The event whose listeners the member adds or removes, if it is declared with its payload."""
    return next((event for event in one["events"] if event["name"] == member["event"]), None)


def is_listener(member, parameter):
    """Whether the function is called with what an event carries."""
    listens = member["event"] or member["name"] in ("addEventListener", "removeEventListener")
    return bool(listens) and parameter["type"]["kind"] == "function"


def words(text):
    """The text on one line: separators of any kind become one space."""
    return " ".join(re.split(r"[\s\x00-\x1f\x7f-\x9f\u2028\u2029]+", text)).strip()
