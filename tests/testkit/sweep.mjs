// Prints calls for sweep.js: of every member with arguments that are right, missing, empty and of other types, and what the
// testkit refuses of them. With the name of a service, of every member without arguments while that is missing.
//
// usage: sweep.mjs TESTKIT [SERVICE]
import { pathToFileURL } from "node:url";

const testkit = pathToFileURL(`${process.argv[2]}/`);
const service = process.argv[3];
const { objects } = await import(new URL("api.js", testkit));
const { refusalOf } = await import(new URL("src/refusals.js", testkit));
const callback = () => {};
const others = [undefined, null, "", "x", "12", "\ud800", 12, 1.5, true, {}, { a: 1 }, [], ["x"], [1], callback, new Uint8Array([1])];

/** A value that a type takes. */
const sample = (type) => (type.values && type.kind !== "map" ? type.values[0] : {
    string: () => "x", integer: () => 1, number: () => 1, boolean: () => false, bytes: () => new Uint8Array([1]),
    any: () => "x", array: () => [sample(type.items)], map: () => ({}), union: () => sample(type.types[0]), function: () => callback,
    object: () => Object.fromEntries(type.fields.filter((field) => !field.optional).map((field) => [field.name, sample(field.type)])),
}[type.kind]());

function* variants({ parameters }) {
    yield [];
    const right = parameters.map(({ type }) => sample(type));
    for (const [index, { type }] of parameters.entries()) {
        const put = (made) => right.map((value, at) => (at === index ? made : value));
        for (const other of others) {
            yield put(other);
            for (const { name } of type.kind === "object" ? type.fields : [])
                yield put({ ...right[index], [name]: other });
        }
    }
}

function spell(value) {
    if (value === undefined || typeof value === "function")
        return value ? "callback" : "undefined";
    if (value instanceof Uint8Array)
        return `new Uint8Array([${value}])`;
    if (typeof value !== "object" || value === null)
        return JSON.stringify(value);
    return Array.isArray(value) ? `[${value.map(spell).join(", ")}]`
        : `{ ${Object.entries(value).map(([key, item]) => `${key}: ${spell(item)}`).join(", ")} }`;
}

console.log("const callback = () => {};\nconst calls = [");
for (const object of objects) {
    for (const member of object.members) {
        member.parameters ??= [];
        for (const values of service ? [[]] : member.kind === "property" ? [] : variants(member)) {
            const refusal = refusalOf(object.name, member, values, service ? [service] : []) ?? null;
            console.log(`    [${JSON.stringify(object.name)}, ${JSON.stringify(member.name)}, () => [${
                values.map(spell).join(", ")}], ${JSON.stringify(refusal)}],`);
        }
    }
}
console.log("];");
