"""testkit/api.js: what the testkit knows of the members. testkit/members.d.ts: their types by their names."""
import json

from . import api

HEAD = """\
// Made by scripts/reference from types/api.json. Do not edit.

export const objects = [
"""
MEMBERS_HEAD = """\
// Made by scripts/reference from types/api.json. Do not edit.

/// <reference types="@vexlite/nova-extension-types" />

/** Every member by its name. */
export interface Members {
%s
}

/** The payloads of every object's events. */
export interface Events {
%s
}
"""
# What a member says of an empty string or list where one must be given, and its parameter itself says nothing.
EMPTY = ("missing required parameters.", "Path is empty.", "empty skin name param", "empty view id", "%1 is not existed")
# The same of a property whose absence the member itself refuses.
ABSENT = ("%1 is not existed",)


def make(objects):
    """The text of api.js: a line a member."""
    return HEAD + "".join(map(_object, objects)) + "];\n"


def make_types(objects):
    """The text of members.d.ts."""
    members = [f'    "{one["name"]}.{member["name"]}": {api.ROOT}.{one["name"]}["{member["name"]}"];'
               for one in objects for member in one["members"]]
    events = [f'    "{one["name"]}": {_events(one)};' for one in objects if one["events"]]
    return MEMBERS_HEAD % ("\n".join(members), "\n".join(events))


def _events(one):
    names = " | ".join(json.dumps(event["name"]) for event in one["events"])
    return names


def _object(one):
    head = {"name": one["name"], "instance": one["instance"], "events": [_slim(event) for event in one["events"]]}
    members = "".join(f"    {json.dumps(_member(member), ensure_ascii=False)},\n" for member in one["members"])
    return f"  {json.dumps(head)[:-1]}, \"members\": [\n{members}  ]}},\n"


def _member(member):
    kept = {key: _slim(member[key]) for key in ("name", "kind", "parameters", "answer", "failures", "event") if member[key]}
    for parameter in kept.get("parameters", ()):
        kind = parameter["type"]
        for field in kind.get("fields", ()):
            if field.get("expected"):
                absent = _failure(member, ABSENT)
                field.update({"missing": absent} if absent else {})
        if kind["kind"] not in ("string", "array") or kind.get("values") or parameter.get("optional"):
            continue
        empty = _failure(member, EMPTY)
        if empty:
            parameter["empty"] = empty
    return kept


def _failure(member, texts):
    """The first failure with one of these texts, of an empty subject; a path that is missing is a wrong argument then."""
    for failure in member["failures"]:
        if failure["text"] in texts and ("%1" not in failure["text"] or failure["code"] == 1):
            return _slim({**failure, "text": failure["text"].replace("%1", "")})
    return None


def _slim(given):
    """Without documentation, and without what is false."""
    if isinstance(given, dict):
        return {key: _slim(value) for key, value in given.items()
                if key not in ("doc", "default") and value is not False}
    return [_slim(value) for value in given] if isinstance(given, list) else given
