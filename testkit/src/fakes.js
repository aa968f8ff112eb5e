// The fake objects: what a page finds as NovaExtension.<Name>, and what those hand out.
import { Hub } from "./hub.js";
import { bytesOf, instances } from "./values.js";

/** Members are called by `invoke(path, member, instance, values, caller)`; `caller` is the function that the page has called. */
export class Fakes {
    #classes = new Map();
    #invoke;
    #made = [];

    constructor(objects, invoke) {
        this.#invoke = invoke;
        for (const object of objects.values())
            this.#classes.set(object.name, this.#makeClass(object));
    }

    #makeClass({ name, members }) {
        const invoke = this.#invoke;
        const prototype = { get [Symbol.toStringTag]() {
            return `NovaExtension.${name}`;
        } };
        const check = (self) => {
            if (instances.get(self)?.path !== name)
                throw new TypeError("Illegal invocation");
            return self;
        };
        for (const member of members) {
            const call = { [member.name](...values) {
                return invoke(name, member, check(this), values, call);
            } }[member.name];
            Object.defineProperty(prototype, member.name, member.kind === "property"
                ? { get() { return invoke(name, member, check(this), []); }, enumerable: true, configurable: true }
                : { value: call, writable: true, enumerable: true, configurable: true });
        }
        return prototype;
    }

    /** A new object, which was made with these arguments. */
    make(path, made, isSingle = false) {
        const fake = Object.create(this.#classes.get(path));
        const facts = { path, made, isSingle, hub: new Hub(), kept: new Map() };
        if (path === "ByteBufferManager.ByteBuffer")
            facts.bytes = initialBytes(made[0]);
        instances.set(fake, facts);
        this.#made.push(fake);
        return fake;
    }

    /** All objects of a class that there are. */
    all(path) {
        return this.#made.filter((fake) => instances.get(fake).path === path);
    }
}

function initialBytes(content) {
    if (typeof content === "string")
        return new TextEncoder().encode(content);
    return content === undefined || typeof content === "number" ? new Uint8Array(content ?? 0) : bytesOf(content);
}

/** What a ByteBuffer does by itself. Undefined for what needs a row. */
export function callByteBuffer(member, instance, [size]) {
    const facts = instances.get(instance);
    if (member === "data")
        return { data: facts.bytes.slice() };
    if (member !== "setSize" || !(size >= 0 && size <= 2 ** 28 && Number.isInteger(size)))
        return undefined;
    const bytes = new Uint8Array(size);
    bytes.set(facts.bytes.subarray(0, size));
    facts.bytes = bytes;
    return { data: undefined };
}
