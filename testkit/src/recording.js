// Plays what novahost has recorded: calls in their order, with the promises, events and callbacks of then.
import { makeFailure } from "./failure.js";
import { differencesOfCall, match } from "./patterns.js";
import { instances, show } from "./values.js";

const special = {
    $undefined: () => undefined,
    $number: (value) => Number(value),
    $bigint: (value) => BigInt(value),
    $date: (value) => new Date(value),
    $bytes: (value) => Uint8Array.from(atob(value), (character) => character.charCodeAt(0)),
};

/** What happened in the first page, in the order in which it began. */
function parse(text) {
    const entries = text.split("\n").filter((line) => line.trim()).map((line, index) => {
        try {
            return JSON.parse(line);
        } catch (error) {
            throw new TypeError(`line ${index + 1} of the recording is no JSON: ${error.message}`);
        }
    });
    const head = entries.shift();
    if (head?.novaRecording !== 1)
        throw new TypeError("the text is no recording: its first line has no \"novaRecording\": 1");
    const calls = new Map(entries.filter(({ type, page }) => type === "call" && page === undefined).map((entry) => [entry.id, entry]));
    const isHere = ({ type, page, within }) => type !== "page" && type !== "play" && page === undefined
        // The kit's own dispatchEvent calls the listeners.
        && !(type === "event" && calls.get(within)?.member === "dispatchEvent");
    return entries.filter(isHere).sort((a, b) => a.at - b.at);
}

export class Recording {
    #entries;
    #order;
    #kit;
    #objects = new Map(); // by the number of the recording
    #functions = new Map();
    #promises = new Map();
    #isPlaying = false;

    constructor({ text, order = "strict" }, kit) {
        if (!["strict", "loose"].includes(order))
            throw new TypeError(`recording: order is "strict" or "loose", not ${show(order)}`);
        this.#entries = parse(text);
        this.#order = order;
        this.#kit = kit;
        for (const entry of this.#entries)
            entry.name = entry.object?.replace(/^NovaExtension\./, "");
    }

    /** The calls that the page has not made yet, as texts. */
    get left() {
        return this.#entries.filter((entry) => entry.type === "call" && !entry.isUsed).map((entry) => this.#describe(entry));
    }

    #describe(entry) {
        return `${entry.name}.${entry.member}(${(entry.arguments ?? []).map((one) => show(this.#decode(one))).join(", ")})`;
    }

    /** A value of the recording; functions and objects become patterns or what they stand for. */
    #decode(value) {
        if (typeof value !== "object" || value === null)
            return value;
        if (Array.isArray(value))
            return value.map((item) => this.#decode(item));
        const [key] = Object.keys(value);
        if (key in special)
            return special[key](value[key]);
        if (key === "$function")
            return match.function;
        if (key === "$cut" || key === "$promise")
            return match.any;
        if (key === "$object")
            return this.#objectOf(value.$object, value.class?.replace(/^NovaExtension\./, ""));
        const plain = key === "$plain" ? value.$plain : value;
        return Object.fromEntries(Object.entries(plain).map(([name, item]) => [name, this.#decode(item)]));
    }

    #objectOf(number, path, made) {
        if (!this.#objects.has(number))
            this.#objects.set(number, this.#kit.object(path, ...made ?? []));
        return this.#objects.get(number);
    }

    /** Keeps the functions that the page has passed where the recording has others. */
    #learn(recorded, value) {
        if (typeof recorded !== "object" || recorded === null)
            return;
        if ("$function" in recorded)
            this.#functions.set(recorded.$function, value);
        else
            Object.entries(recorded.$plain ?? recorded).forEach(([key, item]) => this.#learn(item, value?.[key]));
    }

    #isOf(entry, instance) {
        const { isSingle } = instances.get(instance);
        return isSingle ? entry.instance === undefined : this.#objects.get(entry.instance) === instance;
    }

    #differences(entry, member, values) {
        return entry.member === member ? differencesOfCall((entry.arguments ?? []).map((one) => this.#decode(one)), values)
            : [`expected the call ${this.#describe(entry)}`];
    }

    /** The recorded call that this one is; or { expected, differences } of the nearest one. */
    take(path, member, instance, values) {
        const calls = this.#entries.filter((entry) =>
            entry.type === "call" && !entry.isUsed && entry.name === path && this.#isOf(entry, instance));
        const candidates = this.#order === "strict" ? calls.slice(0, 1) : calls.filter((entry) => entry.member === member);
        let nearest;
        for (const entry of candidates) {
            const differences = this.#differences(entry, member, values);
            if (!differences.length) {
                entry.isUsed = true;
                (entry.arguments ?? []).forEach((one, index) => this.#learn(one, values[index]));
                return { entry };
            }
            if (!nearest || differences.length < nearest.differences.length)
                nearest = { expected: this.#describe(entry), differences };
        }
        return nearest ?? {};
    }

    /** What the recorded call returned; throws what it threw. Plays what happened during it and, later, what came after it. */
    answer(entry, values) {
        this.#play((one) => (one.within === undefined ? one.at > entry.at && one.at < entry.at + (entry.duration ?? 0)
            : one.within === entry.id));
        queueMicrotask(() => this.play());
        if (entry.thrown)
            throw makeFailure(entry.thrown.code, entry.thrown.msg);
        if (entry.promise !== undefined) {
            return new Promise((resolve, reject) => {
                this.#promises.set(entry.promise, { resolve, reject });
            });
        }
        const made = entry.answer?.$object;
        return made === undefined ? this.#decode(entry.answer)
            : this.#objectOf(made, entry.answer.class?.replace(/^NovaExtension\./, ""), values);
    }

    #isReady(entry) {
        const earlier = this.#entries.slice(0, this.#entries.indexOf(entry));
        if (entry.type === "settled")
            return this.#promises.has(entry.promise);
        return (this.#order === "loose" && entry.type === "callback" && this.#functions.has(entry.function))
            || earlier.every((one) => one.isUsed);
    }

    #play(isWanted) {
        for (const entry of this.#entries) {
            if (!entry.isUsed && entry.type !== "call" && isWanted(entry) && this.#isReady(entry)) {
                entry.isUsed = true;
                this.#do(entry);
            }
        }
    }

    /** Plays what came next, until the page has to make a call. One thing at a time: the page may act on each. */
    async play() {
        if (this.#isPlaying)
            return;
        this.#isPlaying = true;
        for (let next = true; next;) {
            next = this.#entries.find((entry) => !entry.isUsed && entry.type !== "call" && this.#isReady(entry));
            if (next)
                this.#play((entry) => entry === next);
            await null;
        }
        this.#isPlaying = false;
    }

    #do(entry) {
        if (entry.type === "settled") {
            const { resolve, reject } = this.#promises.get(entry.promise);
            const value = this.#decode(entry.value);
            if (entry.state === "resolved")
                resolve(value);
            else
                reject(typeof value?.msg === "string" ? makeFailure(value.code, value.msg) : value);
        } else if (entry.type === "event") {
            const target = entry.instance === undefined ? entry.name : this.#objects.get(entry.instance);
            if (target !== undefined)
                this.#kit.dispatch(target, entry.event, (entry.arguments ?? []).map((one) => this.#decode(one)));
        } else if (entry.type === "callback") {
            this.#functions.get(entry.function)?.(...(entry.arguments ?? []).map((one) => this.#decode(one)));
        }
    }
}
