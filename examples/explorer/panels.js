// Parts of the places that are made of panels: the window, the skin, plugins, panels of the suite.

import { call, targetsOf } from "./calls.js";
import { fill, make, newId, suggestions } from "./dom.js";
import { memberNamed, objectNamed } from "./reference.js";
import { callLine, duration, outcomeText, statePill } from "./values.js";

/** @typedef {(member: string, ...given: unknown[]) => Promise<Call>} Act calls a member, and resolves when that has ended */
/** @typedef {(made: Call) => Promise<Call>} Report shows what comes of a call */

/**
 * @param {string} name
 * @param {string} title
 * @param {Node | undefined} beside what stands beside the title
 * @param {...Node} children
 */
export function panelsView(name, title, beside, ...children) {
    return make(
        "article",
        { class: "view panels-view", "data-view": name },
        make("div", { class: "title-line" }, make("h1", { tabindex: "-1" }, title), beside),
        ...children
    );
}

/** The line with the outcome of the last call. */
export function makeOutcome() {
    const node = make(
        "div",
        { class: "outcome-line", role: "status", "data-outcome": "none" },
        make("p", { class: "note" }, "The outcome of the last call appears here.")
    );

    /** @type {Report} */
    async function report(made) {
        await made.ended;
        const text = outcomeText(made);
        node.dataset.outcome = made.state;
        fill(
            node,
            statePill(made),
            make("code", {}, callLine(made)),
            make("span", { class: "what" }, text === "undefined" ? "" : text),
            make("span", { class: "elapsed" }, duration(made.elapsed))
        );
        return made;
    }

    return { node, report };
}

/**
 * Calls members of an object of NovaExtension.
 *
 * @param {string} name
 * @param {Report} report
 * @returns {Act}
 */
export function actOn(name, report) {
    const object = objectNamed(name);
    const [root] = targetsOf(object);
    return (member, ...given) => report(call(root, memberNamed(object, member), given));
}

/**
 * @param {string} title
 * @param {...Node} children
 */
export function panel(title, ...children) {
    const id = newId();
    return make(
        "section",
        { class: "card panel-card", "aria-labelledby": id, "data-panel": title },
        make("h2", { id }, title),
        ...children
    );
}

/**
 * A control with its name above it.
 *
 * @param {string} name
 * @param {HTMLElement} control
 * @param {...Node} more
 */
export function smallField(name, control, ...more) {
    return make("label", { class: "small-field" }, make("span", {}, name), control, ...more);
}

/**
 * A row: numbers or strings, and a button that hands them on.
 *
 * @param {string} label
 * @param {Record<string, string | number | readonly string[]>} presets the first value of each input, by its name; of a
 * list that is its first, and all are suggested
 * @param {(values: Record<string, string>) => unknown} submit
 */
export function inputRow(label, presets, submit) {
    const inputs = Object.entries(presets).map(([name, preset]) => {
        const isNumber = typeof preset === "number";
        const list = typeof preset === "object" ? suggestions(preset) : undefined;
        const input = make("input", {
            type: "text",
            value: typeof preset === "object" ? preset[0] : preset,
            inputmode: isNumber && "numeric",
            spellcheck: "false",
            autocomplete: "off",
            list: list && list.id,
            name
        });
        const node = smallField(name, input, ...(list ? [list] : []));
        node.classList.toggle("short", isNumber);
        return { name, input, node };
    });
    const form = make(
        "form",
        { class: "input-row", "data-row": label },
        ...inputs.map(({ node }) => node),
        make("button", { type: "submit", class: "secondary" }, label)
    );
    form.addEventListener("submit", (event) => {
        event.preventDefault();
        submit(Object.fromEntries(inputs.map(({ name, input }) => [name, input.value])));
    });
    return form;
}

/**
 * All values as numbers.
 *
 * @param {Record<string, string>} values
 */
export function numbers(values) {
    return Object.fromEntries(Object.entries(values).map(([name, value]) => [name, Number(value)]));
}

/**
 * @param {string} label
 * @param {() => unknown} click
 * @param {string} [kind]
 */
export function actionButton(label, click, kind = "secondary") {
    return make("button", { type: "button", class: kind, "data-button": label, click }, label);
}
