// What views and their windows say, on no display: options, refusals, bounds, listeners.
const { Event, Webview, WebviewMgr } = NovaExtension;
/** @type {any} Arguments are of any type here. */
const manager = WebviewMgr;
let made = 0;
/** A view of its own. */
const view = (/** @type {object} */ options = {}) => manager.create({ id: `view ${++made}`, ...options });
/** What a member answers, by its name. */
const data = (/** @type {any} */ of, /** @type {string} */ member, /** @type {unknown[]} */ ...args) => call(of, member, ...args).data;
const turn = () => new Promise((resolve) => { setTimeout(resolve, 0); });
const wrong = refusal(1, "wrong parameters.");
const noShell = refusal(3, "empty webshellwidget");
const noWidget = refusal(3, "empty webwidget");
const FARTHEST = 32767;

await check([
    ["a page without a window", () => Webview.getSize(), noWidget],
    ["and without a shell", () => Webview.setMaximize(), noShell],
    ["and its listeners", () => Webview.addHideListener(() => 0), noShell],

    // What is made.
    ["a dialog is not shown", () => [data(view(), "isFullScreen"), data(WebviewMgr.getWebview("view 1"), "getID")], [false, "view 1"]],
    ["size and place", () => { const shown = view({ geo: { x: 7, y: 9, width: 40, height: 30 } }); return [data(shown, "getSize"), data(shown, "getGeometry")]; },
        [{ w: 40, h: 30 }, { x: 7, y: 9 }]],
    ["no place without x", () => data(view({ geo: { x: 0, y: 10, width: 40, height: 30 } }), "getGeometry"), { x: 0, y: 0 }],
    ["a width alone", () => data(view({ geo: { width: 41 } }), "getSize").w, 41],
    ["sizes have an end", () => data(view({ geo: { width: 2147483647, height: -5 } }), "getSize"), { w: 16384, h: 0 }],
    ["each kind", () => ["Dialog", "Popup", "Tab", "TestWebWidget"].map((windowType) => `${view({ windowType })}`),
        Array(4).fill("[object NovaExtension.Webview]")],
    ["no identifier", () => manager.create(), refusal(1, "empty view id")],
    ["an empty one", () => manager.create({ id: "" }), refusal(1, "empty view id")],
    ["one of another type", () => manager.create({ id: 5 }), wrong],
    ...["Dialog", "Tab"].map((windowType) => [`one that there is: ${windowType}`, () => manager.create({ id: "view 1", windowType }),
        refusal(3, "create web widget fail!")]),
    ["a kind in small letters", () => view({ windowType: "tab" }), refusal(3, "Web Widget Class Not Registered!")],
    ["no such parent", () => view({ hasParent: true, parentName: "None" }), refusal(3, "Invalid Given Parent Widget")],
    ["a tab needs none", () => `${view({ windowType: "Tab", hasParent: true, parentName: "None" })}`, "[object NovaExtension.Webview]"],
    ...[{ attrs: 5 }, { attrs: { modal: "yes" } }, { geo: { x: 1.5 } }, { isShow: 1 }, { windowType: {} }].map(
        (options) => [`wrong: ${show(options)}`, () => view(options), wrong]),
    ["a view that is not there", () => WebviewMgr.getWebview("none"), refusal(3, "empty pBrowser")],
    ["of no name", () => WebviewMgr.getWebview(""), refusal(3, "empty view id")],
    ["of no string", () => call(WebviewMgr, "getWebview", 5), wrong],
]);

