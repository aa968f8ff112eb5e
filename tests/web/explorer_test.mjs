// Drives the explorer from outside, as a user does, on an X server of its own: with the mouse through the browser's DevTools
// protocol, with the keyboard through the server, because this browser hangs at keys that come through the protocol.
//
// usage: explorer_test.mjs NOVAHOST EXPLORER_DIR API_JSON

import assert from "node:assert/strict";
import { execFile, spawn } from "node:child_process";
import { once } from "node:events";
import { chmod, mkdir, mkdtemp, readFile, rm, writeFile } from "node:fs/promises";
import { createServer } from "node:net";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { createInterface } from "node:readline";
import { after, before, test } from "node:test";
import { setTimeout as delay } from "node:timers/promises";
import { promisify } from "node:util";
import puppeteer from "puppeteer-core";

const [novahost, explorer, apiFile] = process.argv.slice(2);
const { objects } = JSON.parse(await readFile(apiFile, "utf8"));
const WAIT_MS = 120000;
const LIMIT = { timeout: 2 * WAIT_MS };

let home, env, suite, browser, page;
const started = [];
const errors = [];

const run = async (...command) => (await promisify(execFile)(command[0], command.slice(1), { env })).stdout;
const press = (...keys) => run("xdotool", "key", ...keys);

function start(command, ...given) {
    const child = spawn(command, given, { env, cwd: home, stdio: ["ignore", "inherit", "pipe", "pipe"] });
    started.unshift(child);
    return child;
}

/** The first line that matches, of what a process writes. */
function lineOf(child, stream, pattern, take = () => {}) {
    return new Promise((resolve, reject) => {
        child.once("error", reject);
        child.once("exit", () => reject(new Error(`${child.spawnfile} has ended`)));
        createInterface(stream).on("line", (line) => {
            take(line);
            const match = pattern.exec(line);
            if (match)
                resolve(match);
        });
    });
}

async function freePort() {
    const server = createServer().listen(0, "127.0.0.1");
    await once(server, "listening");
    const { port } = server.address();
    server.close();
    await once(server, "close");
    return port;
}

/** Takes down what goes wrong in a page. */
function watch(one) {
    one.setDefaultTimeout(WAIT_MS);
    one.on("console", (message) => {
        if (["error", "warning", "assert"].includes(message.type()))
            errors.push(message.text());
    });
    one.on("pageerror", (error) => errors.push(error.message));
    one.on("error", (error) => errors.push(error.message)); // it has crashed
}

before(async () => {
    home = await mkdtemp(join(tmpdir(), "explorer-"));
    await mkdir(join(home, "bin"));
    // In the place of the desktop's opener, which is not to open anything here.
    await writeFile(join(home, "bin/xdg-open"), "#!/bin/sh\n");
    await chmod(join(home, "bin/xdg-open"), 0o755);
    await mkdir(join(home, "user/documents"), { recursive: true });
    await writeFile(join(home, "user/documents/contract.txt"), "The contract is due in July.\n");
    await mkdir(join(home, "plugins/slow/package/resources"), { recursive: true });
    await writeFile(join(home, "plugins/slow/package/resources/large"), Buffer.alloc(2e6));
    await writeFile(join(home, "plugins/slow/plugin.json"),
        JSON.stringify({ name: "slow", version: "1", source: "package", bytes: 2e6, bytesPerSecond: 2e6 }));
    const root = process.getuid() === 0 ? { QTWEBENGINE_DISABLE_SANDBOX: "1" } : {};
    env = { ...process.env, ...root, HOME: home, PATH: `${home}/bin:${process.env.PATH}`, QT_QPA_PLATFORM: "xcb",
        QT_QUICK_BACKEND: "software", QTWEBENGINE_CHROMIUM_FLAGS: "--disable-gpu" };
    const server = start("Xvfb", "-displayfd", "3", "-screen", "0", "1600x1200x24", "-nolisten", "tcp");
    server.stderr.resume();
    env.DISPLAY = `:${(await lineOf(server, server.stdio[3], /^\d+$/))[0]}`;
    start("openbox").stderr.resume();
    while (!(await run("xprop", "-root", "_NET_SUPPORTING_WM_CHECK")).includes("window id"))
        await delay(20);
    suite = start(novahost, "--data", home, "--live-counts", "--devtools", String(await freePort()), "open",
        join(explorer, "index.html"), "--size", "1400x900");
    suite.lines = [];
    const [, endpoint] = await lineOf(suite, suite.stderr, /^DevTools listening on (.*)$/, (line) => {
        console.error(line);
        suite.lines.push(line);
    });
    browser = await puppeteer.connect({ browserWSEndpoint: endpoint, defaultViewport: null });
    const target = await browser.waitForTarget((one) => one.url() === "nova://app/index.html", { timeout: WAIT_MS });
    page = await target.page();
    watch(page);
    await page.waitForSelector("[data-view=home]");
});

