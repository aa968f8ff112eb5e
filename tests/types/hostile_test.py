"""Makes declarations and pages from a description full of text that means something to TypeScript or to Markdown, and
has the compiler compare the literal types with the text.

usage: hostile_test.py NODE SOURCE_DIR
"""
import json
import pathlib
import re
import sys
import tempfile

from compiler import compile_errors

HOSTILE = ["plain", "*/ const x: = 1; /*", "\"double\" 'single' `tick` ``two``", "back\\slash \\", "${Infinity} $ {} {@link",
           "a|b <b>bold</b> &amp; [l](u) *s* _u_ # > ~", "\n@param name injected\n *\r@throws", "\u2028\u2029\0\x1b end",
           "\u00fc\U0001f600 \u202e", "%1 `tick` ${Infinity} \"\\ and %2"]
STRING = {"kind": "string"}


def description():
    """One object, in which every text is each of the hostile ones in turn."""
    def field(text):
        return {"name": text, "type": {"kind": "string", "values": [text]}, "optional": True, "default": text, "doc": text}

    def member(index, text):
        options = {"kind": "object", "name": f"Options{index}", "fields": [field(text)]}
        return {"name": f"member{index}", "kind": "method", "category": text, "mask": 1, "core": {"result": 0, "parameters": []},
                "built": True, "doc": text, "event": None,
                "parameters": [{"name": name, "type": options, "optional": index % 2 == 0, "rest": False, "doc": text}
                               for name in ("function", "options")],
                "answer": {"form": "promise", "type": {"kind": "array", "items": options}},
                "failures": [{"code": 3, "text": text, "rejects": True}]}
    listen = {**member(0, "plain"), "name": "addEventListener",
              "parameters": [{"name": name, "type": STRING, "optional": False, "rest": False, "doc": ""} for name in "ab"]}
    return {"objects": [{"name": "Hostile", "instance": "shared", "doc": HOSTILE[1],
                         "members": [listen, *(member(index, text) for index, text in enumerate(HOSTILE))],
                         "events": [{"name": text, "doc": text, "payload": {"kind": "object", "name": "", "fields": [field(text)]}}
                                    for text in HOSTILE]}]}


def page_for_compiler():
    """Assignments that compile only when the types have the very texts."""
    lines = ["const { Hostile } = NovaExtension;"]
    for index, text in enumerate(HOSTILE):
        literal = json.dumps(text)
        if "%1" not in text:
            lines.append(f"const text{index}: NovaExtension.FailureOf<'Hostile.member{index}'>['msg'] = {literal};")
            lines.append(f"const same{index}: {literal} = text{index};")
        lines.append(f"const options{index}: NovaExtension.Hostile.Options{index} = {{ {literal}: {literal} }};")
        lines.append(f"Hostile.addEventListener({literal}, (payload) => {{ const read: {literal} | undefined = payload[{literal}]; }});")
    lines.append("const filled: NovaExtension.FailureOf<'Hostile.member9'>['msg'] = 'x `tick` ${Infinity} \"\\\\ and y';")
    lines.append("// @ts-expect-error\nconst wrong: NovaExtension.FailureOf<'Hostile.member9'>['msg'] = 'x `tick` ${Infinity} \"\\\\ or y';")
    return "\n".join([*lines, "export {};"])


def faults_of(page):
    """Lines of a table with more or fewer cells than its head, and markup that is none of ours."""
    columns = 0
    for line in page.splitlines():
        # A table is cut at its bars before anything else is looked at.
        bars = line.replace("\\|", "").count("|")
        columns = 0 if not line.startswith("|") else columns or bars
        if line.startswith("|") and bars != columns:
            yield f"{bars} bars, not {columns}: {line}"
        bare = re.sub(r"(`+)(?!`).*?(?<!`)\1(?!`)|\\.", "x", line)
        if re.search(r"<|&(?!amp;)|\]\((?!README\.md|#[\w-]*\))", bare):
            yield f"markup: {line}"


def main():
    node, source = sys.argv[1], pathlib.Path(sys.argv[2])
    sys.dont_write_bytecode = True
    sys.path.insert(0, str(source / "scripts"))
    from apireference import api, declarations, pages  # pylint: disable=import-outside-toplevel
    with tempfile.TemporaryDirectory() as place:
        path = pathlib.Path(place, "api.json")
        path.write_text(json.dumps(description()), encoding="utf-8")
        objects = api.load(path)
        pathlib.Path(place, "hostile.d.ts").write_text(declarations.make(objects), encoding="utf-8")
        pathlib.Path(place, "page.ts").write_text(page_for_compiler(), encoding="utf-8")
        lines = compile_errors(node, source, "--strict", "--noEmit", "--target", "es2022", "hostile.d.ts", "page.ts", cwd=place)
        lines += faults_of(pages.make(objects, {one["name"]: "" for one in objects})["Hostile.md"])
    if lines:
        sys.exit("\n".join(lines))


main()
