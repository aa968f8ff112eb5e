"""examples/explorer/api.js: what the explorer knows of the members."""
import json

from . import api

HEAD = """\
// Made by scripts/reference from types/api.json. Do not edit.
// @ts-nocheck: the compiler would compare every literal with its type; scripts/reference has checked them.

/** @type {readonly ApiObject[]} */
export const objects = [
"""


def make(objects):
    """The text of the file: a line a member, so that a change is seen where it is."""
    return HEAD + "".join(map(_object, objects)) + "];\n"


def _object(one):
    head = {key: api.for_readers(one[key]) for key in ("name", "instance", "doc", "events")}
    members = "".join(f"    {json.dumps(_seen_by_page(member))},\n" for member in one["members"])
    return f"  {json.dumps(head)[:-1]}, \"members\": [\n{members}  ]}},\n"


def _seen_by_page(member):
    return api.for_readers({key: value for key, value in member.items() if key not in ("core", "mask")})