after(async () => {
    browser?.disconnect();
    started.forEach((child) => child.kill());
    await rm(home, { recursive: true });
});


const pathOf = (object, member) =>
    `${object.name}.${member.name}` + (objects.some(({ name }) => name === `${object.name}.${member.name}`) ? "()" : "");
const view = (path) => `[data-view="${path}"]`;
const plain = (doc) => doc.replaceAll("`", "");
const text = (selector) => page.$eval(selector, (node) => node.textContent);
const isListed = (member, { code, message }) => member.failures.some((failure) => String(failure.code) === code
    && new RegExp(`^${failure.text.split(/%\d/).map((part) => part.replace(/[^\w ]/g, "\\$&")).join("[^]*")}$`).test(message));

/** Puts a text in the place of what an input has. */
async function fillIn(selector, value) {
    await page.$eval(selector, (node) => node.select());
    await page.keyboard.sendCharacter(value);
}

async function openByClick(path) {
    await page.click(`[data-object="${path}"] > .tree-row, [data-member="${path}"] > .tree-row`);
    await page.waitForSelector(view(path));
}

/** Gives the arguments as JSON. */
async function give(values) {
    await page.click("[data-mode=json]");
    await fillIn("[data-role=json]", JSON.stringify(values));
}

/** Presses the button and waits for the end of the call. */
async function callByClick() {
    await page.click("[data-action=call]");
    await page.waitForSelector(".problem:not([hidden]), [data-answer][data-state=ok], [data-answer][data-state=failed]");
    return page.$eval("[data-view]", (shown) => ({
        state: shown.querySelector("[data-answer]").dataset.state,
        code: shown.querySelector(".failure .code")?.textContent.replace("code ", ""),
        message: shown.querySelector(".failure strong")?.textContent,
        note: shown.querySelector(".failure .note")?.textContent,
        value: shown.querySelector("[data-answer] .content").textContent,
        problem: shown.querySelector(".problem").textContent,
    }));
}

/** They wait for the user, who presses Escape. */
const DIALOGS = ["selectLocalFolder", "selectFolderx", "getWritableSaveFileName", "getExistingDirectory", "getOpenFileNames",
    "getOpenFileName", "showSelectFilePanel", "startAccess"].map((name) => `FileSystem.${name}`).concat(
    ["openSyncFolderListDlg", "showSyncFolderPathWidget", "openCloudSpacePage", "showNovaBox", "showCompanyPrivilegeDlg"].map((name) => `SyncFolder.${name}`),
    ["Utils.getPictureFilepath", "Utils.pickColor", "Utils.getSnapperColor", "Tools.showConfirmDlg", "Payment.open"]);

/** Presses Escape in the newest window of the suite until the call has ended. */
async function callAndCancel() {
    let isOver = false;
    const called = callByClick().finally(() => { isOver = true; });
    while (!isOver) {
        const windows = await run("xdotool", "search", "--onlyvisible", "--pid", String(suite.pid), "--name", ".");
        const newest = windows.trim().split("\n").map(Number).sort((a, b) => b - a)[0];
        await run("xdotool", "windowfocus", String(newest), "key", "Escape").catch(() => {}); // it may have closed by now
        await Promise.race([called, delay(100)]);
    }
    return called;
}

