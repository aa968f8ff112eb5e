// The suite of the tests in Node: the testkit. Each test says with begin() what it expects the page to call.
import { readFileSync } from "node:fs";
import { afterEach } from "node:test";

import { createKit, fill } from "nova-extension-testkit";

export { fill };
export const folder = "/home/ada/notes";

// How the user ends each dialog: the list of the profile that the tests in novahost have, used up from test to test.
const profile = JSON.parse(readFileSync(new URL("notes.profile.json", import.meta.url), "utf8").replaceAll("${FOLDER}", folder));
let used = 0;

/** @type {import("nova-extension-testkit").Kit | undefined} */
let kit;

/** @param {import("nova-extension-testkit").AnyRow[]} rows */
export function begin(...rows) {
    kit = createKit({ rows, dialogs: profile.dialogs.answers.slice(used) }).install();
}

afterEach(() => {
    used += kit?.calls.filter(({ member }) => /getOpenFileName|showConfirmDlg|pickColor/.test(member)).length ?? 0;
    kit?.uninstall();
    kit?.verify();
});

/** Somebody signs out. @param {() => void} change what that changes for the rows */
export async function signOut(change) {
    change();
    kit?.emit("Account", "event.account.logout", fill({ userId: "user-1" }));
}

/** Lets time pass. @param {number} milliseconds */
export async function turn(milliseconds) {
    await kit?.clock.advance(milliseconds);
}
