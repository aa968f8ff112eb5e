// The tests of notes.js. In Node the testkit stands for the suite: `npm install`, once, and `npm test`. In novahost the same
// tests run against the real library, in both of its engines: `node run.mjs NOVAHOST [--browser]`. What differs is in suite.js.
import assert from "node:assert/strict";
import { test } from "node:test";

import { attach, digest, ensureFolder, greet, loadView, mayRemove, pickInk, saveView } from "./notes.js";
import { begin, fill, folder, signOut, turn } from "./suite.js";

test("the view is the default at first", () => {
    begin({ member: "SettingsManager.Settings.getValue", arguments: [{ key: "notes/view", defaultValue: "outline" }], answer: "outline" });
    assert.equal(loadView(), "outline");
});

test("the view is kept", () => {
    let kept = "";
    begin({ member: "SettingsManager.Settings.setValue", answer: ({ value }) => void (kept = String(value)) },
        { member: "SettingsManager.Settings.getValue", answer: () => kept });
    saveView("page");
    assert.equal(loadView(), "page");
});

test("a view without a name is refused", () => {
    begin();
    assert.throws(() => saveView(/** @type {any} */ (undefined)), { code: 1, msg: "missing required parameters." });
});

test("a file is attached", async () => {
    begin({ member: "FileSystem.getFileMd5", arguments: [`${folder}/letter.txt`], answer: "5f6557e89d3365adbafdd90211fb711e" });
    const attached = await attach(folder);
    assert.deepEqual(attached, { name: "letter.txt", digest: "5f6557e89d3365adbafdd90211fb711e" });
});

test("nothing is attached when the user cancels", async () => {
    begin();
    assert.equal(await attach(folder), null);
});

test("a file that has gone has no digest", async () => {
    const path = `${folder}/gone.txt`;
    begin({ member: "FileSystem.getFileMd5", arguments: [path], rejects: `${path} is not existed`, after: 20 });
    const promise = digest(path);
    await turn(20);
    assert.equal(await promise, `no digest: ${path} is not existed`);
});

test("a folder is made once", () => {
    begin({ member: "FileSystem.mkpath", times: 1, answer: true }, { member: "FileSystem.mkpath", failure: "the directory already exist" });
    assert.deepEqual([ensureFolder(`${folder}/made`), ensureFolder(`${folder}/made`)], [true, false]);
});

test("the user decides what is removed", () => {
    begin();
    assert.deepEqual([mayRemove("A letter"), mayRemove("Another one")], [true, false]);
});

test("the user picks an ink", async () => {
    begin();
    assert.equal(await pickInk(), "#204080");
});

test("the greeting follows who is signed in", async () => {
    let user = "Ada";
    begin({ member: "Account.isLoggedIn", answer: () => user !== "" },
        { member: "Account.getUserInfo", answer: () => fill({ nickName: user }) });
    /** @type {string[]} */
    const greetings = [];
    greet((greeting) => greetings.push(greeting));
    await signOut(() => (user = ""));
    assert.equal(greetings.length, 2);
    assert.match(greetings[0], /^Hello ./);
    assert.equal(greetings[1], "Hello");
});