/** Where the values that the form has at first would leave nothing to click on, or hand nothing out. */
const VALUES = () => ({
    "FileSystem.File()": [{ path: join(home, "note.txt") }],
    "PluginManager.getPlugin": ["wordcount"],
    "Webview.setResizeable": [true],
    "Webview.setWindowFlag": [{ flag: 0x40000, on: true }],
    "Webview.setSize": [{ w: 1300, h: 850 }],
    "Webview.setMaximumSize": [{ maxw: 4000, maxh: 3000 }],
    "Webview.setMaximumWidth": [4000],
    "Webview.setMaximumHeight": [3000],
});
/** A page that nobody sees gets no clicks, and a window that fills the screen is not resized. */
const BACK = {
    "Webview.hide": "Webview.show",
    "Webview.setMaximize": "Webview.setRestore",
    "Webview.setMinimize": "Webview.setRestore",
    "Webview.setFullScreen": "Webview.setRestore",
};

test("every object and every member by mouse", LIMIT, async () => {
    await writeFile(join(home, "note.txt"), "hello");
    const values = VALUES();
    const inHand = new Set();
    for (const object of objects) {
        await openByClick(object.name);
        assert.equal(await text(".lead"), plain(object.doc), object.name);
        assert.equal(await page.$$eval(".members tbody tr", (rows) => rows.length), object.members.length, object.name);
        for (const member of object.members) {
            const path = pathOf(object, member);
            await openByClick(path);
            const shown = await page.$eval("[data-view]", (node) => ({
                title: node.querySelector("h1").textContent,
                lead: node.querySelector(".lead").textContent,
                fields: [...node.querySelectorAll("form > div > .fields:first-child > .field")].map((one) => one.dataset.field),
                button: node.querySelector("[data-action=call]").textContent.split("Ctrl")[0],
                selected: document.querySelector("[role=treeitem][aria-selected=true]").dataset.member,
            }));
            const unbuilt = `${member.doc} Not built yet: a call fails with code 3 "not supported."`;
            assert.deepEqual(shown, {
                title: `${object.name}.${member.name}`,
                lead: plain(member.built ? member.doc : unbuilt),
                fields: member.parameters.map(({ name }) => name),
                button: member.kind === "property" ? "Read" : "Call",
                selected: path,
            });
            if (path === "Webview.destroy")
                continue; // the end of the last test
            if (path in values)
                await give(values[path]);
            const width = await page.evaluate(() => innerWidth);
            const outcome = await (DIALOGS.includes(path) ? callAndCancel() : callByClick());
            if (path in BACK) {
                await page.evaluate((back) => explorer.call(back), BACK[path]);
                await page.waitForFunction((before) => innerWidth === before, {}, width); // else a click meets another place
            }
            const isRoot = object.instance !== "handed out";
            const { kind, name } = member.answer.type;
            if (kind === "handle" && outcome.state === "ok")
                inHand.add(name);
            if (!isRoot && !inHand.has(object.name))
                assert.match(outcome.problem, /^There is no .* in hand yet/, path);
            else if (outcome.state === "failed")
                assert(isListed(member, outcome) && outcome.note === "One of the failures listed below.",
                    `${path} fails with ${outcome.code}: ${outcome.message}`);
            assert(outcome.state === "ok" || !isRoot || !member.built || member.parameters.length > 0,
                `${path} takes nothing, and fails with ${outcome.message}`);
        }
    }
    assert.deepEqual([...inHand],
        ["FileSystem.File", "PluginManager.Plugin", "CloudDoc.Orbitapi", "SettingsManager.Settings", "Account.Privilege"]);
});

test("objects that were handed out are called", LIMIT, async () => {
    await writeFile(join(home, "note.txt"), "hello");
    await openByClick("FileSystem.File.size");
    assert.match((await callByClick()).value, /data: 5/);
    await page.click("[data-tab=in-hand]");
    await page.click("[data-hand=file1] [data-action=close]");
    assert.match((await callByClick()).problem, /in hand yet/);
});

