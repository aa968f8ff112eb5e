// The form of a member: its arguments by fields or as JSON.

import { fill, make, newId } from "./dom.js";
import { InputError, makeField, omitted } from "./controls.js";
import { findListener } from "./listeners.js";
import { encode, decode } from "./script.js";

/**
 * @param {ApiObject} object
 * @param {ApiMember} member
 * @param {() => string} targetName what the member is called on
 * @returns {{ node: HTMLElement, modes: HTMLElement, read(): unknown[], showJson(given: readonly unknown[]): void }}
 */
export function makeForm(object, member, targetName) {
    const fields = member.parameters.map((field) => makeField(field, { path: "", object, member, targetName }));
    const byFields = make(
        "div",
        { class: "fields" },
        ...fields.map((field) => field.node),
        !fields.length && make("p", { class: "note" }, "No arguments.")
    );
    const json = make("textarea", {
        class: "json",
        rows: "6",
        spellcheck: "false",
        id: newId(),
        "aria-label": "arguments as JSON",
        "data-role": "json"
    });
    const hint = make(
        "p",
        { class: "doc" },
        "A list of arguments. ",
        make("code", {}, '{"$listener": "name"}'),
        " is a function that shows what it is called with, ",
        make("code", {}, '{"$bigint": "1"}'),
        " a BigInt."
    );
    const asJson = make("div", { class: "fields", hidden: true }, json, hint);
    let isJson = false;

    /** @param {boolean} on */
    function show(on) {
        isJson = on;
        byFields.hidden = on;
        asJson.hidden = !on;
        buttons.forEach((button, index) => button.setAttribute("aria-pressed", String((index === 1) === on)));
    }

    /** @param {readonly unknown[]} given */
    function showJson(given) {
        json.value = encode(given);
        show(true);
    }

    function readJson() {
        /** @type {unknown} */
        let given;
        try {
            given = decode(json.value, findListener);
        } catch (error) {
            throw new InputError(`This is no JSON: ${/** @type {Error} */ (error).message}`, json);
        }
        if (!Array.isArray(given))
            throw new InputError("The arguments are a list: [first, second]", json);
        return given;
    }

    const buttons = ["Form", "JSON"].map((label, index) =>
        make(
            "button",
            {
                type: "button",
                "data-mode": label.toLowerCase(),
                click: () => (index ? showJson(readOr([])) : show(false))
            },
            label
        )
    );

    /** @param {unknown[]} fallback */
    function readOr(fallback) {
        try {
            return readFields();
        } catch {
            return fallback; // half a form: the JSON begins empty
        }
    }

    /** The arguments: those left out at the end are not passed, one that is left out before others is undefined. */
    function readFields() {
        const values = fields.flatMap((field, index) => {
            const value = field.read();
            return member.parameters[index].rest && Array.isArray(value) ? value : [value];
        });
        while (values.length && values[values.length - 1] === omitted) values.pop();
        return values.map((value) => (value === omitted ? undefined : value));
    }

    const modes = make("div", { class: "segments", role: "group", "aria-label": "arguments by" }, ...buttons);
    const node = make("div", {});
    fill(node, byFields, asJson);
    show(false);
    return { node, modes, read: () => (isJson ? readJson() : readFields()), showJson };
}
