// Opens further windows and finds them again. The identifier of a view names its page: "dialog" is dialog.html.

import { call, targetsOf } from "./calls.js";
import { make } from "./dom.js";
import { inputRow, numbers, panel, smallField } from "./panels.js";
import { memberNamed, objectNamed } from "./reference.js";

/** The kinds of windows, and the page for each. */
const KINDS = { Dialog: "dialog", Popup: "popup", Tab: "tab", TestWebWidget: "test" };
/** What is ticked at first. */
const OPTIONS = { isShow: true, hasParent: false, modal: false, allowResize: true };

/**
 * @param {import("./panels.js").Report} report
 * @param {(made: Call) => void} choose has the panel drive the window that was handed out
 */
export function makeFurtherWindows(report, choose) {
    const manager = objectNamed("WebviewMgr");
    const [root] = targetsOf(manager);

    /**
     * @param {string} name
     * @param {unknown} given
     */
    async function manage(name, given) {
        choose(await report(call(root, memberNamed(manager, name), [given])));
    }

    const kind = make("select", { name: "windowType" }, ...Object.keys(KINDS).map((name) => make("option", {}, name)));
    const boxes = Object.entries(OPTIONS).map(([name, checked]) => make("input", { type: "checkbox", name, checked }));
    const isOn = (/** @type {string} */ name) => boxes.some((box) => box.name === name && box.checked);
    const create = inputRow("Open", { id: KINDS.Dialog, x: 120, y: 120, width: 480, height: 320 }, ({ id, ...geo }) =>
        manage("create", {
            id,
            windowType: kind.value,
            hasParent: isOn("hasParent"),
            isShow: isOn("isShow"),
            geo: numbers(geo),
            attrs: { modal: isOn("modal"), allowResize: isOn("allowResize") }
        })
    );
    const find = inputRow("Find", { id: KINDS.Dialog }, ({ id }) => manage("getWebview", id));
    kind.addEventListener("change", () => {
        for (const id of [create, find].map((row) => row.querySelector("[name=id]")))
            /** @type {HTMLInputElement} */ (id).value = Object.values(KINDS)[kind.selectedIndex];
    });
    return panel(
        "Further windows",
        make(
            "div",
            { class: "buttons" },
            smallField("kind", kind),
            ...boxes.map((box) => make("label", { class: "check" }, box, box.name))
        ),
        create,
        find
    );
}