test("what the address names is shown", LIMIT, async () => {
    const rows = {
        "": "home",
        "#FileSystem": "FileSystem",
        "#FileSystem.copy": "FileSystem.copy",
        "#FileSystem.File": "FileSystem.File",
        "#FileSystem.File()": "FileSystem.File()",
        "#skin": "skin",
        "#plugins": "plugins",
        "#panels": "panels",
        "#FileSystem.nothing": "none",
        "#window": "window",
    };
    for (const [hash, name] of Object.entries(rows)) {
        await page.evaluate((to) => { location.hash = to; }, hash);
        await page.waitForSelector(view(name));
    }
    await page.goBack();
    await page.waitForSelector(view("none"));
    await page.evaluate(() => { location.hash = "#Crypto.md5Data"; });
    await page.reload();
    await page.waitForSelector(view("Crypto.md5Data"));
});

test("the search finds members by their words", LIMIT, async () => {
    const visible = () => page.$$eval("[data-member]", (nodes) => nodes.filter((node) => node.offsetParent)
        .map((node) => node.dataset.member));
    await page.click("[data-role=search]");
    await page.keyboard.sendCharacter("remove listener");
    const found = await visible();
    assert.equal(await text("#found"), `${found.length} found`);
    for (const { object, name } of objects.flatMap((one) => one.members.map(({ name }) => ({ object: one, name })))) {
        if (/remove.*listener/i.test(name))
            assert(found.includes(`${object.name}.${name}`), `${object.name}.${name} is not found`);
    }
    assert(!found.includes("FileSystem.copy"));
    await page.click("[data-role=search]");
    await press("Escape");
    await page.waitForFunction(() => document.querySelector("#found").textContent === "");
});

test("the keyboard alone is enough for a call", LIMIT, async () => {
    const focus = (selector) => page.waitForFunction((one) => document.activeElement.matches(one), {}, selector);
    const isFocused = (selector) => page.evaluate((one) => document.activeElement.matches(one), selector);
    await page.waitForFunction(() => document.hasFocus());
    await press("Escape"); // from wherever: to the list
    await focus("[role=treeitem]");
    await press("slash");
    await focus("#search");
    await run("xdotool", "type", "homePath");
    await page.waitForFunction(() => document.querySelector("#found").textContent === "1 found");
    await press("Down");
    await focus("[data-object=FileSystem]");
    await press("Right");
    await focus("[data-member='FileSystem.homePath']");
    await press("Return");
    await page.waitForSelector(view("FileSystem.homePath"));
    for (let presses = 0; !(await isFocused("[data-action=call]")); ++presses) {
        assert(presses < 20, "Tab does not lead to the button");
        await press("Tab");
    }
    await press("Return");
    await page.waitForSelector("[data-answer][data-state=ok]");
    assert((await text("[data-answer]")).includes(home));
    await press("slash", "Escape");
    await page.waitForFunction(() => document.querySelector("#found").textContent === "");
});

test("further windows have pages of their own, whose events arrive", LIMIT, async () => {
    await openByClick("Event");
    await page.click("[placeholder='another event']");
    await page.keyboard.sendCharacter("explorer.hello");
    await page.click("[data-view=Event] form.inline button");
    await page.waitForSelector("[data-listen='NovaExtension.Event explorer.hello']");
    await page.click("[data-place=window]");
    for (const [kind, id] of Object.entries({ Dialog: "dialog", Popup: "popup", Tab: "tab", TestWebWidget: "test" })) {
        await page.select("[data-panel='Further windows'] [name=windowType]", kind);
        await page.click("[data-row=Open] button");
        const target = await browser.waitForTarget((one) => one.url() === `nova://app/${id}.html`, { timeout: WAIT_MS });
        const further = await target.page();
        watch(further);
        await further.waitForFunction(() => document.querySelector("[data-role=outcome]")?.textContent === "Ready: undefined");
        const gone = new Promise((resolve) => further.once("close", resolve));
        await further.evaluate(() => document.querySelector("[data-button=Greet]").click());
        await page.waitForFunction((greeting) => document.querySelector("[data-event='Event explorer.hello']")
            ?.textContent.includes(greeting), {}, `hello from ${id}`);
        await page.waitForSelector("[data-outcome=ok]");
        await page.click("[data-row=Find] button");
        // The page may be gone before it could say that the button was pressed.
        await further.evaluate(() => document.querySelector("[data-button=Close]").click()).catch(() => {});
        await gone;
    }
});

