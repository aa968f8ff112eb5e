// Windows of a page on a display, with a user: what this script can not do itself windows_test.py does, a step at a time.
const { FileSystem, Webview, WebviewMgr } = NovaExtension;
const [, , directory = "", factor = "1"] = process.argv;
const scale = Number(factor);
const PATIENCE = 60000; // milliseconds

const data = (/** @type {any} */ of, /** @type {string} */ member, /** @type {unknown[]} */ ...args) => call(of, member, ...args).data;
/** @returns {Promise<any>} What `find` finds when it is what was expected, or what it finds in the end. */
async function settled(/** @type {() => any} */ find, /** @type {unknown} */ expected) {
    const end = Date.now() + PATIENCE;
    while (!same(find(), expected) && Date.now() < end)
        await new Promise((resolve) => { setTimeout(resolve, 20); });
    return find();
}
let steps = 0;
/** Has the user do something, and waits until it has been done. */
async function user(/** @type {string} */ step, /** @type {unknown[]} */ ...args) {
    const done = `${directory}/step ${++steps}`;
    console.log(JSON.stringify([done, step, ...args]));
    if (!await settled(() => FileSystem.exists(done).data, true))
        throw new Error(`${step} was not done`);
}
/** Rows of one window that become true after an action. */
const becomes = (/** @type {string} */ name, /** @type {() => unknown} */ action, /** @type {() => unknown} */ find, /** @type {unknown} */ expected) =>
    [name, async () => { await action(); return settled(find, expected); }, expected];
const size = (/** @type {any} */ of = Webview) => data(of, "getSize");
const place = (/** @type {any} */ of = Webview) => data(of, "getGeometry");
const physical = (/** @type {number} */ length) => Math.ceil(length * scale);
const screen = { w: Math.trunc(1280 / scale), h: Math.trunc(960 / scale) };

/** @type {unknown[][]} */
const notes = [];
for (const event of ["Hide", "Show", "Close", "WindowActivateState", "DragEnter", "WebviewEvent"])
    /** @type {any} */ (Webview)[`add${event}Listener`]((/** @type {unknown[]} */ ...payload) => notes.push([event, ...payload]));
const noted = (/** @type {unknown[]} */ ...note) => notes.some((one) => same(one, note));
/** Resolves when an event is heard that was not before `action`. */
const hears = (/** @type {string} */ name, /** @type {() => unknown} */ action, /** @type {unknown[]} */ ...note) =>
    [name, async () => { await user("settle"); notes.length = 0; await action(); return settled(() => noted(...note), true); }, true];
/** Changes flags, for which the window goes and comes back. */
const flag = async (/** @type {() => unknown} */ action) => { notes.length = 0; action(); await settled(() => noted("Show"), true); await user("focus", "page"); };
const raised = (/** @type {boolean} */ is) => user("state", "page", "_NET_WM_STATE_ABOVE", is);

