// The page of a further window: small, dragged by its head, and able to speak with the explorer through `Event`.

import { fill, make } from "./dom.js";
import { followSkin } from "./skin.js";
import { returnedText } from "./values.js";

const HEAD = 44;
const { Event: Channel, Webview } = NovaExtension;
const outcome = make("p", { role: "status", class: "note", "data-role": "outcome" });

/**
 * A button whose action is shown with what it returns or fails with.
 *
 * @param {string} label
 * @param {() => unknown} action
 */
function button(label, action) {
    const click = () => show(label, action);
    return make("button", { type: "button", class: "secondary", "data-button": label, click }, label);
}

/**
 * @param {string} label
 * @param {() => unknown} action
 */
function show(label, action) {
    try {
        outcome.textContent = `${label}: ${returnedText(action())}`;
    } catch (error) {
        const { code, msg } = /** @type {NovaExtension.Failure} */ (error);
        outcome.textContent = `${label} failed with code ${code}: ${msg ?? error}`;
    }
}

/** The head of the page takes the place of a title bar. */
function setDragArea() {
    Webview.clearDragArea();
    return Webview.setDragArea({ x: 0, y: 0, w: window.innerWidth, h: HEAD });
}

const greet = () => Channel.dispatchEvent("explorer.hello", false, `hello from ${Webview.getID().data}`);
fill(
    document.body,
    make("header", {}, document.title),
    make(
        "main",
        {},
        make(
            "p",
            {},
            "Drag the window by its head. The explorer hears the greeting when it listens to ",
            make("code", {}, "explorer.hello"),
            " of ",
            make("code", {}, "Event"),
            "."
        ),
        make(
            "div",
            { class: "buttons" },
            button("Greet", greet),
            button("Size", () => Webview.getSize()),
            button("Hide", () => Webview.hide()),
            button("Close", () => Webview.destroy())
        ),
        outcome
    )
);
window.addEventListener("resize", () => show("Drag area", setDragArea));
show("Drag area", setDragArea);
followSkin();
show("Ready", () => Webview.pageReady());
