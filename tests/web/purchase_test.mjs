// Buys on the suite's purchase page, through the browser's DevTools protocol, as the user does, and as pages may try to.
//
// usage: purchase_test.mjs NOVAHOST

import assert from "node:assert/strict";
import { spawn } from "node:child_process";
import { once } from "node:events";
import { mkdtemp, rm, writeFile } from "node:fs/promises";
import { createServer } from "node:net";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { createInterface } from "node:readline";
import puppeteer from "puppeteer-core";

const timeout = 120000;
const [novahost] = process.argv.slice(2);
const HOSTILE = "<img src=x onerror=document.title=1> & 50%+#?";
const home = await mkdtemp(join(tmpdir(), "purchase-"));
await writeFile(join(home, "page.html"), "<!DOCTYPE html><title>A page</title>");
// Shown, though there is no display.
await writeFile(join(home, "profile.json"), JSON.stringify({ dialogs: { mode: "show" },
    account: { tiers: ["plain", HOSTILE, "other"].map((name) => ({ name, privileges: [name] })) } }));
const server = createServer().listen(0, "127.0.0.1");
await once(server, "listening");
const { port } = server.address();
server.close();
const root = process.getuid() === 0 ? { QTWEBENGINE_DISABLE_SANDBOX: "1" } : {};
const suite = spawn(novahost, ["--profile", join(home, "profile.json"), "--devtools", String(port), "open", join(home, "page.html")],
    { env: { ...process.env, ...root, HOME: home, QT_QPA_PLATFORM: "offscreen" }, stdio: ["ignore", "inherit", "pipe"] });

const endpoint = await new Promise((resolve, reject) => {
    suite.once("exit", () => reject(new Error("novahost has ended")));
    createInterface(suite.stderr).on("line", (line) => {
        console.error(line);
        const found = /^DevTools listening on (.*)$/.exec(line);
        if (found)
            resolve(found[1]);
    });
});
const browser = await puppeteer.connect({ browserWSEndpoint: endpoint, defaultViewport: null });
const pageAt = async (address) => (await browser.waitForTarget((one) => one.url().startsWith(address), { timeout })).page();
const page = await pageAt("nova://app/");

/** Has the page open the purchase page, and returns that. */
async function open(item) {
    await page.evaluate((options) => {
        self.outcome = "";
        NovaExtension.Payment.open(options).then(({ status, item: bought }) => `${status}: ${bought}`, ({ msg }) => msg)
            .then((outcome) => { self.outcome = outcome; });
    }, { source: "page", item });
    const sale = await pageAt("nova://purchase/");
    await sale.waitForSelector("#buy");
    return sale;
}
// The page may be gone when it is to confirm what has been done.
const goes = (sale, ...action) => sale.evaluate(...action).catch(() => {});
const click = (sale, selector) => goes(sale, (where) => document.querySelector(where).click(), selector);
const visit = (...addresses) => (sale) => goes(sale, (all) => all.forEach((address, i) => setTimeout(() => { location.href = address; }, 200 * i)), addresses);

const ROWS = [
    ["what the page names", "other", (sale) => click(sale, "#buy"), "purchased: other"],
    ["what is not for sale", "yacht", (sale) => click(sale, "#buy"), "purchased: plain"],
    ["another choice", "plain", async (sale) => { await click(sale, "label:last-of-type"); await click(sale, "#buy"); }, "purchased: other"],
    ["the user cancels", "plain", (sale) => click(sale, "#cancel"), "cancelled: "],
    ["the user closes the window", "plain", (sale) => goes(sale, () => self.close()), "closed: "],
    ["the page stays where it is", "plain", visit("bought?yacht", "nova://app/page.html", "https://example.invalid/", "cancelled"), "cancelled: "],
    ["the purchase page crashes", "plain", async (sale) => { (await sale.target().createCDPSession()).send("Page.crash").catch(() => {}); },
        "The purchase page can not be loaded."],
    ["the page goes", "plain", async (sale) => {
        const gone = once(sale, "close");
        await page.reload();
        await gone;
        await click(await open("other"), "#cancel");
    }, "cancelled: "],
    ["the user signs out", "plain", () => page.evaluate(() => { NovaExtension.Account.logout("page"); }), "cancelled: "],
    ["nobody buys", null, () => {}, "User not login"],
];

try {
    const sale = await open(HOSTILE);
    assert.deepEqual(await sale.evaluate(() => [document.title, document.images.length, document.querySelector(":checked").parentNode.textContent,
        typeof NovaExtension]), ["Buy a membership", 0, ` ${HOSTILE}`, "undefined"]);
    // Of the calling page's own: it can show such a page, and press its buttons by way of the user, and nothing is bought.
    await page.evaluate(() => new Promise((resolve) => {
        const frame = document.createElement("iframe");
        frame.src = "nova://purchase/index.html?item=plain&first=plain";
        frame.onload = resolve;
        document.body.append(frame);
    }));
    const frame = page.frames().find((one) => one.url().startsWith("nova://purchase/"));
    assert.equal(await page.evaluate(() => { try { return frames[0].document.title; } catch (error) { return error.name; } }), "SecurityError");
    await goes(frame, () => document.querySelector("#buy").click());
    assert.equal(await page.evaluate(() => self.outcome), "");
    await click(sale, "#buy");
    await page.waitForFunction(() => self.outcome, { timeout });
    assert.equal(await page.evaluate(() => self.outcome), `purchased: ${HOSTILE}`);
    assert.deepEqual(await page.evaluate(() => Object.entries(NovaExtension.Account.getMemberInfo().data.members)
        .filter(([, { isMember }]) => isMember).map(([name]) => name)), [HOSTILE]);
    for (const [name, item, act, expected] of ROWS) {
        if (item)
            await act(await open(item));
        else
            await page.evaluate(() => NovaExtension.Payment.open({ source: "page" }).catch(({ msg }) => { self.outcome = msg; }));
        await page.waitForFunction(() => self.outcome, { timeout });
        assert.equal(await page.evaluate(() => self.outcome), expected, name);
    }
} finally {
    browser.disconnect();
    suite.removeAllListeners("exit");
    suite.kill();
    await rm(home, { recursive: true });
}
