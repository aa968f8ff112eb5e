// The shared cases in Node against the testkit, and what only the testkit has: rows, the clock, recordings and its errors.
// usage: node --test kit.mjs, with the testkit's folder in TESTKIT
import assert from "node:assert/strict";
import { readFileSync } from "node:fs";
import { test } from "node:test";
import { pathToFileURL } from "node:url";

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
    ["a misspelt property", { member: "Account.getUserInfo", answer: fill({ nickname: "Ada" }) }, /no property "nickname". Did you mean "nickName"/],
    ["a missing property", { member: "Account.getUserInfo", answer: { nickName: "Ada" } }, /"userId" of UserInfo is missing; fill\(/],
    ["a failure that is not declared", { member: "FileSystem.mkpath", failure: "the directory exists" }, /does not fail with "the directory exists"/],
    ["a failure of another code", { member: "FileSystem.mkpath", failure: { code: 3, msg: "Path is empty." } }, /does not fail with code 3/],
    ["a failure that is a rejection", { member: "FileSystem.getFileMd5", failure: "Path is empty." }, /is rejected: say rejects/],
    ["a delay where there is none", exists([], true, { after: 1 }), /after: the member returns at once/],
    ["no outcome", { member: "FileSystem.exists" }, /says neither answer \(a boolean\), failure nor rejects/],
]) {
    test(`a row with ${name} is refused`, () => assert.throws(() => createKit({ rows: [row] }), text));
}

for (const [name, pattern, fits, differs, member = "FileSystem.showSelectFilePanel", answer = {}] of [
    ["values in depth", { a: [1, { b: 2 }] }, { a: [1, { b: 2 }] }, { a: [1, { b: 3 }] }],
    ["what is undefined as absent", { a: 1 }, { a: 1, b: undefined }, { a: 1, b: null }],
    ["some properties", match.partial({ a: match.number }), { a: 1, b: 2 }, { a: "1" }],
    ["a regular expression", /^a/, "ab", "b"],
    ["a function", (value) => value > 1, 2, 1],
    ["bytes", new Uint8Array([1]), new Uint8Array([1]).buffer, new Uint8Array([2]), "Crypto.md5Data", ""],
]) {
    test(`a pattern takes ${name}`, () => {
        const { NovaExtension } = createKit({ rows: [{ member, arguments: [pattern], answer }] });
        const [object, name] = member.split(".");
        assert.deepEqual(NovaExtension[object][name](fits).data, answer);
        assert.throws(() => NovaExtension[object][name](differs), UnexpectedCall);
    });
}

test("rows: the last that were added, then in their order, as often as they say", () => {
    kit = createKit({ rows: [exists(["/a"], false), { member: "FileSystem.isDir", answer: true }] });
    kit.use(exists([match.string], true, { times: 1 }));
    const { FileSystem } = kit.NovaExtension;
    assert.deepEqual([FileSystem.exists("/a").data, FileSystem.exists("/a").data], [true, false]);
    assert.throws(() => FileSystem.exists("/b"), { name: "UnexpectedCall",
        message: /Unexpected call: FileSystem.exists\("\/b"\)\n {2}nearest row: .*\n {4}argument 1: expected "\/a", got "\/b"\n/ });
    assert.throws(() => kit.verify(), /Unexpected call: [^]*never called: FileSystem.isDir/);
    assert.deepEqual(kit.callsOf("FileSystem.exists").map((call) => call.arguments), [["/a"], ["/a"], ["/b"]]);
});

