// Logs: lists with the newest line on top.

import { fill, make } from "./dom.js";
import { clock, valueTree } from "./values.js";

const KEPT_LINES = 500;

/**
 * A list with the newest line on top, which can be paused, cleared and narrowed.
 *
 * @param {string} name
 * @param {string} empty what is said where there is nothing
 */
export function makeLog(name, empty) {
    /** @type {HTMLElement[]} */
    let held = [];
    let isPaused = false;
    const list = make("ol", { class: "log", "data-log": name, tabindex: "0", "aria-label": name });
    const nothing = make("p", { class: "note empty-log" }, empty);
    const words = make("input", {
        type: "search",
        class: "small",
        placeholder: "Filter",
        "aria-label": `Filter the ${name}`,
        input: filter
    });
    const pause = make(
        "button",
        { type: "button", class: "quiet", "aria-pressed": "false", "data-action": "pause", click: togglePause },
        "Pause"
    );
    const clear = make("button", { type: "button", class: "quiet", "data-action": "clear", click: empties }, "Clear");

    /** @param {HTMLElement} line */
    function add(line) {
        if (isPaused) {
            held.push(line);
            pause.textContent = `Resume (${held.length})`;
            return;
        }
        line.hidden = !isMeant(line);
        list.prepend(line);
        if (list.childElementCount > KEPT_LINES)
            list.lastElementChild?.remove();
        nothing.hidden = true;
    }

    const isMeant = (/** @type {HTMLElement} */ line) =>
        (line.textContent ?? "").toLowerCase().includes(words.value.toLowerCase());

    function filter() {
        for (const line of list.children)
            /** @type {HTMLElement} */ (line).hidden = !isMeant(/** @type {HTMLElement} */ (line));
    }

    function togglePause() {
        isPaused = !isPaused;
        pause.setAttribute("aria-pressed", String(isPaused));
        pause.textContent = isPaused ? "Resume" : "Pause";
        if (!isPaused)
            held.splice(0).forEach(add);
    }

    function empties() {
        held = [];
        fill(list);
        nothing.hidden = false;
        pause.textContent = isPaused ? "Resume" : "Pause";
    }

    return { node: make("div", { class: "log-place" }, list, nothing), tools: [words, pause, clear], add };
}

/**
 * What a listener was called with.
 *
 * @param {Arrival} arrival
 * @param {number} [open] how many levels of it are open
 */
export function arrivalLine({ label, time, payload }, open = 1) {
    return make(
        "li",
        { class: "arrival", "data-event": label },
        make("p", {}, make("time", {}, clock(time)), make("strong", {}, label)),
        ...(payload.length
            ? payload.map((value) => valueTree(value, open))
            : [make("span", { class: "value nothing" }, "no payload")])
    );
}
