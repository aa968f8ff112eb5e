"""Whether pages that are written by hand name members that there are."""
import re

from . import api

_NAME = re.compile(r"[A-Z]\w*(?:\.\w+)+")


def check(pages, objects):
    """`pages` are texts by their names. In their tables the last column names members as `Object.member`."""
    names = {f"{one['name']}.{member['name']}" for one in objects for member in one["members"]}
    for page, text in pages.items():
        checked = 0
        for line in text.splitlines():
            for span in re.findall(r"`([^`]+)`", line.rstrip("| ").rpartition("|")[2]) if line.startswith("|") else ():
                found = _NAME.match(span)
                if found and found[0] not in names:
                    raise api.ApiError(f"{page}: there is no member {found[0]}")
                checked += bool(found)
        if not checked:
            raise api.ApiError(f"{page}: it names no member")
