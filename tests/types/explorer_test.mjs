// What the explorer copies as script runs and means what was called, and every link leads to its own member.
//
// usage: node explorer_test.mjs SOURCE_DIR
import assert from "node:assert/strict";
import path from "node:path";
import { pathToFileURL } from "node:url";

const load = (name) => import(pathToFileURL(path.join(process.argv[2], "examples/explorer", name)).href);
const { decode, encode, literal, scriptOf } = await load("script.js");
const { find, objects, pathOf, typeText } = await load("reference.js");

const values = {
    "numbers of any kind": [0, -1.5, 1e21, 2 ** 53],
    "integers beyond numbers": { large: 9007199254740993n, list: [-1n] },
    "text that means something to script": ["\"'`\\${}", "line\nbreak\u2028", "\ud800", "</script>"],
    "keys that are no names": { "a-b": 1, "": 2, 12: 3, ["__proto__"]: 4 },
    "what breaks into lines": { nested: Array.from({ length: 9 }, (_, index) => ({ index, text: "x".repeat(30) })) },
    bytes: [new Uint8Array(), { few: new Uint8Array([0, 255]), many: new Uint8Array(20_000).fill(200) }],
    nothing: [null, {}, []]
};
for (const [name, value] of Object.entries(values)) {
    assert.deepEqual(new Function(`return ${literal(value)}`)(), value, `as script: ${name}`);
    assert.deepEqual(decode(encode(value)), value, `as JSON: ${name}`);
}
for (const value of [undefined, NaN, -0, Infinity])
    assert.ok(Object.is(new Function(`return ${literal(value)}`)(), value), `as script: ${value}`);

// An object that was handed out in each of the ways, called by the script that is copied.
const AsyncFunction = (async () => {}).constructor;
const member = (name, form, kind = "method") => ({ name, kind, answer: { form, type: { kind: "any" } } });
const handed = { greet: (to) => ({ success: true, data: `hello ${to}` }) };
const NovaExtension = {
    Maker: {
        envelope: () => ({ success: true, data: handed }),
        object: () => handed,
        promise: async () => handed,
        property: handed
    }
};
for (const [form, kind] of [["envelope"], ["object"], ["promise"], ["property", "property"]]) {
    const made = {
        target: { name: "NovaExtension.Maker" },
        member: member(form, kind ? "object" : form, kind),
        given: []
    };
    const script = scriptOf({ name: "thing1", origin: made }, member("greet", "envelope"), ["you"]);
    const said = await new AsyncFunction("NovaExtension", script.replace(/\n(?!.*\n)/, "\nreturn "))(NovaExtension);
    assert.equal(said.data, "hello you", `an object handed out as ${form}`);
}

const links = objects.flatMap((object) =>
    object.members.map((one) => {
        assert.equal(find(pathOf(object, one))?.member, one, pathOf(object, one));
        [...one.parameters, one.answer].forEach(({ type }) => assert.ok(typeText(type)));
        return pathOf(object, one);
    })
);
assert.equal(new Set([...links, ...objects.map((object) => object.name)]).size, links.length + objects.length);
