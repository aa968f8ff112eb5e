// Values as trees that open and close.

import { make } from "./dom.js";
import { literal, nameOf } from "./script.js";

const SHOWN_AT_ONCE = 100;
const SHOWN_IN_LINE = 6;
const LONG = 2000;

/**
 * @param {unknown} value
 * @param {number} [open] how many levels are open
 * @param {string} [key] what the value is called
 * @returns {HTMLElement}
 */
export function valueTree(value, open = 3, key) {
    const name = key === undefined ? [] : [make("span", { class: "key" }, key), make("span", { class: "colon" }, ": ")];
    if (typeof value !== "object" || value === null || value instanceof Uint8Array)
        return make(
            "span",
            { class: "leaf" },
            ...name,
            make("span", { class: `value ${kindOf(value)}` }, leafText(value, LONG))
        );
    const entries = Object.entries(value);
    const isList = Array.isArray(value);
    if (!entries.length)
        return make(
            "span",
            { class: "leaf" },
            ...name,
            make("span", { class: "value empty" }, isList ? "[]" : describe(value))
        );
    const details = make(
        "details",
        { class: "branch", open: open > 0 },
        make(
            "summary",
            {},
            ...name,
            make("span", { class: "count" }, isList ? `[${entries.length}]` : `{${entries.length}}`),
            make("span", { class: "preview" }, oneLine(value))
        )
    );
    const list = make("ul", {});
    details.append(list);
    const showMore = () => showEntries(list, entries, open - 1);
    if (open > 0)
        showMore();
    else
        details.addEventListener("toggle", showMore, { once: true });
    return details;
}

/**
 * Appends the next of the entries.
 *
 * @param {HTMLElement} list
 * @param {[string, unknown][]} entries
 * @param {number} open
 */
function showEntries(list, entries, open) {
    const from = list.childElementCount;
    list.append(
        ...entries.slice(from, from + SHOWN_AT_ONCE).map(([key, item]) => make("li", {}, valueTree(item, open, key)))
    );
    const left = entries.length - list.childElementCount;
    if (left <= 0)
        return;
    const more = make("button", { type: "button", class: "quiet" }, `Show more (${left})`);
    const row = make("li", {}, more);
    more.addEventListener("click", () => {
        row.remove();
        showEntries(list, entries, open);
    });
    list.append(row);
}

/** @param {unknown} value */
function kindOf(value) {
    return value === null || value === undefined ? "nothing" : typeof value;
}

/**
 * @param {unknown} value
 * @param {number} length
 */
function leafText(value, length) {
    if (!(value instanceof Uint8Array))
        return shortened(literal(value), length);
    const first = [...value.subarray(0, SHOWN_AT_ONCE), ...(value.length > SHOWN_AT_ONCE ? ["…"] : [])].join(", ");
    return `Uint8Array(${value.length}) [${length < LONG && value.length > SHOWN_IN_LINE ? "…" : first}]`;
}

/** @param {object} value */
function describe(value) {
    const name = Object.getPrototypeOf(value)?.constructor?.name ?? "Object";
    return name === "Object" ? "{}" : name;
}

/**
 * @param {string} text
 * @param {number} [length]
 */
function shortened(text, length = LONG) {
    return text.length > length ? `${text.slice(0, length)}… (${text.length} characters)` : text;
}

/**
 * A value in a few words.
 *
 * @param {unknown} value
 * @param {number} [depth] how many levels are shown
 * @returns {string}
 */
export function oneLine(value, depth = 2) {
    if (typeof value === "function")
        return `ƒ ${nameOf(value)}`;
    if (typeof value !== "object" || value === null || value instanceof Uint8Array)
        return leafText(value, 80);
    const entries = Object.entries(value);
    const isList = Array.isArray(value);
    if (!entries.length)
        return isList ? "[]" : describe(value);
    if (!depth)
        return isList ? "[…]" : "{…}";
    const parts = entries
        .slice(0, SHOWN_IN_LINE)
        .map(([key, item]) => (isList ? "" : `${key}: `) + oneLine(item, depth - 1));
    const text = [...parts, ...(entries.length > SHOWN_IN_LINE ? ["…"] : [])].join(", ");
    return isList ? `[${text}]` : `{ ${text} }`;
}

/**
 * A call in a line.
 *
 * @param {Call} call
 */
export function callLine({ target, member, given }) {
    const text = `${target.name.replace("NovaExtension.", "")}.${member.name}`;
    return member.kind === "property" ? text : `${text}(${given.map((value) => oneLine(value)).join(", ")})`;
}

/**
 * What a call failed with.
 *
 * @param {unknown} error
 * @returns {{ code: string, message: string }}
 */
export function failureOf(error) {
    const { code, msg, message } = Object(error);
    return { code: code === undefined ? "" : String(code), message: String(msg ?? message ?? error) };
}

/**
 * How a call has gone, in a line. Of an answer that is the data in it.
 *
 * @param {Call} call
 */
export function outcomeText({ state, promised, value, error }) {
    if (state === "pending")
        return promised ? "promise" : "under way";
    if (state === "ok")
        return returnedText(value);
    const { code, message } = failureOf(error);
    return `${code && `code ${code}: `}${message}`;
}

/** @param {Call} made */
export function statePill({ state, promised }) {
    const text = { ok: "OK", failed: promised ? "Rejected" : "Failed", pending: "Pending" }[state];
    return make("span", { class: `pill ${state}` }, text);
}

/**
 * @param {any} value
 * @returns {value is { success: true, data: unknown }}
 */
function isEnvelope(value) {
    return value?.success === true && "data" in value;
}

/**
 * What a member has returned, in a line: of an envelope that is the data.
 *
 * @param {unknown} value
 */
export function returnedText(value) {
    return oneLine(isEnvelope(value) ? value.data : value);
}

/** @param {number} milliseconds */
export function duration(milliseconds) {
    if (milliseconds < 1000)
        return `${milliseconds.toFixed(milliseconds < 10 ? 2 : 0)} ms`;
    return `${(milliseconds / 1000).toFixed(2)} s`;
}

/** @param {Date} date */
export function clock(date) {
    const two = (/** @type {number} */ number) => String(number).padStart(2, "0");
    const time = [date.getHours(), date.getMinutes(), date.getSeconds()].map(two).join(":");
    return `${time}.${String(date.getMilliseconds()).padStart(3, "0")}`;
}
