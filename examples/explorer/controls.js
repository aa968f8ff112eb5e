// The controls of a form, one kind for each type of the reference.

import { fill, icon, make, newId, prose, suggestions } from "./dom.js";
import { active, listenersChanged, makeListener } from "./listeners.js";
import { typeText } from "./reference.js";
import { decode } from "./script.js";

/** What a control reads that the user leaves out. */
export const omitted = Symbol("omitted");

/** What was typed is no value. The control is where the fault is. */
export class InputError extends Error {
    /**
     * @param {string} message
     * @param {HTMLElement} control
     */
    constructor(message, control) {
        super(message);
        this.control = control;
    }
}

/**
 * Where a control stands.
 *
 * @typedef {{ path: string, member: ApiMember, object: ApiObject, targetName(): string }} Place
 */

/**
 * A field with its name, type and documentation. One that is optional can be left out.
 *
 * @param {ApiField} field
 * @param {Place} place
 * @returns {Control}
 */
export function makeField(field, place) {
    const inner = makeControl(
        field.rest ? { kind: "array", items: field.type } : field.type,
        { ...place, path: `${place.path}${place.path && "."}${field.name}` },
        field
    );
    const isGroup = inner.node.matches("fieldset, .list");
    const id = inner.node.id || (inner.node.id = newId());
    const include = field.optional && !field.rest ? makeInclude(field, inner.node) : undefined;
    const doc = [
        ...prose(field.doc),
        field.default === undefined
            ? ""
            : make("span", { class: "default" }, `${field.doc && " · "}default ${JSON.stringify(field.default)}`)
    ];
    const title = make(
        isGroup ? "span" : "label",
        isGroup ? { class: "name" } : { class: "name", for: id },
        field.name
    );
    const name = make(
        "span",
        { class: "title" },
        title,
        !field.optional &&
            !field.rest &&
            make("span", { class: "required", title: "required", "aria-label": "required" }, "*")
    );
    const docId = newId();
    inner.node.setAttribute("aria-describedby", docId);
    if (isGroup)
        inner.node.setAttribute("aria-label", field.name);
    const node = make(
        "div",
        { class: isGroup ? "field group" : "field", "data-field": field.name },
        make("div", { class: "head" }, name, make("span", { class: "type" }, typeText(field.type)), include?.node),
        make("div", { class: "control" }, inner.node, make("p", { class: "doc", id: docId }, ...doc))
    );
    return { node, read: () => (include && !include.isChecked() ? omitted : inner.read()) };
}

/**
 * The box that says whether an optional field is given. Typing into the field ticks it.
 *
 * @param {ApiField} field
 * @param {HTMLElement} control
 */
function makeInclude(field, control) {
    const box = make("input", { type: "checkbox", "aria-label": `give ${field.name}`, "data-include": field.name });
    const show = () => control.classList.toggle("left-out", !box.checked);
    const tick = () => {
        box.checked = true;
        show();
    };
    control.addEventListener("input", tick);
    control.addEventListener("change", tick);
    box.addEventListener("change", show);
    show();
    return { node: make("label", { class: "include" }, box, "give"), isChecked: () => box.checked };
}

/**
 * @param {ApiType} type
 * @param {Place} place
 * @param {ApiField} [field]
 * @returns {Control}
 */
function makeControl(type, place, field) {
    if (Array.isArray(type.values))
        return makeChoice(type.values, field?.default);
    switch (type.kind) {
        case "boolean":
            return makeSwitch(field?.default === true);
        case "number":
        case "integer":
        case "int64":
            return makeNumber(type.kind);
        case "string":
            return place.path.endsWith("eventName") && place.object.events.length
                ? makeText(place.object.events.map((event) => event.name))
                : makeText([]);
        case "bytes":
            return makeBytes();
        case "array":
            return makeList(type.items ?? { kind: "any" }, place);
        case "map":
            return makeMap(type.values, place);
        case "object":
            return makeGroup(type.fields ?? [], place);
        case "function":
            return place.member.name.startsWith("remove") ? makeListenerChoice(place) : makeFunction(place);
        default:
            return makeJson();
    }
}

/**
 * @param {string[]} suggested
 * @returns {Control}
 */
function makeText(suggested) {
    const list = suggested.length > 0 && suggestions(suggested);
    const input = make("input", { type: "text", spellcheck: "false", autocomplete: "off", list: list && list.id });
    if (!list)
        return { node: input, read: () => input.value };
    input.value = suggested[0];
    input.id = newId();
    return { node: make("div", {}, input, list), read: () => input.value };
}

/**
 * @param {string} kind
 * @returns {Control}
 */
function makeNumber(kind) {
    const node = make("input", {
        type: "text",
        inputmode: "decimal",
        class: "short",
        autocomplete: "off",
        placeholder: "0"
    });
    return {
        node,
        read() {
            const text = node.value.trim() || "0";
            if (kind === "int64" && /^-?\d+$/.test(text) && !Number.isSafeInteger(Number(text)))
                return BigInt(text);
            const value = Number(text);
            if (Number.isNaN(value) || (kind !== "number" && !Number.isInteger(value)))
                throw new InputError(`${text} is no ${kind === "number" ? "number" : "whole number"}.`, node);
            return value;
        }
    };
}

/**
 * @param {boolean} isOn
 * @returns {Control}
 */
function makeSwitch(isOn) {
    const node = make("input", { type: "checkbox", class: "switch", role: "switch", checked: isOn });
    return { node, read: () => node.checked };
}

/**
 * @param {readonly unknown[]} values
 * @param {unknown} preset
 * @returns {Control}
 */
