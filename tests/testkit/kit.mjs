// The shared cases in Node against the testkit, and what only the testkit has: rows, the clock, recordings and its errors.
// usage: node --test kit.mjs, with the testkit's folder in TESTKIT
import assert from "node:assert/strict";
import { readFileSync } from "node:fs";
import { test } from "node:test";
import { pathToFileURL } from "node:url";
import { inspect } from "node:util";

const { createKit, fill, match, UnexpectedCall } = await import(new URL("index.js", pathToFileURL(`${process.env.TESTKIT}/`)));
const read = (name) => readFileSync(new URL(name, import.meta.url), "utf8");
const folder = "/home/ada";
const { dialogs } = JSON.parse(read("cases.profile.json").replaceAll("${FOLDER}", folder));
let kit;
const world = { get NovaExtension() { return kit.NovaExtension; } };
const cases = new Function("world", "folder", "happen", `with (world) {\n${read("cases.js")}\nreturn cases; }`)(world, folder,
    () => world.step(kit, fill));

for (const [name, options, act, expected, further] of cases) {
    test(name, async () => {
        world.step = options.happen;
        const rows = [...options.rows ?? [], ...further?.rows.map((row) => ({ ...row, arguments: [-1] })) ?? []];
        kit = createKit({ rows, dialogs: options.dialogs && dialogs.answers });
        assert.deepEqual(await act(), expected);
        kit.verify();
    });
}

const exists = (of, answer = true, more = {}) => ({ member: "FileSystem.exists", arguments: of, answer, ...more });
const md5 = (more) => ({ member: "FileSystem.getFileMd5", answer: "d", ...more });

