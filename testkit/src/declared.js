// Whether a value is what a member is declared to return, or an event to carry.
import { hint } from "./nearest.js";
import { copy, isBytes, isPlain, instances, show } from "./values.js";

const Filled = Symbol("filled");

/** Properties that matter to a test; the kit adds the others that are declared, empty. */
export function fill(properties = {}) {
    return { [Filled]: properties };
}

const isFilled = (value) => typeof value === "object" && value !== null && Filled in value;

const emptyOf = {
    string: (type) => type.values?.[0] ?? "", integer: (type) => type.values?.[0] ?? 0, number: () => 0, int64: () => 0,
    boolean: () => false, bytes: () => new Uint8Array(), any: () => undefined, void: () => undefined, array: () => [],
    map: () => ({}), union: (type) => emptyOf[type.types[0].kind](type.types[0]), handle: () => undefined,
    object: (type) => Object.fromEntries(type.fields.filter((field) => !field.optional)
        .map((field) => [field.name, emptyOf[field.type.kind](field.type)])),
};

const isInteger = (value) => Number.isInteger(value) && value >= -(2 ** 31) && value < 2 ** 31;

/** What a value of each kind is called, and whether a value is one. */
const scalars = {
    string: ["a string", (value) => typeof value === "string"],
    integer: ["a whole number of 32 bits", isInteger],
    number: ["a number", (value) => typeof value === "number"],
    int64: ["a whole number", (value) => Number.isInteger(value) || typeof value === "bigint"],
    boolean: ["a boolean", (value) => typeof value === "boolean"],
    bytes: ["bytes", isBytes],
    void: ["undefined", (value) => value === undefined],
    handle: ["a NovaExtension object", (value) => instances.has(value)],
    function: ["a function", (value) => typeof value === "function"],
};

export function describeType(type) {
    if (type.values && type.kind !== "map")
        return `one of ${type.values.map((value) => JSON.stringify(value)).join(", ")}`;
    return scalars[type.kind]?.[0] ?? { array: "an array", map: "an object", object: `an object (${type.name || "any keys"})`,
        union: type.types?.map(describeType).join(" or "), any: "any value" }[type.kind];
}

function refuse(place, type, value) {
    throw new TypeError(`${place}: ${describeType(type)} is expected, not ${show(value)}`);
}

/** A copy of a value that is declared so; throws a TypeError that names the place of what is not. */
export function conform(type, value, place) {
    switch (type.kind) {
    case "any":
        return copy(isFilled(value) ? value[Filled] : value);
    case "array":
        return Array.isArray(value) ? value.map((item, index) => conform(type.items, item, `${place}[${index}]`))
            : refuse(place, type, value);
    case "map":
        if (!isPlain(value))
            refuse(place, type, value);
        return Object.fromEntries(Object.entries(value).map(([key, item]) => [key, conform(type.values, item, `${place}.${key}`)]));
    case "union":
        return conformUnion(type, value, place);
    case "object":
        return conformObject(type, value, place);
    }
    if (!scalars[type.kind][1](value) || (type.values && !type.values.includes(value)))
        refuse(place, type, value);
    return copy(value);
}

function conformUnion(type, value, place) {
    for (const one of type.types) {
        try {
            return conform(one, value, place);
        } catch {
            // Perhaps it is of the next type.
        }
    }
    return refuse(place, type, value);
}

function conformObject(type, given, place) {
    const value = isFilled(given) ? given[Filled] : given;
    if (!isPlain(value))
        refuse(place, type, value);
    const names = type.fields.map((field) => field.name);
    const unknown = Object.keys(value).find((name) => !names.includes(name));
    if (unknown !== undefined && names.length)
        throw new TypeError(`${place}: ${type.name} has no property ${JSON.stringify(unknown)}${hint(unknown, names)}`);
    const made = names.length ? {} : copy(value);
    for (const field of type.fields) {
        const item = value[field.name];
        if (item !== undefined)
            made[field.name] = conform(field.type, item, `${place}.${field.name}`);
        else if (isFilled(given) && !field.optional)
            made[field.name] = emptyOf[field.type.kind](field.type);
        else if (!field.optional && field.type.kind !== "any")
            throw new TypeError(`${place}: the property ${JSON.stringify(field.name)} of ${type.name} is missing; `
                + "fill({ ... }) adds what a test does not care about");
    }
    return made;
}
