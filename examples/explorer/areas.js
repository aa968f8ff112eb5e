// Drag areas: drawn over the page with the mouse, or given by numbers.

import { fill, make } from "./dom.js";
import { actionButton, inputRow, numbers, panel } from "./panels.js";

/** @typedef {{ x: number, y: number, w: number, h: number }} Area */

const OWN_WINDOW = "NovaExtension.Webview";
const KINDS = /** @type {const} */ ({
    drag: { label: "drag area", set: "setDragArea", clear: "clearDragArea" },
    black: { label: "excluded area", set: "setBlackDragArea", clear: "clearBlackDragArea" }
});

/**
 * @param {HTMLElement} node
 * @param {Area} area
 */
function place(node, { x, y, w, h }) {
    Object.assign(node.style, { left: `${x}px`, top: `${y}px`, width: `${w}px`, height: `${h}px` });
}

/**
 * The rectangle between two points.
 *
 * @param {MouseEvent} from
 * @param {MouseEvent} to
 * @returns {Area}
 */
function between(from, to) {
    return {
        x: Math.min(from.clientX, to.clientX),
        y: Math.min(from.clientY, to.clientY),
        w: Math.abs(from.clientX - to.clientX),
        h: Math.abs(from.clientY - to.clientY)
    };
}

/**
 * Has the user draw a rectangle over the page; Escape ends it.
 *
 * @param {keyof typeof KINDS} kind
 * @param {(area: Area) => void} drawn
 */
function draw(kind, drawn) {
    const shape = make("div", { class: `area ${kind}`, hidden: true });
    const sheet = make(
        "div",
        { class: "sheet", tabindex: "-1", "data-role": "sheet" },
        make("p", {}, `Draw the ${KINDS[kind].label} with the mouse. Esc cancels.`),
        shape
    );
    const before = document.activeElement;
    /** @type {PointerEvent | undefined} */
    let start;

    function end() {
        sheet.remove();
        if (before instanceof HTMLElement)
            before.focus();
    }

    sheet.addEventListener("pointerdown", (event) => {
        start = event;
        sheet.setPointerCapture(event.pointerId);
    });
    sheet.addEventListener("pointermove", (event) => {
        if (!start)
            return;
        shape.hidden = false;
        place(shape, between(start, event));
    });
    sheet.addEventListener("pointerup", (event) => {
        const area = start && between(start, event);
        end();
        if (area && area.w > 2 && area.h > 2)
            drawn(area);
    });
    sheet.addEventListener("keydown", (event) => {
        if (event.key !== "Escape")
            return;
        event.preventDefault();
        end();
    });
    document.body.append(sheet);
    sheet.focus();
}

/** @typedef {{ kind: keyof typeof KINDS, area: Area, window: string }} Marked */

/**
 * @param {import("./panels.js").Act} act
 * @param {() => string} windowName the window whose areas are set
 */
export function makeAreas(act, windowName) {
    const layer = make("div", { class: "areas", "aria-hidden": "true" });
    const list = make("ul", { class: "area-list" });
    /** @type {Marked[]} */
    let marked = [];
    document.body.append(layer);

    function render() {
        const own = marked.filter(({ window }) => window === OWN_WINDOW); // those of other windows are not on this page
        fill(
            layer,
            ...own.map(({ kind, area }) => {
                const shape = make("div", { class: `area ${kind}` }, make("span", {}, KINDS[kind].label));
                place(shape, area);
                return shape;
            })
        );
        fill(
            list,
            ...marked.map(({ kind, area: { x, y, w, h }, window }) =>
                make(
                    "li",
                    { "data-area": kind },
                    make("span", { class: `swatch ${kind}` }),
                    `${KINDS[kind].label} ${w} × ${h} at ${x}, ${y}${window === OWN_WINDOW ? "" : ` of ${window}`}`
                )
            )
        );
    }

    /**
     * @param {keyof typeof KINDS} kind
     * @param {Area} area
     */
    async function add(kind, area) {
        const window = windowName();
        const { state } = await act(KINDS[kind].set, area);
        if (state === "ok")
            marked.push({ kind, area, window });
        render();
    }

    /** @param {keyof typeof KINDS} kind */
    async function clear(kind) {
        const window = windowName();
        const { state } = await act(KINDS[kind].clear);
        if (state === "ok")
            marked = marked.filter((one) => one.kind !== kind || one.window !== window);
        render();
    }

    /** @param {keyof typeof KINDS} kind */
    const byNumbers = (kind) =>
        inputRow(`Add ${KINDS[kind].label}`, { x: 0, y: 0, w: 300, h: 48 }, (values) =>
            add(kind, /** @type {Area} */ (numbers(values)))
        );
    return panel(
        "Drag areas",
        make(
            "p",
            { class: "note" },
            "Where the window can be dragged by the page. What is drawn stays visible until it is cleared."
        ),
        make(
            "div",
            { class: "buttons" },
            actionButton("Draw drag area", () => draw("drag", (area) => add("drag", area)), "primary"),
            actionButton("Draw excluded area", () => draw("black", (area) => add("black", area)))
        ),
        byNumbers("drag"),
        byNumbers("black"),
        list,
        make(
            "div",
            { class: "buttons" },
            actionButton("Clear drag areas", () => clear("drag"), "quiet"),
            actionButton("Clear excluded areas", () => clear("black"), "quiet")
        )
    );
}
