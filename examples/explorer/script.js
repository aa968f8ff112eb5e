// Values as script and as JSON.

const IDENTIFIER = /^[A-Za-z_$][\w$]*$/;
const WIDTH = 88;
const FEW_BYTES = 16;

/** @type {WeakMap<Function, string>} */
const names = new WeakMap();

/**
 * Names a function for readers of the JSON.
 *
 * @template {Function} Callable
 * @param {Callable} callable
 * @param {string} name
 */
export function named(callable, name) {
    names.set(callable, name);
    return callable;
}

/** @param {unknown} value */
export function nameOf(value) {
    return typeof value === "function" ? (names.get(value) ?? value.name) : undefined;
}

/**
 * A value as a literal of script, on one line where it fits.
 *
 * @param {unknown} value
 * @param {string} [margin]
 * @returns {string}
 */
export function literal(value, margin = "") {
    if (typeof value === "bigint")
        return `${value}n`;
    if (typeof value === "function")
        return "(...payload) => console.log(...payload)";
    if (typeof value === "string")
        return JSON.stringify(value);
    if (value instanceof Uint8Array)
        return value.length > FEW_BYTES
            ? `Uint8Array.from(atob("${toBase64(value)}"), (c) => c.charCodeAt(0))`
            : `new Uint8Array([${value.join(", ")}])`;
    if (typeof value !== "object" || value === null)
        return Object.is(value, -0) ? "-0" : String(value);
    const inner = `${margin}    `;
    const parts = Array.isArray(value)
        ? value.map((item) => literal(item, inner))
        : Object.entries(value).map(([key, item]) => `${keyText(key)}: ${literal(item, inner)}`);
    const [open, close, space] = Array.isArray(value) ? ["[", "]", ""] : ["{", "}", " "];
    const line = parts.join(", ");
    if (!parts.length)
        return open + close;
    if (line.length + margin.length < WIDTH && !line.includes("\n"))
        return open + space + line + space + close;
    return `${open}\n${parts.map((part) => `${inner}${part},\n`).join("")}${margin}${close}`;
}

/** @param {Uint8Array} bytes */
function toBase64(bytes) {
    const chunk = 8192; // as many arguments as every engine takes
    let text = "";
    for (let from = 0; from < bytes.length; from += chunk)
        text += String.fromCharCode(...bytes.subarray(from, from + chunk));
    return btoa(text);
}

/** @param {string} key */
function keyText(key) {
    if (key === "__proto__") return '["__proto__"]'; // otherwise script would set the prototype
    return IDENTIFIER.test(key) ? key : JSON.stringify(key);
}

/**
 * A call as a line of script.
 *
 * @param {string} target
 * @param {ApiMember} member
 * @param {readonly unknown[]} given
 */
export function callText(target, member, given) {
    if (member.kind === "property")
        return `${target}.${member.name}`;
    return `${target}.${member.name}(${given.map((value) => literal(value)).join(", ")})`;
}

/**
 * A call as script that runs by itself: it begins with what hands out the object that it is made on.
 *
 * @param {Target} target
 * @param {ApiMember} member
 * @param {readonly unknown[]} given
 * @returns {string}
 */
export function scriptOf(target, member, given) {
    const waits = member.answer.form === "promise" ? "await " : "";
    return `${preparation(target)}${waits}${callText(target.name, member, given)};`;
}

/**
 * @param {Target} target
 * @returns {string}
 */
function preparation({ name, origin }) {
    if (!origin)
        return "";
    const { target, member, given } = origin;
    const call = callText(target.name, member, given);
    const made = { envelope: `${call}.data`, promise: `await ${call}`, object: call, plain: call }[member.answer.form];
    return `${preparation(target)}const ${name} = ${made};\n`;
}

/**
 * Arguments as JSON. What JSON has no form for is an object with one key: `{"$bigint": "1"}`, `{"$bytes": "base64"}`,
 * `{"$listener": "name"}`.
 *
 * @param {unknown} value
 * @returns {string}
 */
export function encode(value) {
    return JSON.stringify(
        value,
        (_, item) => {
            if (typeof item === "bigint")
                return { $bigint: String(item) };
            if (item instanceof Uint8Array)
                return { $bytes: toBase64(item) };
            return typeof item === "function" ? { $listener: nameOf(item) } : item;
        },
        2
    );
}

/**
 * @param {string} text what `encode` makes, or one BigInt such as 12n
 * @param {(name: string) => LogListener} listener makes a function
 * @returns {unknown}
 */
export function decode(text, listener) {
    if (/^-?\d+n$/.test(text.trim()))
        return BigInt(text.trim().slice(0, -1));
    return JSON.parse(text, (_, item) => {
        if (typeof item?.$bigint === "string")
            return BigInt(item.$bigint);
        if (typeof item?.$bytes === "string")
            return Uint8Array.from(atob(item.$bytes), (char) => char.charCodeAt(0));
        return typeof item?.$listener === "string" ? listener(item.$listener) : item;
    });
}
