// The place of the suite's panels: notifications to and from them, and the report of a web document.

import { make, prose } from "./dom.js";
import { arrived, makeListener } from "./listeners.js";
import { arrivalLine, makeLog } from "./log.js";
import { actionButton, actOn, inputRow, makeOutcome, panel, panelsView } from "./panels.js";
import { loadByName } from "./pluginview.js";

/** @typedef {import("./panels.js").Report} Report */

export function makePanelView() {
    const { node: outcome, report } = makeOutcome();
    return panelsView(
        "panels",
        "Panels",
        undefined,
        make(
            "p",
            { class: "lead" },
            "The panels are plugins of the suite. One that is not loaded is not found; the stand-in loads its own when it " +
                "starts."
        ),
        outcome,
        make("div", { class: "panels" }, chatPanel(report), contractPanel(report), documentPanel(report))
    );
}

/**
 * What is the same of panels: the plugin, the callback, and what it was called with.
 *
 * @param {Report} report
 * @param {string} plugin
 * @param {() => unknown} register
 * @param {string} label of the callback
 */
function makeBridge(report, plugin, register, label) {
    const log = makeLog(plugin, "What the panel sends appears here, once the callback is registered.");
    arrived.subscribe((arrival) => arrival.label === label && log.add(arrivalLine(arrival, 3)));
    return {
        buttons: make(
            "div",
            { class: "buttons" },
            actionButton("Load the plugin", () => loadByName(report, plugin)),
            actionButton("Register callback", register, "primary")
        ),
        log: make("div", { class: "bridge-log" }, make("div", { class: "tools-line" }, ...log.tools), log.node)
    };
}

/** @param {Report} report */
function chatPanel(report) {
    const act = actOn("AiDocsChat", report);
    const listener = makeListener("AiDocsChat notification");
    const { buttons, log } = makeBridge(
        report,
        "knovaaidocschatpanel",
        () => act("registerQACallback", listener),
        "AiDocsChat notification"
    );
    const notify = (/** @type {string} */ type) => () => act("qaNotify", { type });
    return panel(
        "Document chat",
        make("p", { class: "note" }, ...prose("Answers with sentences of the text files in the suite's `documents`.")),
        buttons,
        inputRow("Ask", { question: "When is the contract due?" }, ({ question }) =>
            act("qaNotify", { type: "question", text: question })
        ),
        make(
            "div",
            { class: "buttons" },
            actionButton("Show its page", notify("show")),
            actionButton("Hide its page", notify("hide")),
            actionButton("What it does not know", notify("unknown"), "quiet")
        ),
        log
    );
}

/** @param {Report} report */
function contractPanel(report) {
    const act = actOn("KContract", report);
    const profile = actOn("Profile", report);
    const listener = makeListener("KContract notification");
    const { buttons, log } = makeBridge(
        report,
        "KContractMgrCommand",
        () => act("registerCallback", listener),
        "KContract notification"
    );
    const text = "Signed on 1 May 2026, due 2026-07-01: EUR 1,200.50.";

    /**
     * The panel's notifications are for views, which they name.
     *
     * @param {object} notification
     */
    async function notify(notification) {
        const { value } = await profile("getBrowserTraceInfo");
        return act("panelNotify", { viewId: Object(value).data?.browserid, ...notification });
    }

    return panel(
        "Contract",
        make("p", { class: "note" }, "Finds the dates and sums of a contract."),
        buttons,
        inputRow("Read contract", { text }, (values) => notify({ type: "contract", ...values })),
        make(
            "div",
            { class: "buttons" },
            actionButton("Ask again", () => notify({ type: "facts" })),
            actionButton("For another view", () => notify({ type: "contract", text, viewId: "another" }), "quiet")
        ),
        log
    );
}

/** @param {Report} report */
function documentPanel(report) {
    const act = actOn("WebDocsControl", report);
    const details = { group_id: "group-1", file_id: "file-1", uuid: "setup-1", label: "internal" };
    return panel(
        "Web document",
        make(
            "p",
            { class: "note" },
            "Reports to the cloud service that a document has been set up: a file that the user has uploaded, in the " +
                "user's own group."
        ),
        inputRow("Report", details, (values) => act("notifySetupFinished", values))
    );
}
