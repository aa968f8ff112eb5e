// Parts of the window panel.

import { make, newId } from "./dom.js";

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
 * A row: numbers or strings, and a button that hands them on.
 *
 * @param {string} label
 * @param {Record<string, string | number>} presets the first value of each input, by its name
 * @param {(values: Record<string, string>) => unknown} submit
 */
export function inputRow(label, presets, submit) {
    const inputs = Object.entries(presets).map(([name, value]) => {
        const isNumber = typeof value === "number";
        const input = make("input", {
            type: "text",
            value,
            inputmode: isNumber && "numeric",
            spellcheck: "false",
            name
        });
        const style = isNumber ? "small-field short" : "small-field";
        return { name, input, node: make("label", { class: style }, make("span", {}, name), input) };
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