test("rows of objects that are handed out; time; callbacks", async () => {
    const settings = "SettingsManager.Settings.getValue";
    kit = createKit({ rows: [{ member: settings, of: [{ format: 0 }], answer: "a" }, { member: settings, of: [match.partial({ format: 1 })], answer: "b" },
        md5({ after: 20 }), { member: "ConfigCenter.flushWrite", answer: true, callback: [{ key: "k", value: 1, ok: true }], after: 10 }] });
    const { ConfigCenter, FileSystem, SettingsManager } = kit.NovaExtension;
    const [one, other] = [SettingsManager.settings({ format: 0 }), SettingsManager.settings({ format: 1, path: "/s" })];
    const heard = [one.getValue({ key: "k" }).data, other.getValue({ key: "k" }).data];
    FileSystem.getFileMd5("/a").then((digest) => heard.push(digest));
    ConfigCenter.flushWrite({ key: "k", value: 1 }, ({ ok }) => heard.push(ok));
    for (const expected of [["a", "b"], ["a", "b", true], ["a", "b", true, "d"]]) {
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
    assert.throws(() => kit.emit("Account", "event.account.logi", {}), /Did you mean "event.account.login"/);
    assert.throws(() => kit.emit("Skin", "skinchangeevent", { name: 1, previousName: "" }), /skinchangeevent.name: a string is expected, not 1/);
});

const settings = "NovaExtension.SettingsManager.Settings";
const recording = [
    { novaRecording: 1, library: "0", origin: "nova://script" },
    { at: 1, type: "call", id: 1, object: "NovaExtension.SettingsManager", member: "settings", arguments: [{ format: 0 }], answer: { $object: 3, class: settings } },
    { at: 2, type: "call", id: 2, object: settings, instance: 3, member: "getValue", arguments: [{ key: "k" }], answer: { success: true, data: "v" } },
    { at: 3, type: "call", id: 3, object: "NovaExtension.FileSystem", member: "getFileMd5", arguments: ["/a"], promise: 7 },
    { at: 4, type: "call", id: 4, object: "NovaExtension.FileSystem", member: "mkpath", arguments: ["/m"], thrown: { code: 3, msg: "the directory already exist" } },
    { at: 5, type: "call", id: 5, object: "NovaExtension.Hive", member: "addDataWatch", arguments: [{ key: "k" }, { $function: 5 }],
        answer: { success: true, data: { $undefined: true } }, duration: 2 },
    { at: 6, type: "callback", function: 5, arguments: [{ key: "k", value: { $bytes: "AQ==" } }] },
    { at: 8, type: "settled", promise: 7, state: "resolved", value: "d" },
    { at: 8.5, type: "call", id: 6, object: "NovaExtension.Account", member: "addLoginListener", arguments: [{ $function: 6 }], answer: { success: true, data: { $undefined: true } } },
    { at: 9, type: "event", object: "NovaExtension.Account", event: "event.account.login", arguments: [{ userId: "u" }] },
].map((entry) => JSON.stringify(entry)).join("\n");

async function page({ Account, FileSystem, Hive, SettingsManager }, path = "/a") {
    const heard = [SettingsManager.settings({ format: 0 }).getValue({ key: "k" }).data];
    const digest = FileSystem.getFileMd5(path);
    try {
        FileSystem.mkpath("/m");
    } catch ({ code }) {
        heard.push(code);
    }
    Hive.addDataWatch({ key: "k" }, ({ value }) => heard.push([...value]));
    heard.push("added", await digest);
    await new Promise((resolve) => Account.addLoginListener(({ userId }) => resolve(heard.push(userId))));
    return heard;
}

test("a recording is played with its promises, callbacks and events", async () => {
    kit = createKit({ recording });
    assert.deepEqual(await page(kit.NovaExtension), ["v", 3, [1], "added", "d", "u"]);
    kit.verify();
    kit = createKit({ recording });
    await assert.rejects(page(kit.NovaExtension, "/b"), /recorded: FileSystem.getFileMd5\("\/a"\)\n {4}argument 1: expected "\/a", got "\/b"/);
    assert.throws(() => kit.verify(), /recorded, but not called: Account.addLoginListener/);
});

test("a recording in strict order keeps the order of each object, a loose one none", () => {
    for (const [order, outcome] of [["strict", /recorded: FileSystem.getFileMd5/], ["loose", /already exist/]]) {
        kit = createKit({ recording: { text: recording, order } });
        assert.throws(() => kit.NovaExtension.FileSystem.mkpath("/m"), outcome);
    }
});
