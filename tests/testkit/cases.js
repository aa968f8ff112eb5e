// What holds of the testkit and of the library alike: [name, what the testkit is made with, what a page does, what it sees].
// kit.mjs runs them in Node, library_test.py in both engines of novahost, where cases.profile.json stands for the dialogs.
// `happen` has the suite do something: a step of novahost's, or an event of the testkit's.
const seen = (/** @type {any} */ { success, code, msg }) => ({ success, code, msg });
const attempt = (/** @type {() => unknown} */ action) => {
    try {
        return action();
    } catch (error) {
        return error instanceof TypeError ? `${error}`.replace(/\.$/, "") : seen(error);
    }
};
const refused = (/** @type {number} */ code, /** @type {string} */ msg) => ({ success: false, code, msg });
const file = (/** @type {string} */ name) => `${folder}/${name}`;

const cases = [
    ["an envelope", { rows: [{ member: "FileSystem.exists", answer: true }] }, () => {
        const answer = NovaExtension.FileSystem.exists(folder);
        return [Object.keys(answer).sort(), answer];
    }, [["data", "success"], { success: true, data: true }]],
    ["an envelope of nothing", { rows: [{ member: "Log.*" }] }, () => {
        const answer = NovaExtension.Log.logInfo({ moduleName: "m", logStr: "s" });
        return ["data" in answer, answer.data, answer.success];
    }, [true, undefined, true]],
    ["a failure is thrown", { rows: [{ member: "FileSystem.mkpath", failure: "the directory already exist" }] }, () =>
        attempt(() => NovaExtension.FileSystem.mkpath(file("made"))), refused(3, "the directory already exist")],
    ["a promise rejects", { rows: [{ member: "FileSystem.getFileMd5", rejects: `${file("gone")} is not existed` }] }, () =>
        NovaExtension.FileSystem.getFileMd5(file("gone")).catch(seen), refused(3, `${file("gone")} is not existed`)],
    ["a promise resolves", { rows: [{ member: "FileSystem.getFileMd5", answer: "5f6557e89d3365adbafdd90211fb711e" }] }, () =>
        NovaExtension.FileSystem.getFileMd5(file("letter.txt")), "5f6557e89d3365adbafdd90211fb711e"],
    ["what can not be passed", {}, () => [new Date(), { a: [1, new Map()] }, Symbol("s"), 2n ** 70n, Promise.resolve()].map((value) =>
        attempt(() => NovaExtension.ConfigCenter.setValue(value)).msg), [
        "argument 1: a Date can not be passed", "argument 1: a Map can not be passed (at a[1])", "argument 1: a symbol can not be passed",
        "argument 1: a BigInt of more than 64 bits can not be passed", "argument 1: a Promise can not be passed",
    ]],
    ["objects are what they are called", {}, () => [`${NovaExtension.Account}`, Object.keys(NovaExtension).length,
        NovaExtension.Account.Privilege === NovaExtension.Account.Privilege, NovaExtension.Account.nope,
        attempt(() => (0, NovaExtension.FileSystem.exists)("/")), Object.keys(NovaExtension.Account)],
    ["[object NovaExtension.Account]", 28, true, undefined, "TypeError: Illegal invocation", []]],
    ["listeners are called in order, once, and not when they have been removed", {}, () => {
        const { Event } = NovaExtension;
        const heard = [];
        const last = (value) => heard.push("last", value);
        const first = (value) => {
            heard.push("first", value);
            Event.removeEventListener("tick", last);
        };
        Event.addEventListener("tick", first);
        Event.addEventListener("tick", first);
        Event.addEventListener("tick", last);
        const report = Event.getAllEventInfo();
        Event.dispatchEvent("tick", true, 1);
        Event.removeEventListener("tick");
        return new Promise((resolve) => setTimeout(() => resolve([heard.slice(0, 2), report, Event.getAllEventInfo()])));
    }, [["first", 1], [{ eventName: "tick", listenerCount: 2 }], []]],
    ["a listener that is none", {}, () => [() => NovaExtension.Event.addEventListener("tick"), () => NovaExtension.Account.addLoginListener({}),
        () => NovaExtension.Account.removeLoginListener(null), () => NovaExtension.Account.removeLoginListener()].map(attempt),
    [refused(1, "wrong parameters."), refused(1, "wrong parameters."), refused(1, "wrong parameters."), { success: true, data: undefined }]],
    ["pairs of members add listeners of the same event", { happen: (kit, fill) => kit.emit("Account", "event.account.logout", fill({ callstatus: "ok" })) },
        async () => {
            const { Account } = NovaExtension;
            const heard = [];
            const ended = new Promise((resolve) => Account.addEventListener("event.account.logout", resolve));
            Account.addLogoutListener(({ callstatus }) => heard.push(callstatus));
            await Promise.all([happen("logout"), ended, new Promise((resolve) => setTimeout(resolve))]);
            return [heard, Object.keys(await ended).sort()];
        }, [["ok"], ["callstatus", "isSwitching", "novasid", "userId", "userName"]]],
    ["a ByteBuffer", {}, () => {
        const buffer = NovaExtension.ByteBufferManager.create("caf\u00e9");
        const bytes = [...buffer.data()];
        buffer.setSize(2);
        return [bytes, buffer.data() instanceof Uint8Array, [...buffer.data()], attempt(() => buffer.setSize(-1))];
    }, [[99, 97, 102, 195, 169], true, [99, 97], refused(1, "Size is illegal.")], { rows: [{ member: "ByteBufferManager.ByteBuffer.setSize", failure: "Size is illegal." }] }],
    ["dialogs end as they are said to", { dialogs: "of the profile" }, async () => {
        const { FileSystem, SyncFolder, Tools, Utils } = NovaExtension;
        const options = { dir: folder, caption: "", filter: "" };
        return [FileSystem.getOpenFileName(options).data, FileSystem.getOpenFileName(options).data, FileSystem.getOpenFileNames(options).data,
            FileSystem.getExistingDirectory(options).data, FileSystem.getWritableSaveFileName(options).data,
            Tools.showConfirmDlg({ text: "?", buttons: ["Yes", "No"] }).data, Tools.showConfirmDlg({ text: "?" }).data,
            FileSystem.startAccess({ path: file("letter.txt") }).data,
            await new Promise((resolve) => Utils.pickColor({}, ({ accepted, color }) => resolve([accepted, color]))),
            await new Promise((resolve) => Utils.pickColor({}, ({ accepted, color }) => resolve([accepted, color])))];
    }, [file("letter.txt"), "", [file("letter.txt")], folder, file("new.txt"), 1, -1, true, [true, "#204080"], [false, undefined]]],
];
