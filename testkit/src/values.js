// Values as the library takes them: what may be passed, copies, and how they are printed.

/** The path of a fake, such as "FileSystem.File", by the fake; and what it was made with. */
export const instances = new WeakMap();

const typedArray = Object.getPrototypeOf(Uint8Array.prototype);
const builtIn = new Map();
for (const name of Object.getOwnPropertyNames(globalThis)) {
    const made = Object.getOwnPropertyDescriptor(globalThis, name).value;
    const prototype = typeof made === "function" ? Object.getOwnPropertyDescriptor(made, "prototype")?.value : undefined;
    if (prototype && typeof prototype === "object" && prototype !== Object.prototype)
        builtIn.set(prototype, name);
}

export const isBytes = (value) => value instanceof ArrayBuffer || ArrayBuffer.isView(value)
    || instances.get(value)?.path === "ByteBufferManager.ByteBuffer";

/** A copy of the bytes of what isBytes. */
export function bytesOf(value) {
    if (instances.has(value))
        return instances.get(value).bytes.slice();
    return value instanceof ArrayBuffer ? new Uint8Array(value.slice(0))
        : new Uint8Array(value.buffer, value.byteOffset, value.byteLength).slice();
}

/** An object whose properties are data. */
export const isPlain = (value) => typeof value === "object" && value !== null && !Array.isArray(value)
    && !isBytes(value) && !instances.has(value) && kindOf(value) === undefined;

function kindOf(object) {
    for (let prototype = Object.getPrototypeOf(object); prototype; prototype = Object.getPrototypeOf(prototype)) {
        if (builtIn.has(prototype))
            return builtIn.get(prototype);
    }
    return undefined;
}

const withArticle = (name) => `${/^[AEIOU]/.test(name) ? "an" : "a"} ${name}`;
const step = (key) => (typeof key === "number" ? `[${key}]` : `.${key}`);

/** Why a value can not be passed, with the place in it; undefined when it can. */
export function whyNotPassable(value, path = "", above = []) {
    const refuse = (what) => `${what} can not be passed${path ? ` (at ${path.replace(/^\./, "")})` : ""}`;
    if (typeof value === "symbol")
        return refuse("a symbol");
    if (typeof value === "bigint" && BigInt.asIntN(64, value) !== value && BigInt.asUintN(64, value) !== value)
        return refuse("a BigInt of more than 64 bits");
    if (typeof value !== "object" || value === null || isBytes(value) || instances.has(value))
        return undefined;
    if (above.includes(value))
        return refuse("a cycle");
    const isArray = Array.isArray(value);
    const kind = isArray ? undefined : kindOf(value);
    if (kind !== undefined)
        return refuse(withArticle(kind));
    for (const key of Object.keys(value)) {
        const why = whyNotPassable(value[key], path + step(isArray ? Number(key) : key), [...above, value]);
        if (why)
            return why;
    }
    return undefined;
}

/** A copy: functions and fakes stay what they are, bytes become a Uint8Array. */
export function copy(value) {
    if (typeof value !== "object" || value === null || instances.has(value))
        return value;
    if (isBytes(value))
        return bytesOf(value);
    if (Array.isArray(value))
        return value.map(copy);
    return isPlain(value) ? Object.fromEntries(Object.entries(value).map(([key, item]) => [key, copy(item)])) : value;
}

/** The value as a reader would write it, on one line. */
export function show(value, depth = 0) {
    if (typeof value === "string")
        return JSON.stringify(value);
    if (typeof value === "bigint")
        return `${value}n`;
    if (Object.is(value, -0))
        return "-0";
    if (typeof value === "function")
        return value.describe ?? (value.name ? `function ${value.name}` : "function");
    if (typeof value !== "object" || value === null || value instanceof RegExp)
        return String(value);
    if (value.describe !== undefined && typeof value.test === "function")
        return value.describe;
    if (instances.has(value))
        return `NovaExtension.${instances.get(value).path}`;
    if (depth > 6)
        return "...";
    if (Array.isArray(value))
        return `[${value.map((item) => show(item, depth + 1)).join(", ")}]`;
    if (isBytes(value))
        return `bytes [${[...bytesOf(value).slice(0, 16)].join(", ")}${bytesOf(value).length > 16 ? ", ..." : ""}]`;
    const entries = Object.entries(value).map(([key, item]) =>
        `${/^[A-Za-z_$][\w$]*$/.test(key) ? key : JSON.stringify(key)}: ${show(item, depth + 1)}`);
    return entries.length ? `{ ${entries.join(", ")} }` : "{}";
}
