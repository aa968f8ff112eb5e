// A document chat panel that does what it is told (panels_plugin.cpp), and the stand-in's contract panel.
const { AiDocsChat, KContract, Profile } = NovaExtension;
const [invalid, notFound] = [refusal(1, "Invalid argument"), refusal(3, "Panel not Found")];
const failed = refusal(3, "Failed invoke method: qaNotify");
/** @type {any[]} */
let heard = [];
const hear = (/** @type {any} */ notification) => { heard.push(notification); };
async function until(/** @type {() => boolean} */ isSo) {
    for (const end = Date.now() + 20000; !isSo() && Date.now() < end;)
        await new Promise((resolve) => setTimeout(resolve, 0));
}
/** Has the chat panel do something; the next `count` notifications, or without it those before an echo of "end". */
async function chat(/** @type {string} */ what, /** @type {object} */ more = {}, count = 0) {
    AiDocsChat.qaNotify({ do: what, ...more });
    if (!count)
        AiDocsChat.qaNotify({ do: "echo", end: true });
    await until(() => count ? heard.length === count : heard.some(({ end }) => end));
    return heard.splice(0).filter(({ end }) => !end);
}
/** Adds or removes a panel's plugin. */
async function play(/** @type {"add" | "remove"} */ what, name = "knovaaidocschatpanel") {
    process.play(`plugin:${what}=${name}`);
    await until(() => {
        try {
            name[0] === "K" ? KContract.panelNotify({}) : AiDocsChat.qaNotify({});
        } catch (error) {
            return (caught(error).msg !== "Panel not Found") === (what === "add");
        }
        return what === "add";
    });
    return heard.splice(0);
}
const viewId = Profile.getBrowserTraceInfo().data.browserid;
const facts = { type: "facts", viewId, dates: ["1 May 2026", "2026-07-01"], sums: ["EUR 1,200.50", "5 $"] };
const echo = { do: "echo", from: "qaPage" };

for (const thing of [undefined, null, 1, "x", [], [{}], { f() {} }, { a: [{ f() {} }] }, { panel: AiDocsChat }]) {
    await check([["qaNotify", AiDocsChat], ["panelNotify", KContract], ["registerQACallback", AiDocsChat], ["registerCallback", KContract]]
        .map(([member, object]) => [`${member}(${show(thing)})`, () => call(object, /** @type {string} */ (member), thing), invalid]));
}
await check([
    ["a function is no notification", () => call(AiDocsChat, "qaNotify", hear), invalid],
    ["without a callback", () => AiDocsChat.qaNotify({ do: "echo" }), { success: true, data: undefined }],
    ["registering", () => AiDocsChat.registerQACallback(hear), { success: true, data: undefined }],
    ["an answer within the call", () => chat("echo", { a: [1, { b: null }] }), [{ ...echo, a: [1, { b: null }] }]],
    ["a page's own from", () => chat("echo", { from: "panel" }), [echo]],
    ["registered twice, called once", () => (AiDocsChat.registerQACallback(hear), chat("echo")), [echo]],
    ["another callback in its place, from within it", () => {
        AiDocsChat.registerQACallback(() => {
            AiDocsChat.registerQACallback(hear);
            AiDocsChat.qaNotify({ do: "echo", again: true });
        });
        return chat("echo");
    }, [{ ...echo, again: true }]],
    ["from another thread", () => chat("thread", {}, 1), [{ thread: true }]],
    ["what has no form in script", () => chat("odd"), [{ object: undefined }]],
    ["a panel that throws", () => AiDocsChat.qaNotify({ do: "throw" }), failed],
    ["goes on", () => chat("echo"), [echo]],
    // In its last moment it emits.
    ["a panel that goes within the call", () => chat("go", {}, 1), [{ last: true }]],
    ["has gone", () => AiDocsChat.qaNotify({ do: "echo" }), notFound],
    ["and can not be registered with", () => AiDocsChat.registerQACallback(hear), notFound],
    ["one that comes back", () => play("add").then(() => chat("echo")), [echo]],
    ["goes by itself", () => chat("mute").then(() => play("remove")), [{ last: true }]],
    ["and lacks the method", () => play("add").then(() => AiDocsChat.qaNotify({})), failed],
    ["and the signal", () => AiDocsChat.registerQACallback(hear), notFound],
    ["registering for a view", () => play("remove").then(() => play("add")).then(() => KContract.registerCallback(hear).data), undefined],
    ...[{ viewId }, { viewId: "another" }, { viewId: "" }, { viewId: [viewId] }, {}].map((notification) =>
        [`for ${show(notification)}`, () => chat("contract", { notification }), notification.viewId === viewId ? [notification] : []]),
    ["the facts of a contract", async () => {
        KContract.panelNotify({ type: "contract", viewId: "another", text: "USD 1" });
        KContract.panelNotify({ type: "contract", viewId, text: "Of 1 May 2026; due 2026-07-01: EUR 1,200.50, or 5 $." });
        KContract.panelNotify({ type: "facts", viewId });
        KContract.panelNotify({ viewId });
        await until(() => heard.length === 3);
        return heard.splice(0);
    }, [facts, facts, { type: "error", viewId, msg: "this panel reads contracts, of 100 views at most" }]],
    ["without the panel", () => play("remove", "KContractMgrCommand").then(() => KContract.panelNotify({ viewId })), notFound],
    ["registering without it", () => KContract.registerCallback(hear), notFound],
]);
exit(failures ? 1 : 0);
