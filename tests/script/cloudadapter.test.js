// Requests by name: of CloudAdapter to the cloud service, of Orbitapi to the cloud's servers, with the real process.
const { CloudAdapter, CloudDoc } = NovaExtension;
const { Orbitapi } = CloudDoc;
const data = String(process.argv[2]);
const missing = refusal(1, "missing required parameters."), wrong = refusal(1, "wrong parameters.");
const denied = refusal(3, "Permission denied."), noReply = refusal(3, "Common request failed.");
const adapter = (/** @type {any} */ options) => () => call(CloudAdapter, "commonRequest", options);
const orbit = (/** @type {any} */ options, /** @type {any[]} */ ...more) => () => call(Orbitapi, "commonRequest", options, ...more);
const state = (/** @type {any} */ options) => async () => (await adapter(options)()).state;
/** The reply without what differs each time. */
const short = (/** @type {any} */ options) => async () => {
    const { ok, resultState, httpStatusCode, message, data: found } = await orbit(options)();
    return [ok, resultState, httpStatusCode, message, found];
};
/** @type {any[]} */
const heard = [];
CloudAdapter.addEventListener("cloud.adapter.notify", (notice) => heard.push(notice));

await CloudDoc.uploadFile2CloudFolder({ cloudPath: "in", files: [`${data}/user/papers/a.txt`] });
const { data: found } = await Orbitapi.commonRequest({ requestKey: "file.info", params: { cloudPath: "in/a.txt" } });
const file = /** @type {any} */ (found);
await check([
    ["an operation of the service", adapter({ method: "getRoamingMode" }),
        { state: 0, resultString: "auto", resultMap: {}, resultList: [] }],
    ["one with arguments", async () => (await adapter({ method: "changeRoamingMode", params: { roamingMode: "manual" } })()).resultMap,
        { roamingMode: "manual" }],
    ["what it notifies", () => heard.filter(({ action }) => action === "roamingModeChanged"), [{ action: "roamingModeChanged", roamingMode: "manual" }]],
    ["one that there is not", adapter({ method: "fly" }), { state: 8, resultString: "unknownMethod", resultMap: {}, resultList: [] }],
    ["a user who is not signed in", state({ method: "getRoamingMode", userId: "user-9" }), 3],
    ["arguments can not name another user", state({ method: "getRoamingMode", params: { userId: "user-9" } }), 0],
    ...["setCurrentUser", "uploadFileToCloud", "sync.addFolder", "sync.moveFolder", "sync."].map((method) =>
        [method, adapter({ method, params: { signedIn: "user-9", localPath: "/" } }), denied]),
    ...["SetCurrentUser", "setCurrentUser ", " setCurrentUser", "setCurrentUser\0", "SYNC.addFolder"].map((method) =>
        [`no other spelling of it: ${show(method)}`, state({ method }), 8]),
    ...[[undefined, missing], ["", missing], [5, wrong], ["x".repeat(256), wrong], ["\ud800", wrong]].map(([method, expected]) =>
        [`the method ${show(method)}`, adapter({ method }), expected]),
    ["arguments that are none", adapter({ method: "getRoamingMode", params: "x" }), wrong],
    ["too many of them", adapter({ method: "m", params: { a: "x".repeat(5 << 20) } }), refusal(3, "Call larkIpcCall failed.")],

    ["the space", short({ requestKey: "user.space" }), [true, 0, 200, "ok", { usedBytes: 6, files: 1, folders: 2 }]],
    ["a file", () => [file.name, file.cloudPath, file.size, file.isFolder], ["a.txt", "in/a.txt", 6, false]],
    ...[["file.search", { name: "A.T" }, 1], ["file.search", { name: "zzz" }, 0], ["recent.list", { count: "1" }, 1]].map(
        ([requestKey, params, count]) => [`${requestKey} ${show(params)}`,
            async () => (await orbit({ requestKey, params })()).data.files.map((/** @type {any} */ one) => one.fileId),
            count ? [file.fileId] : []]),
    ["a file that there is not", short({ requestKey: "file.info", params: { cloudPath: "no" } }), [false, 2, 404, "notFound", undefined]],
    ["a request that there is not", short({ requestKey: "fly" }), [false, 8, 404, "unknownMethod", undefined]],
    ["a number that is none", short({ requestKey: "recent.list", params: { count: "x" } }), [false, 1, 400, "wrongArguments", undefined]],
    ["another's", short({ requestKey: "user.space", params: { userId: "user-9" } }), [false, 3, 401, "notSignedIn", undefined]],
    ["a callback gets the same", async () => {
        /** @type {any} */
        let called;
        const reply = await orbit({ requestKey: "user.space" }, (/** @type {any} */ one) => { called = one; })();
        await new Promise((resolve) => setTimeout(resolve, 0));
        return same(reply, called);
    }, true],
    ...[[{}, missing], [{ requestKey: "" }, missing], [{ requestKey: "a", timeoutMs: 0 }, wrong], [{ requestKey: "a", timeoutMs: 600001 }, wrong],
        [{ requestKey: "a", canRetry: "yes" }, wrong], [{ requestKey: "a", params: [] }, wrong]].map(([options, expected]) =>
        [`the options ${show(options)}`, orbit(options), expected]),
    ["too much", orbit({ requestKey: "a", params: { a: "x".repeat(17 << 20) } }), refusal(3, "Call a failed.")],
    // Which of them the service is killed in is open; each is answered or rejected, and one that is repeated is answered.
    ["the service killed meanwhile", async () => {
        const waiting = Array.from({ length: 50 }, (_, i) => (i % 2 ? adapter({ method: "getRoamingMode" }) : orbit({ requestKey: "user.space" }))()
            .then(() => "answered", caught));
        process.play("cloud:kill");
        const seen = await Promise.all(waiting);
        await adapter({ method: "getRoamingMode" })().catch(caught);
        return [seen.every((one) => one === "answered" || same(one, noReply)), await state({ method: "getRoamingMode" })()];
    }, [true, 0]],
]);
exit(failures ? 1 : 0);