test("the window panel drives the window, whose events arrive", LIMIT, async () => {
    await page.select("[data-view=window] [data-role=target]", "NovaExtension.Webview");
    await page.click("[data-listen='NovaExtension.Webview Resize']");
    await fillIn("[data-row=Resize] [name=w]", "1111");
    await page.click("[data-row=Resize] button");
    await page.waitForSelector("[data-event='Webview Resize']");
    await page.waitForFunction(() => innerWidth === 1111);
    await page.waitForFunction(() => document.querySelector("#page").offsetWidth > document.querySelector("#page").clientWidth);
    await page.click("[data-switch=setDisableScrollBar]");
    await page.waitForFunction(() => document.querySelector("[data-outcome=ok]")?.textContent.includes("setDisableScrollBar"));
    await page.waitForFunction(() => document.querySelector("#page").offsetWidth === document.querySelector("#page").clientWidth);
});

/** By a colour of texts what they stand on. */
const GROUNDS = { text: ["ground", "surface", "sunken", "accent-soft"], muted: ["ground", "surface", "sunken"],
    link: ["ground", "surface", "accent-soft"], "on-accent": ["accent", "accent-hover"], ok: ["surface", "ok-soft"],
    fail: ["surface", "fail-soft"], wait: ["surface", "wait-soft"] };

/** How many times lighter one colour is than the other, as the guidelines for accessible pages count. */
function contrast(...colors) {
    const [light, dark] = colors.map((color) => {
        const [red, green, blue] = color.match(/\d+/g).map((part) => part / 255)
            .map((part) => (part <= 0.03928 ? part / 12.92 : ((part + 0.055) / 1.055) ** 2.4));
        return 0.2126 * red + 0.7152 * green + 0.0722 * blue + 0.05;
    }).sort((a, b) => b - a);
    return light / dark;
}

test("a page and its further windows follow the skin, and stay readable", LIMIT, async () => {
    await page.evaluate(() => explorer.call("WebviewMgr.create", { id: "dialog", windowType: "Dialog", isShow: true }));
    const target = await browser.waitForTarget((one) => one.url() === "nova://app/dialog.html", { timeout: WAIT_MS });
    const further = await target.page();
    watch(further);
    await page.click("[data-place=skin]");
    const seen = new Set();
    for (const skin of ["dark", "contrast", "novaskin-ocean", "light"]) {
        await page.click(`[data-view=skin] [data-button="${skin}"]`);
        await page.waitForSelector(`[data-log=changes] > [data-change="${skin}"]:first-child`);
        await page.waitForFunction(() => [...document.querySelectorAll("[data-view=skin] img")]
            .every((image) => image.complete && image.naturalWidth > 0));
        const shown = await page.evaluate(() => ({
            body: getComputedStyle(document.body).backgroundColor,
            swatch: getComputedStyle(document.querySelector("[data-color='CommonPalette/window'] .chip span")).backgroundColor,
            value: NovaExtension.Skin.getSkinColorConfig({ config: ["window"] }).data.window,
            images: document.querySelectorAll("[data-view=skin] img").length,
            choice: document.querySelector("[data-role=skin]").value,
            colors: Object.fromEntries([...document.documentElement.style].map((name) =>
                [name.slice(2), document.documentElement.style.getPropertyValue(name)])),
        }));
        assert.equal(shown.value.replace(/rgba\((\d+),(\d+),(\d+),1\)/, "rgb($1, $2, $3)"), shown.body, skin);
        assert.deepEqual([shown.swatch, shown.choice, shown.images > 50], [shown.body, skin, true], skin);
        for (const [color, grounds] of Object.entries(GROUNDS))
            for (const ground of grounds)
                assert(contrast(shown.colors[color], shown.colors[ground]) >= 4.5, `${skin}: ${color} on ${ground}`);
        await further.waitForFunction((color) => getComputedStyle(document.body).backgroundColor === color, {}, shown.body);
        seen.add(shown.body);
    }
    assert.equal(seen.size, 4);
    await page.click("[data-row=Switch] button");
    await page.waitForSelector("[data-view=skin] [data-outcome=failed]");
    assert.match(await text("[data-view=skin] [data-outcome]"), /switch skin failed/);
    await page.select("[data-role=skin]", "dark");
    await page.waitForFunction(() => document.documentElement.dataset.theme === "dark");
    await further.evaluate(() => document.querySelector("[data-button=Close]").click()).catch(() => {});
});

