// Plugins: how they are loaded, and what becomes of a load. run_test.py makes those that are not the stand-in's own.
const { FileSystem, PluginManager } = NovaExtension;
const invalid = refusal(3, "invalid plugin");
const notReady = refusal(3, "plugin is not ready");
const data = process.argv[2];
const get = (/** @type {string} */ name) => PluginManager.getPlugin(name);
/** @typedef {{ status: number, steps: string[], ended: Promise<string> }} Load */
/**
 * Loads a plugin in the background; `ended` resolves with the last step.
 *
 * @type {(plugin: NovaExtension.PluginManager.Plugin, options?: object) => Load}
 */
const load = (plugin, options = {}) => {
    /** @type {any} */
    const made = { steps: [] };
    made.ended = new Promise((resolve) => {
        made.status = plugin.load(options, (report) => {
            const { step, totalBytes, receivedBytes } = report;
            made.steps.push(step === "Progress" ? `${receivedBytes}/${totalBytes}` : show(report));
            if (step !== "Progress")
                resolve(step);
        }).data;
    });
    return made;
};
/** The status, and the last step of a load that goes on. */
const outcome = async (/** @type {string} */ name, options = {}) => {
    const { status, ended } = load(get(name), options);
    return status === 2 ? [status, await ended] : [status];
};
const later = () => new Promise((resolve) => setTimeout(resolve, 30));

