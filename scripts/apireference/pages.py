"""docs/reference: a page an object, for people."""
import json
import re

from . import api


def make(objects, examples):
    """{file name: text} of all pages. `examples` are scripts by the name of the object, which all have one."""
    without = {one["name"] for one in objects} ^ examples.keys()
    if without:
        raise api.ApiError(f"{min(without)}: an object and its example in docs/examples belong together")
    pages = {"README.md": _index(objects)}
    for one in objects:
        pages[f"{one['name']}.md"] = _page(one, examples[one["name"]])
    return pages


def anchor(heading):
    """What a page calls one of its headings."""
    return re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-")


def _link(heading):
    return f"[{text(heading)}](#{anchor(heading)})"


def text(given):
    """Text in a page: `code` stays code, and nothing else in it means anything to Markdown."""
    parts = re.split(r"(?<!`)`([^`]+)`(?!`)", api.words(given))
    return "".join(code(part) if index % 2 else re.sub(r"([\\`*_{}\[\]<>|~#])", r"\\\1", part).replace("&", "&amp;")
                   for index, part in enumerate(parts))


def code(given):
    """Text as it is, also in a table."""
    given = api.words(given) if given.strip() else given
    fence = "`" * (max((len(run) for run in re.findall("`+", given)), default=0) + 1)
    space = " " if given.startswith(("`", " ")) or given.endswith(("`", " ")) else ""
    return f"{fence}{space}{given}{space}{fence}".replace("|", "\\|")


def type_text(kind):
    """A type in one line, as code."""
    match kind["kind"]:
        case "string" | "number" | "integer" if kind.get("values"):
            return " | ".join(json.dumps(value, ensure_ascii=False) for value in kind["values"])
        case "array":
            return f"{_within(kind['items'])}[]"
        case "map":
            return f"map of {_within(kind['values'])}"
        case "union":
            return " | ".join(map(type_text, kind["types"]))
        case "object":
            return kind["name"] or "object"
        case "function":
            return f"function({', '.join(p['name'] + ': ' + type_text(p['type']) for p in kind['parameters'])})"
        case "handle":
            return f"{api.ROOT}.{kind['name']}"
        case "void":
            return "undefined"
    return kind["kind"]


def _within(kind):
    """A type within another one."""
    inner = type_text(kind)
    return f"({inner})" if " " in inner else inner


def shapes_of(kind, found):
    """Adds the named shapes in a type, outer ones first."""
    if kind["kind"] == "object" and kind not in found:
        found.append(kind)
    for inner in [kind.get("items"), kind["values"] if kind["kind"] == "map" else None,
                  *kind.get("types", ()), *(field["type"] for field in kind.get("fields", ())),
                  *(parameter["type"] for parameter in kind.get("parameters", ()))]:
        if inner:
            shapes_of(inner, found)


def signature(one, member):
    if member["kind"] == "property":
        return f"{one['name']}.{member['name']}"
    parameters = []
    for parameter in member["parameters"]:
        mark = "..." if parameter["rest"] else ""
        optional = "?" if parameter["optional"] and not parameter["rest"] else ""
        parameters.append(f"{mark}{parameter['name']}{optional}: {type_text(parameter['type'])}")
    return f"{one['name']}.{member['name']}({', '.join(parameters)})"


def answer_text(member):
    kind = member["answer"]["type"]
    if member["answer"]["form"] == "envelope":
        return code("{ success: true, data: undefined }") if kind["kind"] == "void" else \
            f"{code('{ success: true, data }')}, {code('data')}: {code(type_text(kind))}"
    form = {"promise": "a promise of ", "object": "the object ", "plain": ""}[member["answer"]["form"]]
    return form + code(type_text(kind))


def _fields(kind):
    lines = [f"{code(kind['name'] or 'object')}:", "", "| Property | Type | Default | |", "|---|---|---|---|"]
    for field in kind["fields"]:
        default = code(json.dumps(field["default"], ensure_ascii=False)) if "default" in field \
            else "optional" if field["optional"] else "required"
        lines.append(f"| {code(field['name'])} | {code(type_text(field['type']))} | {default} | {text(field['doc'])} |")
    if kind.get("strict"):
        lines += ["", "Nothing is converted: a property of another type is refused."]
    return lines + [""]


def _shapes(kinds):
    found = []
    for kind in kinds:
        shapes_of(kind, found)
    return [line for kind in found for line in _fields(kind)]


def _member(one, member):
    lines = [f"## {text(member['name'])}", ""]
    if member["built"]:
        lines += [code(signature(one, member)), ""]
    else:
        lines += [f"{code(signature(one, member))}. **Not built yet**: throws 3 \"not supported.\"", ""]
    if member["doc"]:
        lines += [text(member["doc"]), ""]
    lines += [f"Category: {text(member['category'])} ({member['mask']:#x}).", ""]
    if not member["built"]:
        return lines
    documented = [parameter for parameter in member["parameters"] if parameter["doc"]]
    if documented:
        lines += [*(f"- {code(parameter['name'])}: {text(parameter['doc'])}" for parameter in documented), ""]
    lines += _shapes(parameter["type"] for parameter in member["parameters"])
    if member["event"]:
        event = api.event_of(one, member)
        lines += [f"The function is a listener of {code(member['event'])}" + (": see below." if event else "."), ""]
    lines += [f"Answer: {answer_text(member)}.", "", *_shapes([member["answer"]["type"]])]
    if member["failures"]:
        lines += ["| Failure | Code | |", "|---|---|---|"]
        lines += [f"| {code(failure['text'])} | {failure['code']} | {'rejected' if failure['rejects'] else 'thrown'} |"
                  for failure in member["failures"]]
        lines.append("")
    return lines


