// The log beside the page: the trace, the events, the calls made so far, and the objects in hand.

import { began, call, ended, handsChanged, inHand, letGo, promised } from "./calls.js";
import { copyButton, fill, icon, make, newId } from "./dom.js";
import { active, arrived, listenersChanged } from "./listeners.js";
import { arrivalLine, makeLog } from "./log.js";
import { pathOf } from "./reference.js";
import { scriptOf } from "./script.js";
import { callLine, clock, duration, oneLine, outcomeText } from "./values.js";

/** @param {Call} made */
function memberLink(made) {
    return make("a", { href: `#${pathOf(made.target.object, made.member)}`, title: callLine(made) }, callLine(made));
}

function makeTrace() {
    const log = makeLog("trace", "Each call that the page makes appears here, with its time and outcome.");
    /** @type {WeakMap<Call, HTMLElement>} */
    const lines = new WeakMap();

    /**
     * @param {Call} made
     * @param {string} kind
     */
    function makeLine(made, kind) {
        const line = make("li", {
            class: "line",
            "data-kind": kind,
            "data-state": made.state,
            "data-call": pathOf(made.target.object, made.member)
        });
        fill(line, ...content(made, kind));
        return line;
    }

    /**
     * @param {Call} made
     * @param {string} kind
     */
    const content = (made, kind) => [
        make("time", {}, clock(kind === "call" ? made.started : new Date())),
        make("span", { class: `dot ${made.state}`, title: made.state }),
        make("span", { class: "what" }, kind === "settled" ? "↳ " : "", memberLink(made)),
        make("span", { class: "outcome" }, outcomeText(made)),
        make("span", { class: "elapsed" }, made.state === "pending" ? "" : duration(made.elapsed))
    ];

    /** @param {Call} made */
    function update(made) {
        const line = lines.get(made);
        if (!line)
            return;
        line.dataset.state = made.state;
        fill(line, ...content(made, "call"));
    }

    began.subscribe((made) => {
        const line = makeLine(made, "call");
        lines.set(made, line);
        log.add(line);
    });
    promised.subscribe(update);
    ended.subscribe((made) => (made.promised ? log.add(makeLine(made, "settled")) : update(made)));
    arrived.subscribe(({ label, time, payload }) =>
        log.add(
            make(
                "li",
                { class: "line", "data-kind": "event", "data-state": "event" },
                make("time", {}, clock(time)),
                make("span", { class: "dot event" }),
                make("span", { class: "what" }, label),
                make("span", { class: "outcome" }, payload.map((value) => oneLine(value)).join(", "))
            )
        )
    );
    return log;
}

function makeEvents() {
    const log = makeLog(
        "events",
        "What listeners are called with appears here. Listeners are added on the page of an object."
    );
    arrived.subscribe((arrival) => log.add(arrivalLine(arrival)));
    const listening = make("p", { class: "note listening" });
    const refresh = () =>
        (listening.textContent = active.length ? `Listening: ${active.map(({ label }) => label).join(", ")}` : "");
    listenersChanged.subscribe(refresh);
    log.node.prepend(listening);
    return log;
}

/** @param {(past: Call) => void} edit */
function makeHistory(edit) {
    const log = makeLog("history", "Calls that were made, to be repeated, changed or copied as script.");
    began.subscribe((made) => {
        const { target, member, given } = made;
        const state = make("span", { class: "dot pending" });
        const line = make(
            "li",
            { class: "past", "data-call": pathOf(target.object, member) },
            state,
            memberLink(made),
            make(
                "span",
                { class: "tools" },
                button("repeat", "Repeat", () => call(target, member, given)),
                button("edit", "Change", () => edit(made)),
                copyButton("Script", () => scriptOf(target, member, given))
            )
        );
        made.ended.then(() => (state.className = `dot ${made.state}`));
        log.add(line);
    });
    return log;
}

/**
 * @param {"repeat" | "edit" | "close"} image
 * @param {string} label
 * @param {() => void} click
 */