function makeChoice(values, preset) {
    const node = make(
        "select",
        {},
        ...values.map((value) => make("option", { selected: value === preset }, JSON.stringify(value)))
    );
    return { node, read: () => values[node.selectedIndex] };
}

/**
 * Bytes: those of a file, or of a text in UTF-8.
 *
 * @returns {Control}
 */
function makeBytes() {
    const text = make("textarea", { rows: "2", spellcheck: "false", placeholder: "text, or else a file", id: newId() });
    const file = make("input", { type: "file", "aria-label": "a file in place of the text" });
    /** @type {Uint8Array | undefined} */
    let bytes;
    let fault = "";
    file.addEventListener("change", async () => {
        const chosen = file.files?.[0];
        bytes = undefined;
        fault = chosen ? "The file is still being read." : "";
        text.disabled = Boolean(chosen);
        if (!chosen)
            return;
        const read = await chosen.arrayBuffer().catch(() => undefined);
        if (file.files?.[0] !== chosen)
            return;
        bytes = read && new Uint8Array(read);
        fault = read ? "" : "The file can not be read.";
    });
    return {
        node: make("div", {}, text, file),
        read() {
            if (fault)
                throw new InputError(fault, file);
            return bytes ?? new TextEncoder().encode(text.value);
        }
    };
}

/** @returns {Control} */
function makeJson() {
    const node = make("textarea", {
        rows: "2",
        spellcheck: "false",
        placeholder: 'JSON, such as "text", 12, true, {"key": [1, 2]}; 12n is a BigInt'
    });
    return {
        node,
        read() {
            if (!node.value.trim())
                return omitted;
            try {
                return decode(node.value, makeListener);
            } catch (error) {
                throw new InputError(
                    `This is no JSON: ${/** @type {Error} */ (error).message}. Strings need "quotes".`,
                    node
                );
            }
        }
    };
}

/**
 * @param {Place} place
 * @returns {Control}
 */
function makeFunction({ object, member }) {
    const listener = makeListener(`${object.name}.${member.name}`);
    const node = make(
        "p",
        { class: "note", tabindex: "-1" },
        "A function that shows among the events what it is called with."
    );
    return { node, read: () => listener };
}

/**
 * Which of the page's listeners is to be removed.
 *
 * @param {Place} place
 * @returns {Control}
 */
function makeListenerChoice({ member, targetName }) {
    const node = make("select", {});
    const stranger = makeListener("removed");
    const present = () => active.filter((one) => one.remove === member && one.target.name === targetName());
    function refresh() {
        const labels = [...present().map((one) => one.label), "a function that is no listener"];
        fill(node, ...labels.map((label) => make("option", {}, label)));
        node.selectedIndex = Math.max(0, labels.length - 2);
    }
    listenersChanged.subscribe(refresh);
    refresh();
    return { node, read: () => present()[node.selectedIndex]?.listener ?? stranger };
}

/**
 * @param {readonly ApiField[]} fields
 * @param {Place} place
 * @returns {Control}
 */
function makeGroup(fields, place) {
    const controls = fields.map((field) => /** @type {const} */ ([field.name, makeField(field, place)]));
    const node = make("fieldset", {}, ...controls.map(([, { node: one }]) => one));
    return {
        node,
        read: () =>
            Object.fromEntries(
                controls.map(([name, control]) => [name, control.read()]).filter(([, value]) => value !== omitted)
            )
    };
}

/**
 * Rows that can be added and removed.
 *
 * @template Row
 * @param {string} what
 * @param {() => { node: HTMLElement, row: Row }} makeRow
 */
function makeRows(what, makeRow) {
    /** @type {Row[]} */
    const rows = [];
    const add = make(
        "button",
        { type: "button", class: "quiet", "data-action": "add-row" },
        icon("add"),
        `Add ${what}`
    );
    const node = make("div", { class: "list", role: "group" }, add);
    add.addEventListener("click", () => {
        const { node: content, row } = makeRow();
        const remove = make(
            "button",
            { type: "button", class: "quiet icon-only", "aria-label": `Remove ${what}` },
            icon("close")
        );
        const line = make("div", { class: "row" }, content, remove);
        rows.push(row);
        remove.addEventListener("click", () => {
            rows.splice(rows.indexOf(row), 1);
            line.remove();
            add.focus();
            node.dispatchEvent(new Event("input", { bubbles: true }));
        });
        add.before(line);
        /** @type {HTMLElement | null} */ (line.querySelector("input, textarea, select"))?.focus();
        node.dispatchEvent(new Event("input", { bubbles: true }));
    });
    return { node, rows };
}

/**
 * @param {ApiType} items
 * @param {Place} place
 * @returns {Control}
 */
function makeList(items, place) {
    const { node, rows } = makeRows("value", () => {
        const row = makeControl(items, place);
        row.node.setAttribute("aria-label", "value");
        return { node: row.node, row };
    });
    return { node, read: () => rows.map((row) => row.read()).filter((value) => value !== omitted) };
}

/**
 * @param {ApiType} values
 * @param {Place} place
 * @returns {Control}
 */
function makeMap(values, place) {
    const { node, rows } = makeRows("entry", () => {
        const key = make("input", {
            type: "text",
            class: "key",
            "aria-label": "key",
            placeholder: "key",
            spellcheck: "false"
        });
        const value = makeControl(values, place);
        value.node.setAttribute("aria-label", "value");
        return { node: make("div", { class: "entry" }, key, value.node), row: { key, value } };
    });
    return {
        node,
        read: () =>
            Object.fromEntries(
                rows.map(({ key, value }) => [key.value, value.read()]).filter(([, value]) => value !== omitted)
            )
    };
}