def _kind(member):
    """The line of the contents that a member is in."""
    if member["name"] in api.LISTENING or member["event"] or re.match(r"(add|remove)\w*Listener$", member["name"]):
        return "For listeners"
    if member["answer"]["type"]["kind"] == "handle":
        return "Objects"
    return "Promises" if member["answer"]["form"] == "promise" else "Members"


def _contents(one):
    """The members by their kinds, and the events."""
    lines = ["| | |", "|---|---|"]
    for kind in ("Objects", "Members", "Promises", "For listeners"):
        links = [_link(member["name"]) for member in one["members"] if _kind(member) == kind]
        lines += [f"| {kind} | {', '.join(links)} |"] if links else []
    if one["events"]:
        lines.append(f"| [Events](#events) | {', '.join(_link(event['name']) for event in one['events'])} |")
    return [*lines, ""]


def _page(one, example):
    lines = [f"# {api.ROOT}.{one['name']}", "", text(one["doc"]), "",
             f"{api.INSTANCES[one['instance']].capitalize()}. [All objects](README.md)", "",
             *_contents(one), "```js", *example.splitlines(), "```", ""]
    for member in one["members"]:
        lines += _member(one, member)
    if one["events"]:
        lines += ["## Events", "", f"Heard with {code('addEventListener')}.", ""]
    for event in one["events"]:
        lines += [f"### {text(event['name'])}", "", text(event["doc"]), ""]
        if event["payload"]["kind"] == "void":
            lines += ["No payload.", ""]
        else:
            lines += [f"Payload: {code(type_text(event['payload']))}.", "", *_shapes([event["payload"]])]
    return "\n".join(lines).rstrip("\n") + "\n"


def _names(objects, *instances):
    names = sorted(one["name"] for one in objects if one["instance"] in instances)
    return ", ".join(f"[{name}]({name}.md)" for name in names)


def _built(objects):
    """What of the members is not built."""
    unbuilt = [f"{one['name']}.{member['name']}" for one in objects for member in one["members"] if not member["built"]]
    count = sum(len(one["members"]) for one in objects)
    if not unbuilt:
        return f"All {count} members of {len(objects)} objects are built."
    return f"{count - len(unbuilt)} of {count} members are built; not {', '.join(map(code, unbuilt))}."


def _index(objects):
    lines = ["# Reference", "",
             "Every member that a page finds, made by `scripts/reference` from [api.json](../../types/api.json). What answers,",
             "failures and values have in common is described in [pages.md](../pages.md).", "",
             f"- [Objects](#objects): {_names(objects, 'shared', 'page')}",
             f"- handed out by others: {_names(objects, 'handed out')}", "- [Categories](#categories)", "- [Types](#types)",
             "", _built(objects), "", "## Objects", "", "| Object | | Members | |", "|---|---|---|---|"]
    for one in objects:
        begin = re.split(r"(?<=\.)\s", one["doc"], maxsplit=1)[0]
        lines.append(f"| [{one['name']}]({one['name']}.md) | {text(begin)} | {len(one['members'])} | "
                     f"{api.INSTANCES[one['instance']]} |")
    lines += ["", "## Categories", "", "A member carries its category to the suite as a mask of bits. `novahost --deny MASK` hides",
              "the members that share a bit with a mask.", "", "| Category | Mask |", "|---|---|"]
    lines += [f"| {text(name)} | {mask:#x} |" for name, mask in api.categories(objects)]
    lines += ["", "## Types", "", "| Type | |", "|---|---|",
              "| `string`, `boolean` | as in script |", "| `number` | any number |",
              "| `integer` | a whole number of 32 bits |",
              "| `int64` | a whole number of 64 bits: a BigInt beyond 2^53 |",
              "| `bytes` | an `ArrayBuffer`, a typed array, a `DataView` or a `ByteBuffer`, of which a copy is passed; as an answer a "
              "`Uint8Array` |",
              "| `any` | any value that may be passed |", "| `undefined` | no value |",
              "| `T[]` | an array |", "| `map of T` | an object with any keys |",
              "| `function(name: T)` | a function, with what it is called with |",
              "| a name | an object with the properties that are listed with the member |",
              "", "`novahost members` lists what the JS core sees of a member, which says less:", "", "| Type | Code | |",
              "|---|---|---|"]
    lines += [f"| `{name}` | {number} | {api.CORE_TYPE_DOCS[name]} |" for number, name in api.CORE_TYPES.items()]
    return "\n".join(lines) + "\n"
