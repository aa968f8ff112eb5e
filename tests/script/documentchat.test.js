// The stand-in's document chat panel, whose page is in a window of its own where pages are in the browser.
const { AiDocsChat, CloudDoc, WebDocsControl } = NovaExtension;
const hasBrowser = "document" in globalThis;
/** @type {any[]} */
const heard = [];
let wake = () => {};
/** The first notification for which it holds. */
async function next(/** @type {(notification: any) => boolean} */ isIt) {
    for (const end = Date.now() + 20000; !heard.some(isIt) && Date.now() < end;)
        await Promise.race([new Promise((resolve) => { wake = () => resolve(undefined); }), new Promise((resolve) => setTimeout(resolve, 1000))]);
    return heard.splice(heard.findIndex(isIt), 1)[0];
}
const ask = (/** @type {any} */ question) => {
    AiDocsChat.qaNotify({ type: "question", ...question });
    return next(({ type, did }) => type === "answer" || type === "error");
};
const found = (/** @type {string[]} */ ...texts) => texts.map((text) => ({ text, file: "notes.txt" }));

AiDocsChat.registerQACallback((notification) => { heard.push(notification); wake(); });
await check([
    ["the best sentence first", () => ask({ id: 7, text: "Where does the FOX live, in a forest?" }), { type: "answer", id: 7,
        text: "Where does the FOX live, in a forest?", sentences: found("The fox lives in the old forest.", "The fox fled.", "A forest fire broke out in 2019!") }],
    ["nothing of that", () => ask({ text: "an ox?" }), { type: "answer", text: "an ox?", sentences: [] }],
    ["no text", () => ask({ text: 5 }), { type: "error", msg: "this panel answers questions with a text" }],
    ["the panel's page", () => { AiDocsChat.qaNotify({ type: "show" }); return next(({ type }) => type === "shown"); },
        { type: "shown", isShown: hasBrowser }],
    ...(hasBrowser ? [
        ["has loaded, and reports it", () => next(({ did }) => did === "open"),
            { type: "page", did: "open", text: "nova://knovaaidocschatpanel/panel.html" }],
        ["gets the answers as well", () => ask({ text: "fled" }).then(() => next(({ did }) => did === "answer")),
            { type: "page", did: "answer", text: "fled" }],
    ] : []),
    ["goes", () => { AiDocsChat.qaNotify({ type: "hide" }); return next(({ type }) => type === "shown"); }, { type: "shown", isShown: false }],
]);

const group = JSON.parse(await CloudDoc.getPersonalPrivateGroup());
const { extraParam: { fileId } } = await CloudDoc.saveToCloudDir({ groupId: group.groupId, fileId: group.rootId, fname: "a" });
const details = { group_id: group.groupId, file_id: fileId, uuid: "u", label: "secret" };
const [missing, notUpdated] = [refusal(1, "missing required parameters."), refusal(3, "Update classify label status failed.")];
const update = (/** @type {object} */ change) => async () => {
    const { changeTime, ...rest } = (await call(WebDocsControl, "notifySetupFinished", { ...details, ...change })).extraParam;
    return Number(changeTime) > 1e12 && rest;
};
const recorded = { fileId, uuid: "u", label: "secret" };
await check([
    ["a set-up", update({}), recorded],
    ["a number in place of a string", update({ label: 5 }), { ...recorded, label: "5" }],
    ...Object.keys(details).flatMap((key) => [undefined, null, "", {}].map((value) =>
        [`${key}: ${show(value)}`, update({ [key]: value }), missing])),
    ["no details", () => call(WebDocsControl, "notifySetupFinished"), missing],
    ["half a character", update({ label: "\ud800" }), refusal(1, "wrong parameters.")],
    ["another group", update({ group_id: "g" }), notUpdated],
    ["no such document", update({ file_id: "f" }), notUpdated],
    ["too much", update({ label: "x".repeat(5 << 20) }), refusal(3, "Call larkIpcCall failed.")],
    // Whether it has been recorded is open, and the page is told so by a rejection.
    ["the service killed meanwhile", async () => {
        const reply = update({ label: "killed" })().then(() => "settled", (error) => caught(error).msg === notUpdated.msg && "settled");
        process.play("cloud:kill");
        return reply;
    }, "settled"],
    ["and once more", update({}), recorded],
]);
exit(failures ? 1 : 0);
