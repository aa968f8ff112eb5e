const { Account, Event, FileSystem, Tools, Utils, WebviewMgr } = NovaExtension;
const home = process.argv[2];
const missing = refusal(1, "missing required parameters.");
const wrong = refusal(1, "wrong parameters.");
/** A bitmap of one black pixel. */
const bitmap = new Uint16Array([0x4d42, 58, 0, 0, 0, 54, 0, 40, 0, 1, 0, 1, 0, 1, 24, ...Array(14).fill(0)]);
const denied = refusal(3, "Permission denied.");
const inBrowser = "document" in globalThis;
/** @type {(action: () => { data: any }) => () => any} */
const data = (action) => () => action().data;
const until = async (/** @type {() => boolean} */ done) => {
    for (let i = 0; i < 3000 && !done(); ++i)
        await new Promise((resolve) => setTimeout(resolve, 10));
    return done();
};
/** What a member returns, and what the function that it is given is called with. @type {(member: string, options: object) => () => Promise<any>} */
const pick = (member, options) => () => new Promise((resolve) => {
    if (!call(Utils, member, options, (/** @type {any} */ picked) => resolve([true, picked])).data)
        resolve([false]);
});

await check([
    ["text", () => [Utils.setTextToClipboard("a\u00fc\0\u{1f600}\n"), Utils.getClipboardText().data], [{ success: true, data: undefined }, "a\u00fc\0\u{1f600}\n"]],
    ["no text leaves the clipboard as it is", () => call(Utils, "setTextToClipboard"), missing],
    ["nor does a number", () => call(Utils, "setTextToClipboard", 5), wrong],
    ["it is as it was", data(() => Utils.getClipboardText()), "a\u00fc\0\u{1f600}\n"],
    ["an empty text", () => [Utils.setTextToClipboard("").success, Utils.getClipboardText().data], [true, ""]],
    ["a picture", data(() => Utils.setImageToClipboard({ path: `${home}/upright.png` })), undefined],
    ["a picture in bytes", data(() => Utils.setImageToClipboard({ bytes: bitmap })), undefined],
    ["bytes that are no picture", () => Utils.setImageToClipboard({ bytes: new Uint8Array(9) }), refusal(3, "bytes is not an image")],
    ["bytes and a file", () => Utils.setImageToClipboard({ path: `${home}/upright.png`, bytes: new Uint8Array(9) }), wrong],
    ["no picture", () => call(Utils, "setImageToClipboard"), missing],
    ...["none.png", "pipe", "."].map((name) =>
        [`a picture that is no file: ${name}`, () => Utils.setImageToClipboard({ path: `${home}/${name}` }), refusal(3, "Path is illegal.")]),
    ...["text.png", "huge.png", "cut.png", "drawing.svg"].map((name) =>
        [`a file that is no picture: ${name}`, () => Utils.setImageToClipboard({ path: `${home}/${name}` }), refusal(3, `${home}/${name} is not an image`)]),

    ["screens in CSS pixels", () => {
        const { width, height, availableWidth, scale, isPrimary } = Utils.getPrimaryScreenGeometry().data;
        return [width, height, availableWidth, scale, isPrimary];
    }, [400, 300, 400, 2, true]],
    ["all screens, and the page's", () => [Utils.getAllScreenGeometry().data, Utils.getCurrentScreenGeometry().data],
        [[Utils.getPrimaryScreenGeometry().data], Utils.getPrimaryScreenGeometry().data]],

    ["a colour with its opacity", pick("pickColor", { alpha: true }), [true, { accepted: true, color: "#12ab34", alpha: 0.502 }]],
    ["a colour", pick("pickColor", { color: "#fff", title: "Pick" }), [true, { accepted: true, color: "#12ab34" }]],
    ["the colour to begin with", pick("pickColor", { color: "#A0B0C0" }), [true, { accepted: true, color: "#a0b0c0" }]],
    ["no colour", pick("pickColor", {}), [true, { accepted: false }]],
    ...bare(["one dialog at a time", async () => {
        const first = pick("pickColor", {})();
        return [await pick("pickColor", {})(), Tools.showConfirmDlg({ text: "?" }).data, Utils.getPictureFilepath({}).data, (await first)[1].accepted];
    }, [[false], -1, [], false]]),
    ...["red", "#12", "#12345g", "#11223344"].map((color) => [`no colour to begin with: ${color}`, () => Utils.pickColor({ color }, () => 1), wrong]),
    ["a colour for nobody", () => call(Utils, "pickColor", {}), missing],
    ["a colour for what is no function", () => call(Utils, "getSnapperColor", {}, {}), wrong],
    ["an eyedropper without X11", pick("getSnapperColor", {}), [false]],
    ["an eyedropper that magnifies too much", pick("getSnapperColor", { zoom: 21 }), wrong],

    ["a decision", data(() => Tools.showConfirmDlg({ text: "<b>?", detail: "why", title: "t", buttons: ["No", "Save & quit", "Cancel"] })), 1],
    ["a decision that is cancelled", data(() => Tools.showConfirmDlg({ text: "?" })), -1],
    ["neither of them", data(() => Tools.showConfirmDlg({ text: "?", type: "warning" })), -1],
    ["without an answer the default", data(() => Tools.showConfirmDlg({ text: "?".repeat(100000), buttons: ["a", "b", "c"], defaultButton: 2, type: "none" })), 2],
    ["a decision about nothing", () => call(Tools, "showConfirmDlg"), missing],
    ...[{ buttons: ["a", ""] }, { buttons: ["a", 1] }, { buttons: Array(6).fill("a") }, { buttons: ["a".repeat(61)] }, { defaultButton: 2 },
        { defaultButton: -1 }, { type: "other" }, { title: 1 }].map((options) =>
        [`a decision with ${show(options)}`, () => call(Tools, "showConfirmDlg", { text: "?", ...options }), wrong]),

    ["a picture that the user chooses", data(() => Utils.getPictureFilepath({})), [`${home}/upright.png`]],
    ["several", () => Utils.getPictureFilepath({ multiple: true, dir: home }).data.sort(), [`${home}/other.png`, `${home}/upright.png`]],
    ["none", data(() => Utils.getPictureFilepath({ title: "t" })), []],

    ["a closed directory", () => ["closed", "closed/x", "open"].map((name) => Utils.inBlackDownloadDir(`${home}/${name}`).data), [true, true, false]],
    ["a relative path", () => Utils.inBlackDownloadDir("closed"), wrong],
    ["no path", () => call(Utils, "inBlackDownloadDir", 5), missing],
    ["the suite's addresses", () => ["account", "docs", "none"].map((name) => Tools.getDomainUrl({ name }).data),
        ["https://account.example", "https://docs.example.invalid", ""]],
    ["an address without a name", () => call(Tools, "getDomainUrl", {}), missing],
    ["the intranet", data(() => Tools.getIntranetType()), 2],
]);