test("a plugin is loaded with its progress, and resolves paths", LIMIT, async () => {
    await page.click("[data-place=plugins]");
    for (const [name, outcome] of [["nobody", "failed"], ["slow", "ok"]]) {
        await fillIn("[data-row=Get] [name=name]", name);
        await page.click("[data-row=Get] button");
        await page.waitForSelector(`[data-view=plugins] [data-outcome=${outcome}]`);
    }
    await page.click("[data-panel=Load] [data-button=Load]");
    await page.waitForSelector("[data-load=Succeeded]");
    const steps = await page.$$eval("[data-log=loads] > li", (lines) => lines.map((line) => line.textContent));
    assert(steps.length > 2 && steps.slice(1).every((step) => step.includes("Progress")), steps.join());
    await fillIn("[data-row=Resource] input", "large");
    await page.click("[data-row=Resource] button");
    await page.waitForFunction(() => /resources\/large/.test(document.querySelector("[data-outcome=ok]")?.textContent));
});

test("the suite's panels answer", LIMIT, async () => {
    await page.click("[data-place=panels]");
    const press = async (panel, button) => {
        await page.click(`[data-panel="${panel}"] ${button}`);
        await page.waitForSelector("[data-view=panels] [data-outcome=ok]");
    };
    const rows = [
        ["Document chat", "[data-row=Ask] button", "knovaaidocschatpanel", "The contract is due in July."],
        ["Contract", "[data-row='Read contract'] button", "KContractMgrCommand", "EUR 1,200.50"],
    ];
    for (const [panel, button, plugin, answer] of rows) {
        await press(panel, "[data-button='Load the plugin']");
        await press(panel, "[data-button='Register callback']");
        await press(panel, button);
        await page.waitForFunction((log, text) => document.querySelector(`[data-log="${log}"]`).textContent.includes(text),
            {}, plugin, answer);
    }
});

/** What the browser says on its own. */
const EXPECTED = [
    /^Synchronous XMLHttpRequest on the main thread is deprecated/,
    /^Throttling navigation to prevent the browser from hanging/,
];

test("novahost ends when the page destroys its window", LIMIT, async () => {
    const exited = once(suite, "exit");
    await page.click("[data-place=window]");
    // From under the line with the outcome, which stays at the top.
    await page.$eval("[data-button=Destroy]", (node) => node.scrollIntoView({ block: "center" }));
    await page.click("[data-button=Destroy]");
    await page.waitForFunction(() => /Press again/.test(document.querySelector("[data-button=Destroy]").textContent));
    // Pressed again in the same place. The page goes within it.
    await page.mouse.down();
    await page.mouse.up().catch(() => {});
    assert.deepEqual(await exited, [0, null]);
    const counts = JSON.parse(suite.lines.filter((line) => line.startsWith('{"when":"closed"')).pop());
    assert.deepEqual(Object.entries(counts).filter(([what, count]) => what !== "when" && count), []);
    assert.deepEqual(errors.filter((one) => !EXPECTED.some((expected) => expected.test(one))), []);
});