for (const [name, row, text] of [
    ["a misspelt member", { member: "FileSystem.exist", answer: true }, /no member "FileSystem.exist". Did you mean "FileSystem.exists"/],
    ["a misspelt key", { member: "FileSystem.exists", answr: true }, /no "answr". Did you mean "answer"/],
    ["another type", exists([], "yes"), /answer: a boolean is expected, not "yes"/],
    ["an envelope", exists([], { success: true, data: true }), /answer: the data alone is expected/],
    ["a promise", md5({ answer: Promise.resolve("d") }), /answer: the value itself is expected, not a Promise/],
    ["a misspelt property", { member: "Account.getUserInfo", answer: fill({ nickname: "Ada" }) }, /no property "nickname". Did you mean "nickName"/],
    ["a missing property", { member: "Account.getUserInfo", answer: { nickName: "Ada" } }, /"userId" of UserInfo is missing; fill\(/],
    ["a failure that is not declared", { member: "FileSystem.mkpath", failure: "the directory exists" }, /does not fail with "the directory exists"/],
    ["a failure that is a rejection", { member: "FileSystem.getFileMd5", failure: "Path is empty." }, /is rejected: say rejects/],
    ["no outcome", { member: "FileSystem.exists" }, /says neither answer \(a boolean\), failure nor rejects/],
]) {
    test(`a row with ${name} is refused`, () => assert.throws(() => createKit({ rows: [row] }), text));
}

for (const [pattern, fits, differs] of [
    [{ a: [1, { b: 2 }] }, { a: [1, { b: 2 }], c: undefined }, { a: [1, { b: 3 }] }],
    [match.partial({ a: match.number }), { a: 1, b: 2 }, { a: "1" }],
    [{ a: /^a/ }, { a: "ab" }, { a: "b" }],
]) {
    test(`${inspect(pattern)} takes ${inspect(fits)}, and not ${inspect(differs)}`, () => {
        const { ConfigCenter } = createKit({ rows: [{ member: "ConfigCenter.setValue", arguments: [{ key: "k", value: pattern }], answer: true }] }).NovaExtension;
        ConfigCenter.setValue({ key: "k", value: fits });
        assert.throws(() => ConfigCenter.setValue({ key: "k", value: differs }), UnexpectedCall);
    });
}

test("rows: the last that were added, then in their order, as often as they say", () => {
    kit = createKit({ rows: [exists(["/a"], false), { member: "FileSystem.isDir", answer: true }] });
    kit.use(exists([match.string], true, { times: 1 }));
    const { FileSystem } = kit.NovaExtension;
    assert.deepEqual([FileSystem.exists("/a").data, FileSystem.exists("/a").data], [true, false]);
    assert.throws(() => FileSystem.exists("/b"), { name: "UnexpectedCall", stack: /got "\/b"\n.*\n {4}at .*kit\.mjs/,
        message: /Unexpected call: FileSystem.exists\("\/b"\)\n {2}nearest row: .*\n {4}argument 1: expected "\/a", got "\/b"\n/ });
    assert.throws(() => kit.verify(), /Unexpected call: [^]*never called: FileSystem.isDir/);
    assert.deepEqual(kit.callsOf("FileSystem.exists").map((call) => call.arguments), [["/a"], ["/a"], ["/b"]]);
});

test("rows of objects that are handed out; time; callbacks", async () => {
    const settings = "SettingsManager.Settings.getValue";
    kit = createKit({ rows: [{ member: settings, of: [{ format: 0 }], answer: "a" }, { member: settings, of: [match.partial({ format: 1 })], answer: "b" },
        { member: "Crypto.md5Data", arguments: [new Uint8Array([1])], answer: "c" }, md5({ after: 20 }), { member: "ConfigCenter.flushWrite", answer: true, callback: [{ key: "k", value: 1, ok: true }], after: 10 }] });
    const { ConfigCenter, Crypto, FileSystem, SettingsManager } = kit.NovaExtension;
    const [one, other] = [SettingsManager.settings({ format: 0 }), SettingsManager.settings({ format: 1, path: "/s" })];
    const heard = [one.getValue({ key: "k" }).data, other.getValue({ key: "k" }).data, Crypto.md5Data(new Uint8Array([1]).buffer).data];
    FileSystem.getFileMd5("/a").then((digest) => heard.push(digest));
    ConfigCenter.flushWrite({ key: "k", value: 1 }, ({ ok }) => heard.push(ok));
    for (const expected of [["a", "b", "c"], ["a", "b", "c", true], ["a", "b", "c", true, "d"]]) {
        assert.deepEqual(heard, expected);
        await kit.clock.advance(10);
    }
});

test("events are checked, and heard by one object or by all", () => {
    kit = createKit();
    const [one, other] = [1, 2].map(() => kit.NovaExtension.CloudDoc.createUploadFileTask({ filePath: "/a" }));
    const heard = [];
    one.addEventListener("cloud.upload.finished", ({ status }) => heard.push(`one ${status}`));
    other.addEventListener("cloud.upload.finished", ({ status }) => heard.push(`other ${status}`));
    kit.emit(one, "cloud.upload.finished", fill({ status: "1" }));
    kit.emit("CloudDoc.UploadFileTask", "cloud.upload.finished", fill({ status: "2" }));
    assert.deepEqual(heard, ["one 1", "one 2", "other 2"]);
    kit.NovaExtension.Webview.addResizeListener((...sizes) => heard.push(...sizes));
    kit.emit("Webview", "Resize", { w: 2, h: 1 }, fill());
    assert.deepEqual(heard.slice(3), [{ w: 2, h: 1 }, { w: 0, h: 0 }]);
    assert.throws(() => kit.emit("Account", "event.account.logi", {}), /Did you mean "event.account.login"/);
    assert.throws(() => kit.emit("Skin", "skinchangeevent", { name: 1, previousName: "" }), /skinchangeevent.name: a string is expected, not 1/);
});

const recording = read(process.env.RECORDING ? pathToFileURL(process.env.RECORDING) : "page.recording.jsonl");
const page = new Function("NovaExtension", "happen", `return (async () => {\n${read("page.js")}\nreturn heard; })();`);
const heard = ["outline", "/no is not existed", 1, false, [97, 98], ["1152921504606846976", true], { a: [1, undefined] }, "user-1", "User not login"];

test("a recording is played with its promises, callbacks and events", async () => {
    kit = createKit({ recording });
    assert.deepEqual(await page(kit.NovaExtension, () => {}), heard);
    kit.verify();
    kit = createKit({ recording: recording.replace('"/no"', '"/yes"') });
    await assert.rejects(page(kit.NovaExtension), /recorded: FileSystem.getFileMd5\("\/yes"\)\n {4}argument 1: expected "\/yes", got "\/no"/);
    assert.throws(() => kit.verify(), /recorded, but not called: CloudDoc.getRoamingMode/);
});

test("what is recorded within a call is played within it", () => {
    const lines = [{ novaRecording: 1 }, { at: 1, type: "call", id: 1, object: "NovaExtension.Hive", member: "addDataWatch",
        arguments: [{ key: "k" }, { $function: 5 }], answer: { success: true, data: "now" }, duration: 2 },
    { at: 2, type: "callback", within: 1, function: 5, arguments: [{ key: "k", value: { $bytes: "AQ==" } }] }];
    const heardThen = [];
    kit = createKit({ recording: lines.map((line) => JSON.stringify(line)).join("\n") });
    heardThen.push(kit.NovaExtension.Hive.addDataWatch({ key: "k" }, ({ value }) => heardThen.push([...value])).data);
    assert.deepEqual(heardThen, [[1], "now"]);
});

test("a recording in strict order keeps the order of each object, a loose one none", () => {
    for (const [order, outcome] of [["strict", /Unexpected call/], ["loose", /User not login/]]) {
        kit = createKit({ recording: { text: recording, order } });
        const { Account, CloudDoc } = kit.NovaExtension;
        const late = () => (order === "strict" ? Account.addEventListener("event.account.logout", () => {}) : CloudDoc.getRoamingMode());
        assert.throws(late, outcome);
    }
});
