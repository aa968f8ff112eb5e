// The stand-in's document chat panel, whose page is in a window of its own where pages are in the browser.
const { AiDocsChat, CloudDoc, WebDocsControl } = NovaExtension;
const hasBrowser = "document" in globalThis;
/** @type {any[]} */
const heard = [];
/** The next notification of a type, after a notification of the page's. */
const ask = async (/** @type {string} */ type, /** @type {any} */ notification = undefined) => {
    if (notification)
        AiDocsChat.qaNotify({ type: "question", ...notification });
    const find = () => heard.findIndex((one) => one.type === type);
    for (const end = Date.now() + 20000; find() < 0 && Date.now() < end;)
        await new Promise((resolve) => setTimeout(resolve, 5));
    return heard.splice(find(), 1)[0];
};
const found = (/** @type {string[]} */ ...texts) => texts.map((text) => ({ text, file: "notes.txt" }));
const question = "Where does the FOX live, in a forest?";

AiDocsChat.registerQACallback((notification) => { heard.push(notification); });
await check([
    ["the best sentence first", () => ask("answer", { id: 7, text: question }), { type: "answer", id: 7, text: question,
        sentences: found("The fox lives in the old forest.", "The fox fled.", "A forest fire broke out in 2019!") }],
    ["nothing of that", () => ask("answer", { text: "an ox?" }), { type: "answer", text: "an ox?", sentences: [] }],
    ["no text", () => ask("error", { text: 5 }), { type: "error", msg: "this panel answers questions with a text" }],
    ["the panel's page", () => ask("shown", { type: "show" }), { type: "shown", isShown: hasBrowser }],
    ...(hasBrowser ? [
        ["has loaded, and reports it", () => ask("page"), { type: "page", did: "open", text: "nova://knovaaidocschatpanel/panel.html" }],
        ["gets the answers as well", () => ask("page", { text: "fled" }), { type: "page", did: "answer", text: "fled" }],
    ] : []),
    ["goes", () => ask("shown", { type: "hide" }), { type: "shown", isShown: false }],
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
    ["a number in place of a string", update({ label: 5 }), { ...recorded, label: "5" }],
    ...Object.keys(details).flatMap((key) => [undefined, null, "", {}].map((value) =>
        [`${key}: ${show(value)}`, update({ [key]: value }), missing])),
    ["half a character", update({ label: "\ud800" }), refusal(1, "wrong parameters.")],
    ["another group", update({ group_id: "g" }), notUpdated],
    ["too much", update({ label: "x".repeat(5 << 20) }), refusal(3, "Call larkIpcCall failed.")],
    // Which of the requests the service is killed in is open; a page that repeats one gets its answer.
    ["the service killed meanwhile", async () => {
        process.play("cloud:kill");
        const seen = [];
        for (let i = 0; i < 10; ++i)
            seen.push(await update({})().catch(caught));
        return seen.filter((one) => same(one, recorded)).length >= 9 && seen.find((one) => !same(one, recorded)) || notUpdated;
    }, notUpdated],
]);
exit(failures ? 1 : 0);