const odd = ["a b", "\"", "\"\"", "\"a\"", "a\"\"\"b\"", "$(x) `x` ; & | > *", "back\\slash\\", "new\nline \u00fc", "-x"];
const touched = (/** @type {string} */ name) => until(() => FileSystem.exists(`${home}/started/${name}`).data);
await check([
    ["a program gets its arguments as they are", async () => {
        const started = Utils.startDetach({ program: "/usr/bin/touch", arguments: ["--", ...odd.map((name) => `${home}/started/${name}`)] });
        return [started, await Promise.all(odd.map(touched))];
    }, [true, odd.map(() => true)]],
    ["a program of the suite's", async () => [Tools.launchProcessByNova({ program: "touch", arguments: [`${home}/started/own`] }).data, await touched("own")], [true, true]],
    ...["touch", "/usr/bin/../bin/touch", "/usr/bin//touch", "/usr/bin/touch\0"].map((program) =>
        [`a program by the path ${show(program)}`, () => Utils.startDetach({ program }), wrong]),
    ["a program that the page may not start", () => Utils.startDetach({ program: "/usr/bin/true" }), denied],
    ["one of the suite's", () => Tools.launchProcessByNova({ program: "true" }), denied],
    ...["../bin/touch", "..", "/usr/bin/touch"].map((program) => [`a program of the suite's by ${program}`, () => Tools.launchProcessByNova({ program }), wrong]),
    ...[[""], ["a\0b"], ["\ud800"], [5], "a"].map((given) =>
        [`a program with the arguments ${show(given)}`, () => call(Utils, "startDetach", { program: "/usr/bin/touch", arguments: given }), wrong]),
    ["no program", () => call(Utils, "startDetach", {}), missing],
]);

// What run_test.py is to find in the log.
/** @type {string[]} */
const opened = [];
const opens = (/** @type {string} */ name, /** @type {() => { data: boolean }} */ action, /** @type {string} */ address) =>
    [name, () => [opened.push(address) > 0, action().data], [true, true]];
