// The window panel: a page drives its own window, and those that it has opened.

import { call, handsChanged, rootTarget } from "./calls.js";
import { makeAreas } from "./areas.js";
import { makeFurtherWindows } from "./furtherwindows.js";
import { fill, icon, make } from "./dom.js";
import { makeSwitches } from "./objectview.js";
import { actionButton, inputRow, makeOutcome, numbers, panel, panelsView } from "./panels.js";
import { listenerPairs, memberNamed, objectNamed } from "./reference.js";
import { makeTargetChoice } from "./targetchoice.js";
import { outcomeText } from "./values.js";

/** @typedef {import("./panels.js").Act} Act */

/** Flags and attributes that are worth a try, by what Qt calls them. */
const FLAGS = {
    FramelessWindowHint: 0x800,
    WindowStaysOnTopHint: 0x40000,
    WindowStaysOnBottomHint: 0x4000000,
    WindowTitleHint: 0x1000,
    WindowSystemMenuHint: 0x2000,
    WindowMinimizeButtonHint: 0x4000,
    WindowMaximizeButtonHint: 0x8000,
    WindowCloseButtonHint: 0x8000000,
    WindowDoesNotAcceptFocus: 0x200000,
    WindowTransparentForInput: 0x80000,
    Tool: 0xb
};
const ATTRIBUTES = {
    WA_DeleteOnClose: 55,
    WA_ShowWithoutActivating: 98,
    WA_NativeWindow: 100,
    WA_TranslucentBackground: 120,
    WA_AcceptDrops: 78,
    WA_NoSystemBackground: 9,
    WA_TransparentForMouseEvents: 51
};
const FACTS = {
    getID: "Id",
    getSize: "Size",
    getGeometry: "Position",
    getScreenNumber: "Screen",
    isMaximize: "Maximised",
    isMinimize: "Minimised",
    isFullScreen: "Full screen"
};

export function makeWindowView() {
    const webview = objectNamed("Webview");
    const chosen = makeTargetChoice(webview);
    const { node: outcome, report } = makeOutcome();
    const facts = make("dl", { class: "facts" });
    const listening = make("div", {});
    const target = () => chosen.read() ?? rootTarget(webview);

    /** @type {Act} */
    const act = (name, ...given) => report(call(target(), memberNamed(webview, name), given));

    function readFacts() {
        const on = target();
        fill(
            facts,
            ...Object.entries(FACTS).map(([name, label]) => {
                const member = webview.members.find((one) => one.name === name);
                const made = member && call(on, member, []);
                return make(
                    "div",
                    { "data-fact": name, "data-state": made?.state },
                    make("dt", {}, label),
                    make("dd", {}, made && outcomeText(made))
                );
            })
        );
    }

    const showTarget = () => fill(listening, makeSwitches(target(), listenerPairs(webview)));

    chosen.node.addEventListener("change", () => {
        showTarget();
        readFacts();
    });
    handsChanged.subscribe(showTarget);
    showTarget();
    readFacts();
    return panelsView(
        "window",
        "Window",
        chosen.node,
        make(
            "div",
            { class: "card status-card" },
            facts,
            make(
                "button",
                { type: "button", class: "secondary", "data-action": "read", click: readFacts },
                icon("repeat"),
                "Read"
            )
        ),
        outcome,
        make(
            "div",
            { class: "panels" },
            placePanel(act),
            statePanel(act),
            flagsPanel(act),
            looksPanel(act),
            makeAreas(act, () => target().name),
            panel("Listeners", listening),
            makeFurtherWindows(report, (made) => {
                if (made.handedOut)
                    chosen.choose(made.handedOut);
                showTarget();
            })
        )
    );
}