const sample = get("sample");
await check([
    ...["", "none", "../own/here", "here\0", "x".repeat(1e6), "outside", "climbs", "deep", "large", "twice", "typed", "fetched"].map((name) =>
        [`no plugin ${name.slice(0, 20)}`, () => get(name), invalid]),
    // @ts-expect-error
    ["no name", () => PluginManager.getPlugin(), invalid],
    ...[undefined, null, 5, "0", [], () => 1].map((given) =>
        [`loads with ${String(given)}`, () => call(sample, "load", given, () => 1), refusal(1, "wrong parameters.")]),
    ["a resource of one that is not ready", () => sample.resourceFilePath("letter.txt"), notReady],
    ["a framework's file of one that is not ready", () => sample.frameworkFilePath("fields.json"), notReady],
    ["not on this machine", () => outcome("sample", { option: 1 }), [1]],
    ["properties", () => ["name", "title", "languages", "templates", "none", "", "x".repeat(1e6)].map((name) => sample.getProp(name).data),
        ["sample", "Sample templates", ["en", "nb"], { letter: "letter.txt", minutes: "minutes.txt" }, undefined, undefined, undefined]],
    ["any JSON", () => get("here").getProp("any").data, { "": [1, 1.5, null, true, { a: "\0" }], "large": 2 ** 40 }],
    ["is fetched", () => outcome("sample"), [2, "Succeeded"]],
    ["is ready", () => outcome("sample"), [0]],
    ["once more", () => outcome("sample", { option: 2 }), [2, "Succeeded"]],
    ["from this machine", () => outcome("sample", { option: 1 }), [0]],
    ["is read", () => FileSystem.exists(sample.resourceFilePath("letter.txt").data).data, true],
    ["of its framework", () => sample.frameworkFilePath("fields.json").data.endsWith("/plugins/sample-1.0/framework/fields.json"), true],
    ["a file that is not there", () => sample.resourceFilePath("a/../none.txt").data.endsWith("/resources/none.txt"), true],
    ["leads out", () => ["../../etc/passwd", "../framework/fields.json", "/etc/passwd", "a\0b", "x/".repeat(1e6), "..", "./../resources2"]
        .map((path) => sample.resourceFilePath(path).data), Array(7).fill("")],
    ["leads out by a link", async () => [await outcome("here"), get("here").resourceFilePath("link/x").data], [[0], ""]],
    ["with an instance object", () => outcome("wordcount"), [0]],
    ["a library that is none", () => outcome("broken"), [1]],
    ["without the instance object", () => outcome("broken", { option: 4 }), [0]],
    ["in the call", () => outcome("big", { mode: 1 }), [0]],
    ["progress", async () => {
        const { status, steps, ended } = load(get("big"), { option: 2 });
        const atOnce = steps.length;
        await ended;
        const total = 3e6;
        const received = steps.slice(0, -1).map((step) => Number(step.split("/")[0]));
        return [status, atOnce, steps.length > 3, received.every((bytes, i) => bytes > (received[i - 1] ?? 0)), ...steps.slice(-2)]
            .concat(`${total}`);
    }, [2, 0, true, true, "3000000/3000000", '{"step":"Succeeded"}', "3000000"]],
    ...["missing", "short", "long", "changed", "linked", "nested"].map((name) =>
        [`a source that is ${name}`, async () => [await outcome(name), get(name).load({ mode: 1 }).data, FileSystem.exists(`${data}/plugins/${name}-1`).data],
            [[2, "Failed"], 1, false]]),
    ["two loads at once, and one in the call", async () => {
        const loads = [load(get("slow")), load(get("slow"))];
        const inCall = get("slow").load({ mode: 1 }).data;
        return [inCall, ...await Promise.all(loads.map(async ({ status, ended }) => `${status} ${await ended}`))];
    }, [0, "2 Succeeded", "2 Succeeded"]],
    ["the end of an earlier load does not end another", async () => {
        const { ended } = load(get("slow"), { option: 2 });
        get("slow").load({ mode: 1 });
        get("slow").load({ option: 2, mode: 1 });
        await ended;
        const next = load(get("slow"), { option: 2 });
        await later();
        process.play("plugin:cancel=slow");
        return next.ended;
    }, "Canceled"],
    ["cancelled, one that was ready", async () => {
        const { ended } = load(get("slow"), { option: 2 });
        const during = caughtBy(() => get("slow").resourceFilePath("a"));
        process.play("plugin:cancel=slow");
        return [during, await ended, get("slow").resourceFilePath("a").data !== ""];
    }, ["plugin is not ready", "Canceled", true]],
    ["removed while it is loaded", async () => {
        const plugin = get("slow");
        const { steps, ended } = load(plugin, { option: 2 });
        const inCallback = ended.then(() => caughtBy(() => plugin.getProp("name")));
        process.play("plugin:remove=slow,plugin:cancel=slow");
        await inCallback;
        await later();
        return [steps, await inCallback, ...["load", "getProp", "resourceFilePath", "frameworkFilePath"].map((member) =>
            caughtBy(() => call(plugin, member, {}))), caughtBy(() => get("slow"))];
    }, [['{"step":"Failed"}'], ...Array(6).fill("invalid plugin")]],
    ["added again, as another one", async () => {
        process.play("plugin:add=slow");
        await later();
        return [get("slow").getProp("name").data, await outcome("slow")];
    }, ["slow", [0]]],
    ["reports come in order", async () => {
        const steps = /** @type {string[]} */ ([]);
        await new Promise((resolve) => get("big").load({ option: 2 }, ({ step, receivedBytes }) => {
            steps.push(step === "Progress" ? `${receivedBytes}`.padStart(8) : step);
            process.play(""); // a call, in which others could come
            if (step !== "Progress")
                resolve(step);
        }));
        await later();
        return [same([...steps].sort(), steps), steps.slice(-1)];
    }, [true, ["Succeeded"]]],
    ["removed in the callback", async () => {
        const steps = /** @type {string[]} */ ([]);
        await new Promise((resolve) => get("slow").load({ option: 2 }, ({ step }) => {
            steps.push(step);
            if (steps.length === 1)
                process.play("plugin:remove=slow");
            if (step !== "Progress")
                resolve(step);
        }));
        return steps.slice(-1);
    }, ["Failed"]],
    ["without a function", () => sample.load({ option: 2 }).data, 2],
]);
function caughtBy(/** @type {() => any} */ action) {
    try {
        return action();
    } catch (error) {
        return caught(error).msg;
    }
}
// Goes on when the page has gone.
process.play("plugin:add=slow");
await later();
load(get("slow"), { option: 2 });
exit(failures ? 1 : 0);