await check([
    opens("an address", () => Tools.openUrl({ url: "https://\u00fc.example:8443/a%20b?c=%26\u00fc#d" }), "https://xn--tda.example:8443/a%20b?c=%26%C3%BC#d"),
    opens("http", () => Tools.openUrl({ url: "HTTP://docs.example" }), "http://docs.example"),
    opens("a mail address", () => Tools.openUrl({ url: "mailto:a@b.example,c%2Bd@e.example?Subject=x%20y&CC=f@g.example" }),
        "mailto:a@b.example,c%2Bd@e.example?cc=f@g.example&subject=x%20y"),
    opens("a mail", () => Tools.sendMail({ to: ["a&b?c=%@d.example", "\u00fc@e.example"], bcc: ["f@g.example"], subject: "1+1 & 2?", body: "a\nb\r\nc %0D&cc=x@y" }),
        "mailto:a%26b%3Fc%3D%25@d.example,%C3%BC@e.example?bcc=f@g.example&subject=1%2B1%20%26%202%3F&body=a%0D%0Ab%0D%0Ac%20%250D%26cc%3Dx%40y"),
    opens("a mail to nobody yet", () => Tools.sendMail({ subject: "s" }), "mailto:?subject=s"),
    ["no mail", () => call(Tools, "sendMail", {}), missing],
    ...[{ to: ["a@b.example\ncc: c@d.example"] }, { to: ["a@b.example,c@d.example"] }, { cc: ["Ada <a@b.example>"] }, { bcc: ["a"] }, { to: ["a@b@c"] }, { to: [""] },
        { to: ["\u202ea@b.example"] }, { to: "a@b.example" }, { subject: "a\nBcc: c@d.example" }, { body: "a\0" }, { body: "\ud800" }, { body: "a".repeat(60000) },
        { to: Array(101).fill("a@b.example") }].map((mail) => [`a mail with ${show(mail).slice(0, 60)}`, () => call(Tools, "sendMail", mail), wrong]),
    ...["", "docs.example", "file:///etc/passwd", "javascript:1", "ftp://docs.example", "data:text/plain,a", "nova://app/", "https:", "https:///a", "https://u:p@docs.example",
        "https://@docs.example", "https://docs.example/a b", " https://docs.example", "https://docs.example\\@evil.example", "https://docs.example/\r\n", "https://[::1",
        "mailto:a@b.example?attach=/etc/passwd", "mailto:a@b.example?subject=a%0D%0AX: y", "mailto:a@b.example?subject=a%0D%0AX:y", "mailto:%0Aa@b.example",
        `https://docs.example/${"a".repeat(60000)}`].map((url) => [`no address: ${show(url).slice(0, 60)}`, () => Tools.openUrl({ url }), url ? wrong : missing]),
    ...["file:///etc/passwd", "mailto:a@b.example", "data:text/html,a", "nova:app", "about:blank"].map((url) =>
        [`no page: ${url}`, () => Tools.openInnerUrl({ url }), wrong]),
    ["a page with something else passed along", () => call(Tools, "openInnerUrl", { url: "nova://app/inner.html", paramExtra: [1] }), wrong],
]);

/** The window with inner.html, which sends what was passed along to it. @type {(open: () => any) => Promise<any>} */
const inner = (open) => new Promise((resolve) => {
    Event.addEventListener("inner", (/** @type {any} */ ...report) => {
        Event.removeEventListener("inner");
        resolve([view, ...report]);
    });
    const view = open();
});
await check(inBrowser ? [
    ["a page in a window of its own", async () => {
        const [view, ...report] = await inner(() => Tools.openInnerUrl({ url: "nova://app/inner.html", title: "t", width: 300, paramExtra: { a: [1, { b: null }] } }).data);
        WebviewMgr.getWebview(view).destroy();
        return [view.startsWith("inner-page-"), ...report];
    }, [true, { a: [1, { b: null }] }, [1, { b: null }], undefined, 300]],
    ["a window that the page opens", async () => {
        const [view, ...report] = await inner(() => WebviewMgr.create({ id: "inner", isShow: true, paramExtra: { a: "\0" }, geo: { width: 200, height: 100 } }));
        view.destroy();
        return report;
    }, [{ a: "\0" }, "\0", undefined, 200]],
] : [["a page where there is no browser", () => Tools.openInnerUrl({ url: "https://docs.example" }), refusal(3, "create web widget fail!")]]);
await check([
    ["what is passed along to a page that nobody opened", () => [Utils.getParamExtra().data, Utils.getParamExtra({ key: "a" }).data], [{}, undefined]],

    ["a page does not start things without end", () => {
        for (let i = 0; i < 1000; ++i)
            Tools.openUrl({ url: `https://many.example/${i}` });
    }, refusal(3, "Too many launches.")],
]);

/** @type {Promise<string>} */
const session = new Promise((resolve) => Account.addEventListener("event.account.login", ({ novasid }) => resolve(novasid)));
const before = Utils.getCsrf().data;
process.play("logout");
await until(() => !Account.isLoggedIn().data);
await check([["a token without a user", () => Utils.getCsrf(), refusal(3, "User not login")]]);
process.play("login:user-2");
const csrf = { session: await session, token: Utils.getCsrf().data };
await check([["a token for each session", () => [before.length, before === csrf.token], [64, false]]]);
console.log(JSON.stringify({ opened, csrf }));
exit(failures ? 1 : 0);
