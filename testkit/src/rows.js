// Rows: what calls return, checked against the declarations when a row is made.
import { conform, describeType } from "./declared.js";
import { isTextOf } from "./failure.js";
import { hint } from "./nearest.js";
import { differencesOfCall } from "./patterns.js";
import { instances, isPlain, show } from "./values.js";

const Keys = ["member", "arguments", "of", "answer", "failure", "rejects", "callback", "after", "times", "optional"];
const Outcomes = ["answer", "failure", "rejects"];

/** The declared failure that a row means: { code, text, msg, rejects }. */
function findFailure(name, member, key, given) {
    const place = `${name}: ${key}`;
    const { code, msg } = typeof given === "string" ? { msg: given } : given ?? {};
    if (typeof msg !== "string" || (code !== undefined && typeof code !== "number"))
        throw new TypeError(`${place}: a text, or { code, msg }, is expected, not ${show(given)}`);
    const declared = member.failures ?? [];
    const fitting = declared.filter((failure) => isTextOf(failure.text, msg) && (code === undefined || failure.code === code));
    const found = fitting.find((failure) => Boolean(failure.rejects) === (key === "rejects"));
    if (found)
        return { ...found, msg };
    if (fitting.length)
        throw new TypeError(`${place}: ${show(msg)} is ${key === "rejects" ? "thrown: say failure" : "rejected: say rejects"}`);
    const texts = declared.map((failure) => failure.text);
    throw new TypeError(`${place}: the member does not fail with ${code === undefined ? "" : `code ${code} `}${show(msg)}${
        hint(msg, texts)} It fails with: ${declared.map(({ code: one, text }) => `${one} ${show(text)}`).join(", ") || "nothing"}`);
}

/** What an answer is declared to be; says so where it is more than that: the envelope or the promise, which the kit makes. */
export function conformAnswer(type, given, place) {
    if (given instanceof Promise)
        throw new TypeError(`${place}: the value itself is expected, not a Promise: the kit makes one where the member returns one`);
    try {
        return conform(type, given, place);
    } catch (error) {
        if (isPlain(given) && Object.hasOwn(given, "success") && Object.hasOwn(given, "data"))
            throw new TypeError(`${place}: the data alone is expected: the kit makes { success, data } of it`);
        throw error;
    }
}

/** The parameter that is a function which is called later. */
export function callbackOf(member) {
    const index = (member.parameters ?? []).findIndex(({ type }) => type.kind === "function");
    return index < 0 ? undefined : { index, parameters: member.parameters[index].type.parameters ?? [] };
}

function conformCallbacks(name, member, payloads) {
    const callback = callbackOf(member);
    if (!callback || member.event)
        throw new TypeError(`${name}: callback: the member takes no function${member.event ? "; kit.emit() calls listeners" : ""}`);
    if (!Array.isArray(payloads))
        throw new TypeError(`${name}: callback: an array with a payload for each call is expected`);
    return payloads.map((payload, index) => conform(callback.parameters[0]?.type ?? { kind: "any" }, payload,
        `${name}: callback[${index}]`));
}

export class Row {
    uses = 0;

    /** `find` returns the declaration of a member, or throws. */
    constructor(given, find) {
        if (typeof given?.member !== "string")
            throw new TypeError(`A row is an object with the name of a member, { member: "FileSystem.exists", ... }, not ${show(given)}`);
        const unknown = Object.keys(given).find((key) => !Keys.includes(key));
        if (unknown !== undefined)
            throw new TypeError(`A row has no ${show(unknown)}${hint(unknown, Keys)} It can have: ${Keys.join(", ")}`);
        Object.assign(this, given);
        this.isWildcard = /\.\*$/.test(given.member);
        const outcomes = Outcomes.filter((key) => key in given);
        if (outcomes.length > 1)
            throw new TypeError(`${given.member}: a row has one of ${Outcomes.join(", ")}, not ${outcomes.join(" and ")}`);
        if (given.times !== undefined && !(Number.isInteger(given.times) && given.times >= 0))
            throw new TypeError(`${given.member}: times: a whole number is expected, not ${show(given.times)}`);
        if (given.arguments !== undefined && !Array.isArray(given.arguments))
            throw new TypeError(`${given.member}: arguments: an array is expected, not ${show(given.arguments)}`);
        if (this.isWildcard) {
            if (outcomes.length || given.arguments)
                throw new TypeError(`${given.member}: a row for all members of an object says nothing of arguments and answers`);
            find(`${given.member.slice(0, -2)}`, true);
            return;
        }
        this.#checkOutcome(given, find(given.member));
    }

    #checkOutcome(given, member) {
        const { form, type } = member.answer;
        const name = given.member;
        for (const key of ["failure", "rejects"]) {
            if (key in given)
                this[key] = findFailure(name, member, key, given[key]);
        }
        if ("answer" in given && typeof given.answer !== "function" && type.kind !== "handle")
            this.answer = conformAnswer(type, given.answer, `${name}: answer`);
        const needsAnswer = !["void", "handle"].includes(type.kind) && !Outcomes.some((key) => key in given);
        if (needsAnswer && !given.callback)
            throw new TypeError(`${name}: the row says neither answer (${describeType(type)}), failure nor rejects`);
        if (needsAnswer)
            this.answer = conform(type, type.kind === "boolean" ? true : undefined, `${name}: answer`);
        if ("callback" in given)
            this.callback = conformCallbacks(name, member, given.callback);
        if ("after" in given && (form !== "promise" || "failure" in given) && !("callback" in given))
            throw new TypeError(`${name}: after: the member returns at once; only promises and callbacks come later`);
    }

    get left() {
        return this.times === undefined ? Infinity : this.times - this.uses;
    }

    isFor(name, returnsNothing) {
        return this.isWildcard ? returnsNothing && name.startsWith(this.member.slice(0, -1)) && !name.slice(this.member.length - 1).includes(".")
            : this.member === name;
    }

    /** In what a call is not the row's: a text for each difference. */
    differences(instance, values) {
        const of = [];
        if (Array.isArray(this.of))
            of.push(...differencesOfCall(this.of, instances.get(instance).made ?? []).map((text) => `of, ${text}`));
        else if (this.of !== undefined && this.of !== instance)
            of.push("another object");
        return [...of, ...this.arguments === undefined ? [] : differencesOfCall(this.arguments, values)];
    }

    toString() {
        return this.arguments === undefined ? this.member : `${this.member}(${this.arguments.map((one) => show(one)).join(", ")})`;
    }
}
