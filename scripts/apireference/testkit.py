"""testkit/api.js: what the testkit knows of the members. testkit/members.d.ts: their types by their names."""
import json
import re

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

/** The events of every object. */
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
    events = [f'    "{one["name"]}": {" | ".join(json.dumps(event["name"]) for event in _all_events(one))};'
              for one in objects if _all_events(one)]
    return MEMBERS_HEAD % ("\n".join(members), "\n".join(events))


def _unnamed(one, member):
    """What the testkit calls an event that only a pair of members knows; None for other members."""
    found = re.fullmatch(r"(?:add|remove)(\w+)Listener", member["name"])
    is_pair = found and {f"add{found[1]}Listener", f"remove{found[1]}Listener"} <= {other["name"] for other in one["members"]}
    return found[1] if is_pair and not member["event"] and member["name"] not in api.LISTENING else None


def _all_events(one):
    """The events with what their listeners are called with."""
    events = [{"name": event["name"], "arguments": [] if event["payload"]["kind"] == "void" else [_slim(event["payload"])]}
              for event in one["events"]]
    return events + [{"name": _unnamed(one, member), "arguments": [_slim(given["type"]) for given in member["parameters"][0]["type"]["parameters"]]}
                     for member in one["members"] if member["name"].startswith("add") and _unnamed(one, member)]


def _object(one):
    head = {"name": one["name"], "instance": one["instance"], "events": _all_events(one)}
    members = "".join(f"    {json.dumps(_member({**member, 'event': member['event'] or _unnamed(one, member)}), ensure_ascii=False)},\n"
                      for member in one["members"])
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
