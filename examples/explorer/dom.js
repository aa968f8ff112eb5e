// Elements, made by script only: nothing of what is shown is ever read as markup.

/**
 * Makes an element. An attribute that is true is empty, one that is false or undefined is left out, a function is a
 * listener: `{ class: "pill", hidden: true, click: call }`.
 *
 * @template {keyof HTMLElementTagNameMap} Tag
 * @param {Tag} tag
 * @param {Record<string, unknown>} [attributes]
 * @param {...(Node | string | null | undefined | false)} children
 * @returns {HTMLElementTagNameMap[Tag]}
 */
export function make(tag, attributes = {}, ...children) {
    const node = document.createElement(tag);
    for (const [name, value] of Object.entries(attributes)) {
        if (typeof value === "function")
            node.addEventListener(name, /** @type {EventListener} */ (value));
        else if (value !== undefined && value !== false)
            node.setAttribute(name, value === true ? "" : String(value));
    }
    fill(node, ...children);
    return node;
}

/**
 * Puts these in the place of an element's children.
 *
 * @param {Element} node
 * @param {...(Node | string | null | undefined | false)} children
 */
export function fill(node, ...children) {
    node.replaceChildren(...children.filter(isShown));
}

/**
 * @param {Node | string | null | undefined | false} child
 * @returns {child is Node | string}
 */
function isShown(child) {
    return child !== null && child !== undefined && child !== false && child !== "";
}

/**
 * The element of the page with an id.
 *
 * @param {string} id
 * @returns {HTMLElement}
 */
export function byId(id) {
    const node = document.getElementById(id);
    if (!node)
        throw new Error(`the page has no #${id}`);
    return node;
}

/**
 * Text in which `code` is code.
 *
 * @param {string} text
 */
export function prose(text) {
    return text.split(/`([^`]+)`/).map((part, index) => (index % 2 ? make("code", {}, part) : part));
}

/** @type {Record<string, string>} */
const ICONS = {
    copy: "M5.5 5.5v-3h8v8h-3M2.5 5.5h8v8h-8z",
    play: "M4.5 2.8v10.4L13 8z",
    repeat: "M3 8a5 5 0 0 1 8.8-3.2L13 6M13 2.5V6H9.5M13 8a5 5 0 0 1-8.8 3.2L3 10M3 13.5V10h3.5",
    close: "M4 4l8 8M12 4l-8 8",
    edit: "M9.8 3.4l2.8 2.8L6 12.8l-3.4.6.6-3.4zM8.6 4.6l2.8 2.8",
    add: "M8 3v10M3 8h10"
};

/**
 * @param {keyof typeof ICONS} name
 */
export function icon(name) {
    const space = "http://www.w3.org/2000/svg";
    const svg = document.createElementNS(space, "svg");
    svg.setAttribute("viewBox", "0 0 16 16");
    svg.setAttribute("class", "icon");
    svg.setAttribute("aria-hidden", "true");
    const path = document.createElementNS(space, "path");
    path.setAttribute("d", ICONS[name]);
    svg.append(path);
    return svg;
}

let ids = 0;

/** An id that no other element of the page has. */
export function newId() {
    return `id${++ids}`;
}

/**
 * What an input suggests, which names it as its `list`.
 *
 * @param {readonly string[]} values
 */
export function suggestions(values) {
    return make("datalist", { id: newId() }, ...values.map((value) => make("option", { value })));
}

/**
 * Copies text, and says on the button whether that went well.
 *
 * @param {HTMLButtonElement} button
 * @param {string} text
 */
export function copyFrom(button, text) {
    const area = make("textarea", { class: "offscreen", "aria-hidden": "true" });
    area.value = text;
    document.body.append(area);
    area.select();
    const copied = document.execCommand("copy"); // navigator.clipboard asks for a permission that a view may not grant
    area.remove();
    button.focus();
    button.dataset.copied = String(copied);
    const label = button.querySelector(".label");
    const before = label?.textContent ?? "";
    if (label && !before.startsWith("Copied") && !before.startsWith("Not copied")) {
        label.textContent = copied ? "Copied" : "Not copied";
        setTimeout(() => (label.textContent = before), 1500);
    }
}

/**
 * @param {string} label
 * @param {() => string} text
 */
export function copyButton(label, text) {
    const button = make(
        "button",
        { type: "button", class: "quiet", "data-action": "copy" },
        icon("copy"),
        make("span", { class: "label" }, label)
    );
    button.addEventListener("click", () => copyFrom(button, text()));
    return button;
}