Webview.setWindowTitle("page");
await check([
    ["its own view", () => Webview.getID().data, "browser-1"],
    becomes("shown", () => user("wait", "page"), () => data(Webview, "isMinimize"), false),
    becomes("size", () => Webview.setSize({ w: 301, h: 201 }), size, { w: 301, h: 201 }),
    becomes("place", () => Webview.setGeometry({ x: 101, y: 51 }), () => [place(), size()], [{ x: 101, y: 51 }, { w: 301, h: 201 }]),
    becomes("maximised", () => Webview.setMaximize(), () => [data(Webview, "isMaximize"), size().w], [true, screen.w]),
    becomes("restored", () => Webview.setRestore(), () => [data(Webview, "isMaximize"), size()], [false, { w: 301, h: 201 }]),
    becomes("full screen", () => Webview.setFullScreen(), () => [data(Webview, "isFullScreen"), size()], [true, screen]),
    becomes("restored again", () => Webview.setRestore(), () => [data(Webview, "isFullScreen"), size()], [false, { w: 301, h: 201 }]),
    becomes("minimised", async () => { Webview.setMinimize(); await user("hidden", "page"); }, () => data(Webview, "isMinimize"), true),
    becomes("and back", () => Webview.setRestore(), () => data(Webview, "isMinimize"), false),
    ["above others", async () => { await flag(() => Webview.setEnableStayOnTop(true)); await raised(true); return size(); }, { w: 301, h: 201 }],
    ["no longer", async () => { await flag(() => Webview.setEnableStayOnTop(false)); await raised(false); return size(); }, { w: 301, h: 201 }],
    becomes("without a frame", async () => { await flag(() => Webview.setWindowFlags([0x800])); Webview.setGeometry({ x: 101, y: 51 }); },
        () => [place(), size()], [{ x: 101, y: 51 }, { w: 301, h: 201 }]),
    hears("it is active", async () => { await user("other window"); await user("focus", "page"); }, "WindowActivateState", true),
    hears("another window is", () => user("other window"), "WindowActivateState", false),
    hears("and this one again", () => Webview.takeFocus(), "WindowActivateState", true),

    // Drag areas, with the mouse.
    ["drag areas", () => [[0, 0, 300, 40], [0, 160, 300, 40]].forEach(([x, y, w, h]) => Webview.setDragArea({ x, y, w, h }))
        ?? Webview.setBlackDragArea({ x: 100, y: 0, w: 100, h: 40 }).success, true],
    // The window manager may hold a window back by some pixels where it comes near others.
    becomes("dragged", () => user("drag", "page", physical(20), physical(20), 60, 40),
        () => Math.abs(place().x - 101 - 60 / scale) + Math.abs(place().y - 51 - 40 / scale) < 15, true),
    becomes("put back", () => Webview.setGeometry({ x: 101, y: 51 }), place, { x: 101, y: 51 }),
    ...[["in a black area", 150, 20], ["outside the areas", 20, 100]].map(([name, x, y]) => [`not dragged ${name}`,
        async () => { await user("drag", "page", physical(Number(x)), physical(Number(y)), 60, 40); return place(); }, { x: 101, y: 51 }]),
    ["nor without areas", async () => { Webview.clearDragArea(); await user("drag", "page", physical(20), physical(20), 60, 40); return place(); }, { x: 101, y: 51 }],

    // Files dragged in.
    ["no files unless enabled", async () => { notes.length = 0; await user("drop", "page"); return notes.filter(([event]) => event === "DragEnter"); }, []],
    hears("files", () => { Webview.setDragEnterEnable(true); return user("drop", "page"); }, "DragEnter", [`${directory}/a file.txt`, `${directory}/b.txt`]),

    ["a general method", () => data(Webview, "invokeGeneralMethod", { funcName: "postWebviewEvent", funcParam: { deep: [1, "x"] } }), true],
    hears("its event", () => Webview.invokeGeneralMethodAsync({ funcName: "postWebviewEvent", funcParam: [1] }), "WebviewEvent", [1]),
    ["what it returns", () => Webview.invokeGeneralMethodAsync({ funcName: "postWebviewEvent", funcParam: { a: 1 } }), { a: 1 }],
    ["scroll bars, colours, ready", () => [Webview.setDisableScrollBar(true), Webview.setDisableXScrollBar(false), Webview.setDisableYScrollBar(false), Webview.pageReady()]
        .every(({ success }) => success), true],
    hears("hidden", () => Webview.hide(), "Hide"),
    hears("shown, with its shell", () => Webview.show(), "Show"),
    becomes("not for users to size", async () => { Webview.setResizeable(false); await user("fixed", "page", true); }, size, { w: 301, h: 201 }),
    becomes("but for the page", async () => { Webview.setSize({ w: 250, h: 150 }); await user("sized", "page", physical(250), physical(150)); }, size, { w: 250, h: 150 }),
    becomes("for users again", async () => { Webview.setResizeable(true); await user("fixed", "page", false); }, size, { w: 250, h: 150 }),
]);

// Windows of other kinds.
const popup = WebviewMgr.create({ id: "popup", windowType: "Popup", hasParent: true, geo: { x: 400, y: 300, width: 200, height: 100 } });
popup.setWindowTitle("popup");
let hides = 0;
popup.addHideListener(() => { ++hides; });
const dialog = WebviewMgr.create({ id: "dialog", hasParent: true, attrs: { modal: true, allowResize: false }, geo: { x: 600, y: 200, width: 200, height: 100 } });
dialog.setWindowTitle("dialog");
const tab = WebviewMgr.create({ id: "tab", windowType: "Tab", geo: { x: 50, y: 500, width: 200, height: 100 } });
tab.setWindowTitle("tab");
await check([
    ["a popup has its place", async () => { popup.show(); await user("focus", "popup"); return [place(popup), size(popup)]; }, [{ x: 400, y: 300 }, { w: 200, h: 100 }]],
    becomes("it goes when another window is active", () => user("other window"), () => hides, 1),
    becomes("it stays under the mouse", async () => { popup.show(); await user("focus", "popup"); await user("over", "popup"); await user("other window"); }, () => hides, 1),
    ["a dialog has an owner and a fixed size", async () => { dialog.show(); await user("owned", "dialog", "page"); await user("fixed", "dialog", true); return size(dialog); }, { w: 200, h: 100 }],
    becomes("closed by the user, it stays", async () => { dialog.setMode(false); dialog.hide(); dialog.show(); await user("focus", "dialog"); await user("key", "alt+F4"); await user("hidden", "dialog"); }, () => data(dialog, "getID"), "dialog"),
    ["destroyed", async () => { dialog.destroy(); await settled(() => { try { return data(dialog, "getID"); } catch { return ""; } }, ""); return dialog.getID(); }, refusal(3, "empty webwidget")],
    ["a tab", async () => { tab.show(); await user("focus", "tab"); return [size(tab), data(tab, "getScreenNumber")]; }, [{ w: 200, h: 100 }, 0]],
]);
exit(failures ? 1 : 0);
