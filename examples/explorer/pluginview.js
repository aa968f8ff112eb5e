// The place of plugins: found by name, loaded with their progress, and asked for their files.

import { call, handsChanged } from "./calls.js";
import { fill, make } from "./dom.js";
import { arrived, makeListener } from "./listeners.js";
import { arrivalLine, makeLog } from "./log.js";
import { actionButton, actOn, inputRow, makeOutcome, panel, panelsView, smallField } from "./panels.js";
import { memberNamed, objectNamed } from "./reference.js";
import { makeTargetChoice } from "./targetchoice.js";

/** @typedef {import("./panels.js").Act} Act */
/** @typedef {import("./panels.js").Report} Report */

/** The plugins that come with the stand-in. */
const KNOWN = ["sample", "wordcount", "knovaaidocschatpanel", "KContractMgrCommand", "novaskin-ocean"];
const PROPERTIES = ["title", "name", "version", "languages", "templates", "kind"];
const OPTIONS = [
    "0: if it is not ready",
    "1: only what is on this machine",
    "2: once more",
    "3: no such option",
    "4: without its object"
];
const MODES = ["0: in the background", "1: before the call returns"];
const LOADING = 2;
const STATUSES = ["ready", "can not be loaded", "is being loaded", "cancelled", "went meanwhile"];

const plugins = objectNamed("PluginManager.Plugin");

/** @param {Target} target */
const loadLabel = (target) => `${target.name}.load`;

/**
 * Loads a plugin; what its function is called with is among the events.
 *
 * @param {Report} report
 * @param {Target} target
 * @param {object} options
 */
function load(report, target, options) {
    return report(call(target, memberNamed(plugins, "load"), [options, makeListener(loadLabel(target))]));
}

/**
 * Finds a plugin by its name and loads it.
 *
 * @param {Report} report
 * @param {string} name
 */
export async function loadByName(report, name) {
    const { handedOut } = await actOn("PluginManager", report)("getPlugin", name);
    if (handedOut)
        load(report, handedOut, {});
}

export function makePluginView() {
    const { node: outcome, report } = makeOutcome();
    const chosen = makeTargetChoice(plugins);
    const manager = actOn("PluginManager", report);
    const panels = make("div", { class: "panels" });

    /** @type {Act} */
    const act = async (name, ...given) => report(call(inHand(), memberNamed(plugins, name), given));
    const inHand = () => /** @type {Target} */ (chosen.read());

    const find = panel(
        "Find",
        inputRow("Get", { name: KNOWN }, async ({ name }) => {
            const { handedOut } = await manager("getPlugin", name);
            if (handedOut)
                chosen.choose(handedOut);
            refresh();
        }),
        make("p", { class: "note" }, "Plugins of the profile's directories have other names.")
    );
    const ofPlugin = [
        makeLoader(report, inHand),
        panel(
            "Properties",
            inputRow("Read", { propName: PROPERTIES }, ({ propName }) => act("getProp", propName))
        ),
        panel(
            "Files",
            inputRow("Resource", { relativePath: ["letter.txt", "../framework/fields.json"] }, (values) =>
                act("resourceFilePath", values.relativePath)
            ),
            inputRow("Framework", { relativePath: ["fields.json", "../../plugin.json"] }, (values) =>
                act("frameworkFilePath", values.relativePath)
            )
        )
    ];

    function refresh() {
        chosen.node.hidden = !chosen.read();
        fill(panels, find, ...(chosen.read() ? ofPlugin : []));
    }

    handsChanged.subscribe(refresh);
    refresh();
    return panelsView("plugins", "Plugins", chosen.node, outcome, panels);
}

/**
 * @param {Report} report
 * @param {() => Target} target
 */
function makeLoader(report, target) {
    const choice = (/** @type {string} */ name, /** @type {string[]} */ labels) =>
        make("select", { name }, ...labels.map((label) => make("option", {}, label)));
    const [option, mode] = [choice("option", OPTIONS), choice("mode", MODES)];
    const bar = make("progress", { max: "1", value: "0", "aria-label": "Fetched", "data-load": "none" });
    const status = make("p", { class: "note", role: "status", "data-role": "load-status" }, "Not loaded by this page.");
    const log = makeLog("loads", "What the functions of loads are called with appears here.");

    /**
     * @param {string} state
     * @param {number} part
     * @param {string} text
     */
    function show(state, part, text) {
        bar.dataset.load = state;
        bar.value = part;
        status.textContent = text;
    }

    async function start() {
        show("none", 0, "");
        const made = await load(report, target(), { option: option.selectedIndex, mode: mode.selectedIndex });
        const answer = /** @type {{ data: number } | undefined} */ (made.value)?.data ?? -1;
        const state = new Map([
            [0, "Succeeded"],
            [LOADING, "Progress"]
        ]).get(answer);
        if (answer !== LOADING || bar.dataset.load === "none") // it may have been heard of already
            show(state ?? "Failed", state === "Succeeded" ? 1 : 0, STATUSES[answer] ?? "The call has failed.");
    }

    arrived.subscribe((arrival) => {
        if (arrival.label !== loadLabel(target() ?? { name: "" }))
            return;
        log.add(arrivalLine(arrival, 0));
        const { step, receivedBytes, totalBytes } = /** @type {NovaExtension.PluginManager.Plugin.PluginLoadReport} */ (
            arrival.payload[0]
        );
        if (step === "Progress")
            show(step, Number(receivedBytes) / Number(totalBytes), `${receivedBytes} of ${totalBytes} bytes`);
        else
            show(step, step === "Succeeded" ? 1 : bar.value, step);
    });
    return panel(
        "Load",
        make("div", { class: "input-row" }, smallField("option", option), smallField("mode", mode)),
        make("div", { class: "buttons" }, actionButton("Load", start, "primary")),
        bar,
        status,
        make("div", { class: "tools-line" }, ...log.tools),
        log.node
    );
}