const shown = view({ isShow: true, geo: { width: 50, height: 40 } });
await check([
    ...[["setSize", { w: 1 }], ["setSize", { w: 1e10, h: 1 }], ["setSize", null], ["setGeometry", { x: NaN, y: 1 }], ["setMinimumSize", { minw: 1 }],
        ["setMaximumSize", { maxh: 1 }], ["setMinimumWidth", "5"], ["setMinimumWidth"], ["setMaximumHeight", NaN], ["setMaximumWidth", Infinity],
        ["setDragArea", { x: 1, y: 1, w: 1 }], ["setWindowFlags", [1, "x"]], ["setWindowFlags", 1], ["setWindowFlags", [0x40]], ["setWindowFlags", [-1]],
        ["setWindowFlag", { flag: 1 }], ["setWindowFlag", { flag: 0x11, on: true }], ["setWindowFlag", { flag: 1, on: false }],
        ["setAttribute", { on: true }], ["setAttribute", { attribute: 60, on: false }], ["setAttribute", { attribute: -1, on: true }],
        ["setAttribute", { attribute: 2147483647, on: true }], ["setWindowBackgroundColor", { r: 256, g: 0, b: 0, kdColorName: "window" }],
        ["setWindowBackgroundColor", { r: 0, g: -1, b: 0 }], ["setWindowBackgroundColor", { r: 0, g: 0 }], ["invokeGeneralMethod"], ["invokeGeneralMethodAsync", { funcParam: 1 }],
        ["addShowListener"], ["addShowListener", {}], ["removeShowListener"], ["removeShowListener", null],
    ].map(([member, ...args]) => [`${member}(${show(args)})`, () => call(shown, /** @type {string} */ (member), ...args), wrong]),
    ["no flags", () => shown.setWindowFlags([]), refusal(1, "missing required parameters.")],
    ["an own shell needs no bit of a window", () => data(view(), "setWindowFlag", { flag: 0x800, on: false }), undefined],
    ["limits hold", () => { shown.setMinimumSize({ minw: 20, minh: 20 }); shown.setMaximumSize({ maxw: 60, maxh: 16777215 }); shown.setSize({ w: 500, h: 1 }); return data(shown, "getSize"); },
        { w: 60, h: 20 }],
    ["the largest limit is none", () => { shown.setMaximumWidth(1e300); shown.setMinimumHeight(-5); shown.setSize({ w: 500, h: 10 }); return data(shown, "getSize"); },
        { w: 500, h: 10 }],
    ["places have an end", () => { shown.setGeometry({ x: 2147483647, y: -2147483648 }); return data(shown, "getGeometry"); }, { x: FARTHEST, y: -FARTHEST }],
    ["a colour of the theme", () => [data(shown, "setWindowBackgroundColor", { r: 0, g: 0, b: 0, kdColorName: "accent" }), data(shown, "setRoundFillColor", { fillColor: "none such" })],
        [true, true]],
    ["a signal is no general method", () => data(shown, "invokeGeneralMethod", { funcName: "sigWebviewEvent", funcParam: 1 }), false],
    ["nor is a slot of Qt's", () => data(shown, "invokeGeneralMethod", { funcName: "close()" }), false],
    ["nor later", () => shown.invokeGeneralMethodAsync({ funcName: "deleteLater" }), refusal(3, "wrong parameters.")],
    ["there is no screen there", () => data(shown, "getScreenNumber"), -1],
]);

/** Listens to all that happens to a view. */
function follow(/** @type {any} */ followed) {
    /** @type {unknown[][]} */
    const notes = [];
    for (const event of ["Hide", "Show", "Close", "Destroy", "WindowActivateState", "Resize"])
        followed[`add${event}Listener`]((/** @type {unknown[]} */ ...payload) => notes.push([event, ...payload]));
    return notes;
}
const followed = view({ geo: { width: 50, height: 40 } });
const notes = follow(followed);
const heard = async (/** @type {() => unknown} */ action) => { action(); await turn(); await turn(); return notes.splice(0).filter(([event]) => event !== "WindowActivateState"); };
const never = () => { throw new Error("a removed listener was called"); };
await check([
    ["shown", () => heard(() => followed.show()), [["Resize", { w: 50, h: 40 }, { w: 0, h: 0 }], ["Show"]]],
    ["resized", () => heard(() => followed.setSize({ w: 60, h: 40 })), [["Resize", { w: 60, h: 40 }, { w: 50, h: 40 }]]],
    ["flags change", () => heard(() => followed.setEnableStayOnTop(true)), [["Hide"], ["Show"]]],
    ["hidden, and a listener less", () => heard(() => { followed.addHideListener(never); followed.removeHideListener(never); followed.hide(); }), [["Hide"]]],
    ["closed for good", () => heard(() => { followed.show(); followed.destroy(); }), [["Show"], ["Close"], ["Hide"], ["Destroy"]]],
    ["no shell then", () => followed.hide(), noShell],
    ["and no view", () => followed.getID(), noWidget],
    ["the identifier is free again", async () => {
        const again = () => manager.create({ id: "again" });
        again().destroy();
        await turn();
        await turn();
        return data(again(), "getID");
    }, "again"],
]);
exit(failures ? 1 : 0);