function button(image, label, click) {
    return make(
        "button",
        { type: "button", class: "quiet", "data-action": image, click },
        icon(image),
        make("span", { class: "label" }, label)
    );
}

function makeHands() {
    const node = make("ul", { class: "hands" });
    const nothing = make(
        "p",
        { class: "note empty-log" },
        "Objects that calls have handed out appear here. Their members can be called."
    );
    const refresh = () => {
        nothing.hidden = inHand.length > 0;
        fill(
            node,
            ...inHand.map((target) =>
                make(
                    "li",
                    { "data-hand": target.name },
                    make("code", {}, target.name),
                    make("a", { href: `#${target.object.name}` }, target.object.name),
                    make("span", { class: "note" }, target.origin && callLine(target.origin)),
                    button("close", "Let go", () => letGo(target))
                )
            )
        );
    };
    handsChanged.subscribe(refresh);
    refresh();
    return { node: make("div", { class: "log-place" }, node, nothing), tools: [] };
}

/**
 * @param {HTMLElement} root
 * @param {(past: Call) => void} edit shows a past call in its form
 */
export function makeDock(root, edit) {
    const tabs = [
        ["Trace", makeTrace()],
        ["Events", makeEvents()],
        ["History", makeHistory(edit)],
        ["In hand", makeHands()]
    ].map(([label, content]) =>
        makeTab(/** @type {string} */ (label), /** @type {{ node: HTMLElement, tools: HTMLElement[] }} */ (content))
    );
    const list = make("div", { class: "tabs", role: "tablist", "aria-label": "Log" }, ...tabs.map((tab) => tab.button));
    const fold = make(
        "button",
        { type: "button", class: "quiet", "data-action": "fold", "aria-expanded": "true" },
        "Hide"
    );

    /** @param {number} index */
    function show(index) {
        tabs.forEach((tab, at) => {
            tab.button.setAttribute("aria-selected", String(at === index));
            tab.button.tabIndex = at === index ? 0 : -1;
            tab.panel.hidden = at !== index;
        });
    }

    /** @param {boolean} isFolded */
    function setFolded(isFolded) {
        root.classList.toggle("folded", isFolded);
        fold.setAttribute("aria-expanded", String(!isFolded));
        fold.textContent = isFolded ? "Show" : "Hide";
    }

    tabs.forEach((tab, index) =>
        tab.button.addEventListener("click", () => {
            show(index);
            setFolded(false);
        })
    );
    fold.addEventListener("click", () => setFolded(!root.classList.contains("folded")));
    list.addEventListener("keydown", (event) => {
        const at = tabs.findIndex((tab) => tab.button.tabIndex === 0);
        const to = { ArrowRight: at + 1, ArrowLeft: at - 1, Home: 0, End: tabs.length - 1 }[event.key];
        if (to === undefined)
            return;
        event.preventDefault();
        show((to + tabs.length) % tabs.length);
        tabs[(to + tabs.length) % tabs.length].button.focus();
    });
    show(0);
    fill(root, make("div", { class: "dock-head" }, list, fold), ...tabs.map((tab) => tab.panel));
    return { enter: () => tabs.find((tab) => tab.button.tabIndex === 0)?.button.focus() };
}

/**
 * @param {string} label
 * @param {{ node: HTMLElement, tools: HTMLElement[] }} content
 */
function makeTab(label, content) {
    const [id, panelId] = [newId(), newId()];
    return {
        button: make(
            "button",
            {
                type: "button",
                role: "tab",
                id,
                "aria-controls": panelId,
                "data-tab": label.toLowerCase().replace(" ", "-")
            },
            label
        ),
        panel: make(
            "div",
            { role: "tabpanel", id: panelId, "aria-labelledby": id, class: "panel" },
            content.tools.length > 0 && make("div", { class: "tools-line" }, ...content.tools),
            content.node
        )
    };
}
