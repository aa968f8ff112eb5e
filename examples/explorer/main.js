// Puts the explorer together: what is shown is what the address names, "#FileSystem.copy".

import { call, calls, inHand, isConnected, targetsOf } from "./calls.js";
import { makeDock } from "./dock.js";
import { byId, fill, make } from "./dom.js";
import { active } from "./listeners.js";
import { makeMemberView } from "./memberview.js";
import { makeHomeView, makeObjectView } from "./objectview.js";
import { find, isAllBuilt, isHandedOut, objects, pathOf } from "./reference.js";
import { makePanelView } from "./panelview.js";
import { makePluginView } from "./pluginview.js";
import { followSkin } from "./skin.js";
import { makeSkinChoice } from "./skinchoice.js";
import { makeSkinView } from "./skinview.js";
import { makeTree } from "./tree.js";
import { makeWindowView } from "./windowview.js";

/** @typedef {{ node: HTMLElement, submit?: () => void, edit?: (past: Call) => void }} View */

/** @type {Record<string, () => HTMLElement>} */
const PLACES = {
    "": makeHomeView,
    window: makeWindowView,
    skin: makeSkinView,
    plugins: makePluginView,
    panels: makePanelView
};

const page = byId("page");
const search = /** @type {HTMLInputElement} */ (byId("search"));
const builtOnly = /** @type {HTMLInputElement} */ (byId("built-only"));
/** @type {Map<string, View>} What was typed into a form stays there. */
const views = new Map();
/** @type {View | undefined} */
let current;
/** The path of what is shown. */
let shown = "";
/** What the address names. It may lag behind. */
let address = "";

/**
 * @param {string} path
 * @returns {View}
 */
function makeView(path) {
    if (Object.keys(PLACES).includes(path))
        return { node: PLACES[path]() };
    const found = find(path);
    if (!found)
        return {
            node: make(
                "article",
                { class: "view", "data-view": "none" },
                make("h1", { tabindex: "-1" }, "There is no such member"),
                make("p", { class: "lead" }, "The reference has nothing of the name ", make("code", {}, path), ".")
            )
        };
    return found.member ? makeMemberView(found.object, found.member) : { node: makeObjectView(found.object) };
}

/** @param {string} path */
function viewOf(path) {
    const view = views.get(path) ?? makeView(path);
    views.set(path, view);
    return view;
}

const addressed = () => decodeURIComponent(location.hash.slice(1));

/** @param {string} path */
function show(path) {
    shown = path;
    const view = viewOf(path);
    if (view !== current) {
        current = view;
        fill(page, view.node);
        page.scrollTop = 0;
    }
    tree.select(path);
    document.title = `${path || "NovaExtension"} · explorer`;
    const place = path && Object.keys(PLACES).includes(path) ? path : "reference";
    for (const link of document.querySelectorAll("[data-place]"))
        link.toggleAttribute("aria-current", link.getAttribute("data-place") === place);
}

/** @param {string} path */
function open(path) {
    if (path === shown) {
        focusPage();
        return;
    }
    show(path); // at once: the engine ignores changes of the address when there are too many
    location.hash = path;
    address = addressed();
}

/** Moves the focus to where one goes on: the first field of the form, or its button. */
function focusPage() {
    const controls = [...page.querySelectorAll(".fields input, .fields textarea, .fields select, [data-action=call]")];
    const first = controls.find((node) => /** @type {HTMLElement} */ (node).offsetParent) ?? page.querySelector("h1");
    /** @type {HTMLElement | null} */ (first)?.focus();
}

/** @param {Call} past */
function edit(past) {
    const path = pathOf(past.target.object, past.member);
    viewOf(path).edit?.(past);
    open(path);
}

const tree = makeTree(byId("tree"), open);
const dock = makeDock(byId("dock"), edit);

function narrow() {
    const shown = tree.filter(search.value, builtOnly.checked);
    byId("found").textContent = search.value || builtOnly.checked ? `${shown} found` : "";
}

/** @param {KeyboardEvent} event */
function searchByKey(event) {
    if (event.key === "ArrowDown") {
        event.preventDefault();
        tree.enter();
    } else if (event.key === "Enter" && tree.first()) {
        open(tree.first());
    } else if (event.key === "Escape" && search.value) {
        event.stopPropagation();
        search.value = "";
        narrow();
    }
}

/** @param {KeyboardEvent} event */
function goByKey(event) {
    const isTyping =
        event.target instanceof Element && event.target.matches("input:not([type=checkbox]), textarea, select");
    /** @type {Record<string, () => unknown>} */
    const ways = {
        "Alt+1": tree.enter,
        "Alt+2": focusPage,
        "Alt+3": dock.enter,
        "Ctrl+Enter": () => current?.submit?.(),
        Escape: tree.enter
    };
    const way =
        ways[`${event.ctrlKey ? "Ctrl+" : ""}${event.altKey ? "Alt+" : ""}${event.key}`] ??
        (event.key === "/" && !isTyping ? () => search.focus() : undefined);
    if (!way || event.defaultPrevented)
        return;
    event.preventDefault();
    way();
}

/** @param {string} text none hides it */
function showNotice(text) {
    byId("notice").hidden = !text;
    byId("notice").textContent = text;
}

function showConnection() {
    const place = byId("connection");
    place.dataset.state = isConnected() ? "ok" : "missing";
    place.textContent = isConnected() ? "Connected" : "No NovaExtension";
    if (!isConnected())
        showNotice(
            "This page has no NovaExtension, so nothing can be called. Open it with: novahost open examples/explorer/index.html"
        );
}

/**
 * Calls a member by its path, as a form does: `explorer.call("FileSystem.exists", "/tmp")`. Members of objects in hand
 * are called on the newest.
 *
 * @param {string} path
 * @param {...unknown} given
 */
function callByPath(path, ...given) {
    const found = find(path);
    const targets = found ? targetsOf(found.object) : [];
    const target = found && isHandedOut(found.object) ? targets[targets.length - 1] : targets[0];
    if (!found?.member || !target)
        throw new Error(`there is nothing to call at ${path}`);
    return call(target, found.member, given).ended;
}

window.addEventListener("error", (event) =>
    showNotice(`The explorer has failed: ${event.message} (${event.filename}:${event.lineno})`)
);
window.addEventListener("unhandledrejection", (event) => showNotice(`The explorer has failed: ${event.reason}`));
window.addEventListener("hashchange", () => {
    if (addressed() === address)
        return;
    address = addressed();
    show(address);
    if (document.activeElement === document.body)
        /** @type {HTMLElement | null} */ (page.querySelector("h1"))?.focus();
});
document.addEventListener("keydown", goByKey);
search.addEventListener("keydown", searchByKey);
search.addEventListener("input", narrow);
byId("built-choice").hidden = objects.every(isAllBuilt);
builtOnly.addEventListener("change", narrow);
document.querySelector("[data-action=skip]")?.addEventListener("click", (event) => {
    event.preventDefault(); // the address names what is shown
    focusPage();
});
window.explorer = { objects, calls, inHand, listeners: active, open, call: callByPath };
showConnection();
if (followSkin())
    makeSkinChoice(byId("skin-choice"), showNotice);
address = addressed();
show(address);
if (isConnected())
    callByPath("Webview.pageReady");
