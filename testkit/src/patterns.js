// Patterns: what stands for arguments in a row.
import { bytesOf, instances, isBytes, isPlain, show } from "./values.js";

function pattern(describe, test, differences) {
    return { describe, test, differences: differences ?? ((value) => (test(value) ? [] : [`expected ${describe}, got ${show(value)}`])) };
}

const isPattern = (value) => typeof value === "object" && value !== null && typeof value.test === "function"
    && typeof value.describe === "string";

/** Patterns that are more than a value. */
export const match = {
    any: pattern("any value", () => true),
    string: pattern("any string", (value) => typeof value === "string"),
    number: pattern("any number", (value) => typeof value === "number"),
    boolean: pattern("any boolean", (value) => typeof value === "boolean"),
    function: pattern("any function", (value) => typeof value === "function"),
    bytes: pattern("any bytes", isBytes),
    /** An object that has at least these properties. */
    partial: (properties) => pattern(`at least ${show(properties)}`, (value) => !differences(properties, value, "", true).length,
        (value) => differences(properties, value, "", true)),
    /** This very function or object. */
    same: (expected) => pattern(`this ${show(expected)}`, (value) => value === expected),
};

/** In what a value is not as a pattern says: one text for each place. */
export function differences(expected, value, place = "", isPartial = false) {
    const at = (texts) => texts.map((text) => (place ? `${place}: ${text}` : text));
    if (isPattern(expected))
        return at(expected.differences(value));
    const isRegular = expected instanceof RegExp;
    if (typeof expected === "function" || isRegular) {
        const fits = isRegular ? typeof value === "string" && expected.test(value) : Boolean(expected(value));
        return fits ? [] : at([isRegular ? `expected ${expected}, got ${show(value)}` : `${show(expected)} refuses ${show(value)}`]);
    }
    const isSimilar = typeof expected === "object" && expected !== null && typeof value === "object" && value !== null
        && Array.isArray(expected) === Array.isArray(value) && !instances.has(expected) && !instances.has(value);
    if (isSimilar && isBytes(expected) && isBytes(value))
        return `${bytesOf(expected)}` === `${bytesOf(value)}` ? [] : at([`expected ${show(expected)}, got ${show(value)}`]);
    if (!isSimilar || (isBytes(expected) !== isBytes(value)) || (!Array.isArray(expected) && !isPlain(expected)))
        return Object.is(expected, value) ? [] : at([`expected ${show(expected)}, got ${show(value)}`]);
    return differencesWithin(expected, value, place, isPartial);
}

function differencesWithin(expected, value, place, isPartial) {
    const path = (key) => (Array.isArray(value) ? `${place}[${key}]` : place ? `${place}.${key}` : key);
    const given = (object) => Object.keys(object).filter((key) => object[key] !== undefined);
    const missing = given(expected).filter((key) => value[key] === undefined && !isPattern(expected[key]));
    const extra = isPartial ? [] : given(value).filter((key) => expected[key] === undefined);
    return [
        ...missing.map((key) => `${path(key)}: expected ${show(expected[key])}, got nothing`),
        ...extra.map((key) => `${path(key)}: ${show(value[key])} was not expected`),
        ...given(expected).filter((key) => !missing.includes(key))
            .flatMap((key) => differences(expected[key], value[key], path(key), isPartial)),
    ];
}

/** The same of a whole call. Functions behind the expected arguments may be there: they are callbacks. */
export function differencesOfCall(expected, values) {
    const found = expected.flatMap((one, index) => differences(one, values[index]).map((text) =>
        `argument ${index + 1}${/^[^:\s]+: /.test(text) ? `, ${text}` : `: ${text}`}`));
    const extra = values.slice(expected.length).findIndex((value) => value !== undefined && typeof value !== "function");
    return extra < 0 ? found
        : [...found, `argument ${expected.length + extra + 1}: ${show(values[expected.length + extra])} was not expected`];
}
