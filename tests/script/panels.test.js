// A document chat panel that does what it is told (panels_plugin.cpp), and the stand-in's contract panel.
const { AiDocsChat, KContract, Profile } = NovaExtension;
const [invalid, notFound] = [refusal(1, "Invalid argument"), refusal(3, "Panel not Found")];
const failed = refusal(3, "Failed invoke method: qaNotify");
const CHAT = "knovaaidocschatpanel";
/** @type {any[]} */
let heard = [];
const loop = () => new Promise((resolve) => setTimeout(resolve, 0));
const hear = (/** @type {any} */ notification) => { heard.push(notification); };
/** Has the chat panel do something, then say "end"; what was heard before that. */
async function chat(/** @type {string} */ what, /** @type {object} */ more = {}) {
    AiDocsChat.qaNotify({ do: what, ...more });
    AiDocsChat.qaNotify({ do: "echo", end: true });
    for (const end = Date.now() + 20000; !heard.some((one) => one.end) && Date.now() < end;)
        await loop();
    const all = heard.slice(0, heard.findIndex((one) => one.end));
    heard = [];
    return all;
}
/** What is heard next, `count` of them, where no "end" follows. */
async function next(/** @type {number} */ count) {
    for (const end = Date.now() + 20000; heard.length < count && Date.now() < end;)
        await loop();
    const all = heard;
    heard = [];
    return all;
}
/** Adds or removes a panel's plugin. */
async function play(/** @type {"add" | "remove"} */ what, /** @type {any} */ object = AiDocsChat, notify = "qaNotify", name = CHAT) {
    process.play(`plugin:${what}=${name}`);
    const isThere = () => {
        try {
            object[notify]({});
        } catch (error) {
            return caught(error).msg !== "Panel not Found";
        }
        return true;
    };
    for (const end = Date.now() + 20000; isThere() !== (what === "add") && Date.now() < end;)
        await loop();
}
const viewId = Profile.getBrowserTraceInfo().data.browserid;
/** What reaches this page of a notification of the contract panel. */
const contract = (/** @type {object} */ notification) => () => chat("contract", { notification });
const facts = { type: "facts", viewId, dates: ["1 May 2026", "2026-07-01"], sums: ["EUR 1,200.50", "5 $"] };
const plain = { a: [1, { b: null }], text: "\u{1f600}" };

/** @type {any[]} */
const things = [undefined, null, 1, "x", [], [{}], () => {}, { f() {} }, { a: [{ f() {} }] }, { panel: AiDocsChat }];
for (const [object, register, notify] of /** @type {any[]} */ ([[AiDocsChat, "registerQACallback", "qaNotify"],
    [KContract, "registerCallback", "panelNotify"]])) {
    await check([
        ...things.map((thing, i) => [`${notify} with thing ${i}`, () => object[notify](thing), invalid]),
        ...things.filter((thing) => typeof thing !== "function")
            .map((thing, i) => [`${register} with thing ${i}`, () => object[register](thing), invalid]),
    ]);
}

await check([
    ["without a callback", () => AiDocsChat.qaNotify({ do: "echo" }), { success: true, data: undefined }],
    ["registering", () => AiDocsChat.registerQACallback(hear), { success: true, data: undefined }],
    ["an answer within the call", () => chat("echo", plain), [{ do: "echo", ...plain, from: "qaPage" }]],
    ["a page's own from", () => chat("echo", { from: "panel" }), [{ do: "echo", from: "qaPage" }]],
    ["registered twice, called once", () => (AiDocsChat.registerQACallback(hear), chat("echo")), [{ do: "echo", from: "qaPage" }]],
    ["another callback in its place, from within it", () => {
        AiDocsChat.registerQACallback(() => {
            AiDocsChat.registerQACallback(hear);
            hear("once");
            AiDocsChat.qaNotify({ do: "echo" });
        });
        return chat("echo");
    }, ["once", { do: "echo", from: "qaPage" }]],
    ["from another thread", () => { AiDocsChat.qaNotify({ do: "thread" }); return next(1); }, [{ thread: true }]],
    ["what has no form in script", () => chat("odd"), [{ nothing: undefined, object: undefined, huge: 2n ** 60n }]],
    ["what is nested too deep", () => chat("deep"), []],
    ["a panel that throws", () => AiDocsChat.qaNotify({ do: "throw" }), failed],
    ["goes on", () => chat("echo"), [{ do: "echo", from: "qaPage" }]],
    // In its last moment it emits.
    ["a panel that goes within the call", () => { AiDocsChat.qaNotify({ do: "go" }); return next(1); }, [{ last: true }]],
    ["has gone", () => AiDocsChat.qaNotify({ do: "echo" }), notFound],
    ["and can not be registered with", () => AiDocsChat.registerQACallback(hear), notFound],
    ["one that comes back", () => play("add").then(() => chat("echo")), [{ do: "echo", from: "qaPage" }]],
    ["and will lack the method", () => chat("mute"), []],
    ["goes by itself", () => play("remove").then(() => next(1)), [{ last: true }]],
    ["without the method", () => play("add").then(() => AiDocsChat.qaNotify({})), failed],
    ["without the signal", () => AiDocsChat.registerQACallback(hear), notFound],
    ["as it was", () => play("remove").then(() => play("add")).then(() => chat("echo")), [{ do: "echo", from: "qaPage" }]],
]);

await check([
    ["registering for a view", () => KContract.registerCallback(hear).data, undefined],
    ["this view", contract({ viewId, n: 1 }), [{ viewId, n: 1 }]],
    ...[{ viewId: "another" }, { viewId: "" }, { viewId: 1 }, { viewId: [viewId] }, { viewId: null }, {}].map((notification) =>
        [`not this view: ${show(notification)}`, contract(notification), []]),
    ["the facts of a contract", () => {
        KContract.panelNotify({ type: "contract", viewId: "another", text: "USD 1" });
        KContract.panelNotify({ type: "contract", viewId, text: "Of 1 May 2026; due 2026-07-01: EUR 1,200.50, or 5 $." });
        KContract.panelNotify({ type: "facts", viewId });
        KContract.panelNotify({ viewId });
        return next(3);
    }, [facts, facts, { type: "error", viewId, msg: "this panel reads contracts, of 100 views at most" }]],
    ["without the panel", () => play("remove", KContract, "panelNotify", "KContractMgrCommand")
        .then(() => KContract.panelNotify({ viewId })), notFound],
    ["registering without it", () => KContract.registerCallback(hear), notFound],
]);
exit(failures ? 1 : 0);