/** @param {Act} act */
function placePanel(act) {
    const presets = [
        [900, 600],
        [1200, 800],
        [1600, 1000]
    ];
    return panel(
        "Size and place",
        inputRow("Move", { x: 80, y: 60 }, (values) => act("setGeometry", numbers(values))),
        inputRow("Resize", { w: 1200, h: 800 }, (values) => act("setSize", numbers(values))),
        make(
            "div",
            { class: "buttons" },
            ...presets.map(([w, h]) => actionButton(`${w} × ${h}`, () => act("setSize", { w, h }), "quiet"))
        ),
        inputRow("Set minimum", { minw: 640, minh: 400 }, (values) => act("setMinimumSize", numbers(values))),
        inputRow("Set maximum", { maxw: 4000, maxh: 3000 }, (values) => act("setMaximumSize", numbers(values)))
    );
}

/** @param {Act} act */
function statePanel(act) {
    /**
     * Nobody can press a button of a window that is not there.
     *
     * @param {string} member
     */
    const forAWhile = async (member) => {
        await act(member);
        setTimeout(() => act(member === "hide" ? "show" : "setRestore"), 2000);
    };
    return panel(
        "State",
        make(
            "div",
            { class: "buttons" },
            actionButton("Maximise", () => act("setMaximize")),
            actionButton("Full screen", () => act("setFullScreen")),
            actionButton("Restore", () => act("setRestore")),
            actionButton("Take focus", () => act("takeFocus")),
            actionButton("Minimise for 2 s", () => forAWhile("setMinimize")),
            actionButton("Hide for 2 s", () => forAWhile("hide")),
            actionButton("Show", () => act("show")),
            actionButton("Page is ready", () => act("pageReady"))
        ),
        // In a line of its own it stays under the mouse when its text grows.
        make("div", { class: "buttons" }, destroyButton(act))
    );
}

/**
 * Closes the window at the second press.
 *
 * @param {Act} act
 */
function destroyButton(act) {
    const button = actionButton("Destroy", press, "danger");
    let isArmed = false;

    function disarm() {
        isArmed = false;
        button.textContent = "Destroy";
    }

    function press() {
        if (isArmed) {
            disarm();
            act("destroy");
            return;
        }
        isArmed = true;
        button.textContent = "Press again to close the window";
    }

    button.addEventListener("blur", disarm);
    return button;
}

/** @param {Act} act */
function flagsPanel(act) {
    const switches = [
        ["Stay on top", "setEnableStayOnTop"],
        ["Modal", "setMode"],
        ["Resizeable", "setResizeable"],
        ["Drag enter", "setDragEnterEnable"],
        ["No scroll bars", "setDisableScrollBar"],
        ["No horizontal scroll bar", "setDisableXScrollBar"],
        ["No vertical scroll bar", "setDisableYScrollBar"]
    ];
    return panel(
        "Flags",
        ...switches.map(([label, member]) => {
            const box = make("input", {
                type: "checkbox",
                class: "switch",
                role: "switch",
                "data-switch": member,
                checked: member === "setResizeable"
            });
            box.addEventListener("change", () => act(member, box.checked));
            return make("label", { class: "switch-row" }, box, make("span", { class: "name" }, label));
        }),
        choiceRow("window flag", FLAGS, (flag, on) => act("setWindowFlag", { flag, on })),
        choiceRow("attribute", ATTRIBUTES, (attribute, on) => act("setAttribute", { attribute, on }))
    );
}

/**
 * @param {string} label
 * @param {Record<string, number>} choices
 * @param {(value: number, on: boolean) => unknown} set
 */
function choiceRow(label, choices, set) {
    const select = make(
        "select",
        { "aria-label": label },
        ...Object.keys(choices).map((name) => make("option", {}, name))
    );
    const setTo = (/** @type {boolean} */ on) => () => set(choices[select.value], on);
    return make(
        "div",
        { class: "input-row" },
        select,
        actionButton("On", setTo(true)),
        actionButton("Off", setTo(false))
    );
}

/** @param {Act} act */
function looksPanel(act) {
    return panel(
        "Title and colours",
        inputRow("Set title", { title: "NovaExtension explorer" }, ({ title }) => act("setWindowTitle", title)),
        inputRow("Set background", { r: 246, g: 247, b: 249 }, (values) =>
            act("setWindowBackgroundColor", numbers(values))
        ),
        inputRow("Set round fill", { fillColor: "#f6f7f9" }, (values) => act("setRoundFillColor", values))
    );
}
