// A member: its documentation, its form, and the answer.

import { call, ended, handsChanged, inHand } from "./calls.js";
import { InputError } from "./controls.js";
import { copyButton, fill, icon, make, newId, prose } from "./dom.js";
import { makeForm } from "./form.js";
import { answerText, pathOf, shapesOf, signature, typeText } from "./reference.js";
import { literal, scriptOf } from "./script.js";
import { makeTargetChoice } from "./targetchoice.js";
import { clock, duration, failureOf, statePill, valueTree } from "./values.js";

/**
 * @param {ApiObject} object
 * @param {ApiMember} member
 */
export function makeMemberView(object, member) {
    const chosen = makeTargetChoice(object);
    const form = makeForm(object, member, () => chosen.read()?.name ?? "");
    const answer = makeAnswer(member);
    const code = make("code", {});
    const problem = make("p", { class: "problem", role: "alert", hidden: true });
    const button = make(
        "button",
        { type: "submit", class: "primary", "data-action": "call" },
        icon("play"),
        member.kind === "property" ? "Read" : "Call",
        make("kbd", {}, "Ctrl ⏎")
    );

    /** @param {unknown} fault */
    function showProblem(fault) {
        problem.textContent = fault instanceof Error ? fault.message : "";
        problem.hidden = !fault;
        view.querySelectorAll("[aria-invalid]").forEach((node) => node.removeAttribute("aria-invalid"));
        if (fault instanceof InputError) {
            fault.control.setAttribute("aria-invalid", "true");
            fault.control.focus();
        }
    }

    /** @returns {{ target: Target, given: unknown[] }} */
    function read() {
        const target = chosen.read();
        if (!target)
            throw new Error(`There is no ${object.name} in hand yet. Call what hands one out first.`);
        return { target, given: form.read() };
    }

    function preview() {
        try {
            const { target, given } = read();
            code.textContent = scriptOf(target, member, given);
        } catch {
            code.textContent = "// not complete"; // what is wrong is said when it is called
        }
    }

    /** @param {Event} [event] */
    function submit(event) {
        event?.preventDefault();
        try {
            const { target, given } = read();
            showProblem(undefined);
            answer.show(call(target, member, given));
            answer.node.scrollIntoView({ block: "nearest" });
        } catch (error) {
            showProblem(error);
        }
    }

    const preparing = make(
        "div",
        { class: "preview-line" },
        make("pre", { "data-role": "script" }, code),
        copyButton("Copy", () => code.textContent ?? "")
    );
    const panel = make(
        "form",
        {
            class: "card",
            submit,
            input: preview,
            change: preview,
            click: preview,
            "data-role": "form",
            novalidate: true
        },
        make(
            "div",
            { class: "card-head" },
            make("h2", {}, member.kind === "property" ? "Read" : "Call"),
            chosen.node,
            member.parameters.length > 0 && form.modes
        ),
        form.node,
        preparing,
        problem,
        make("div", { class: "actions" }, button, chosen.makers)
    );
    const view = make(
        "article",
        { class: "view", "data-view": pathOf(object, member) },
        ...heading(object, member),
        panel,
        answer.node,
        ...details(object, member)
    );
    handsChanged.subscribe(preview);
    preview();
    return {
        node: view,
        submit,
        /** @param {Call} past */
        edit(past) {
            chosen.choose(past.target);
            form.showJson(past.given);
            preview();
        }
    };
}

/** @param {ApiMember} member */
function makeAnswer(member) {
    const status = make("div", { class: "status", role: "status" }, make("p", { class: "note" }, "Not called yet."));
    const content = make("div", { class: "content" });
    const again = make("div", { class: "card-tools" });
    const node = make(
        "section",
        { class: "card answer", "data-answer": true, "data-state": "none", "aria-label": "Answer" },
        make("div", { class: "card-head" }, make("h2", {}, "Answer"), status, again),
        content
    );
    /** @type {Call | undefined} */
    let shown;

    /** @param {Call} made */
    function show(made) {
        shown = made;
        node.dataset.state = made.state;
        fill(
            status,
            statePill(made),
            make("span", { class: "elapsed" }, made.state === "pending" ? "pending" : duration(made.elapsed)),
            make(
                "span",
                { class: "note" },
                made.promised && made.state !== "pending" ? "promise settled · " : "",
                clock(made.started)
            )
        );
        fill(content, ...answerContent(made));
        fill(
            again,
            made.state !== "pending" &&
                copyButton("Copy value", () => literal(made.state === "ok" ? made.value : failureOf(made.error)))
        );
    }

    ended.subscribe((made) => made === shown && show(made));
    return { node, show };
}

/**
 * @param {Call} made
 * @returns {(HTMLElement | false)[]}
 */
function answerContent(made) {
    if (made.state === "pending")
        return [make("p", { class: "note" }, "Waiting for the promise.")];
    if (made.state === "failed")
        return [failureContent(made)];
    const { handedOut } = made;
    if (!handedOut)
        return [valueTree(made.value)];
    return [
        make(
            "p",
            { class: "handed-out" },
            "In hand as ",
            make("code", {}, handedOut.name),
            ", a ",
            make("a", { href: `#${handedOut.object.name}`, "data-role": "handed-out" }, handedOut.object.name),
            inHand.includes(handedOut) ? "." : ", let go."
        )
    ];
}

/** @param {Call} made */
function failureContent({ error, member }) {
    const { code, message } = failureOf(error);
    const listed = member.failures.some((failure) => String(failure.code) === code && fits(failure.text, message));
    const stack = code ? "" : String(Object(error).stack ?? "");
    return make(
        "div",
        { class: "failure" },
        make(
            "p",
            { class: "failure-line" },
            code && make("span", { class: "code" }, `code ${code}`),
            make("strong", {}, message)
        ),
        make(
            "p",
            { class: "note" },
            code ? (listed ? "One of the failures listed below." : "Not among the failures listed below.") : stack
        )
    );
}

/**
 * Whether a text is a failure's, in which %1 stands for any text.
 *
 * @param {string} pattern
 * @param {string} text
 */
function fits(pattern, text) {
    const parts = pattern.split(/%\d/).map((part) => part.replace(/[.*+?^${}()|[\]\\]/g, "\\$&"));
    return new RegExp(`^${parts.join("[^]*")}$`).test(text);
}

/**
 * @param {ApiObject} object
 * @param {ApiMember} member
 */
function heading(object, member) {
    return [
        make(
            "div",
            { class: "title-line" },
            make("h1", { tabindex: "-1" }, make("a", { href: `#${object.name}` }, object.name, "."), member.name),
            !member.built && make("span", { class: "pill unbuilt" }, "not built"),
            make("span", { class: "pill plain", title: "category" }, member.category)
        ),
        make("pre", { class: "signature" }, make("code", {}, signature(member))),
        make(
            "p",
            { class: "lead" },
            ...prose(
                member.built ? member.doc : `${member.doc} Not built yet: a call fails with code 3 "not supported."`
            )
        )
    ];
}

/**
 * @param {ApiObject} object
 * @param {ApiMember} member
 */
function details(object, member) {
    const event = object.events.find((one) => one.name === member.event);
    return [
        section(
            "Returns",
            make("p", {}, make("code", {}, answerText(member))),
            ...shapesOf(member.answer.type).map(shapeTable)
        ),
        event &&
            section(
                `Event ${event.name}`,
                make("p", {}, ...prose(event.doc)),
                ...shapesOf(event.payload).map(shapeTable)
            ),
        member.failures.length > 0 &&
            section(
                "Failures",
                make(
                    "table",
                    {},
                    tableHead("Code", "Message", ""),
                    make(
                        "tbody",
                        {},
                        ...member.failures.map(({ code, text, rejects }) =>
                            make(
                                "tr",
                                {},
                                make("td", { class: "number" }, String(code)),
                                make("td", {}, make("code", {}, text)),
                                make("td", { class: "muted" }, rejects ? "rejected" : "thrown")
                            )
                        )
                    )
                )
            )
    ];
}

/**
 * @param {string} title
 * @param {...(Node | false)} children
 */
export function section(title, ...children) {
    const id = newId();
    return make("section", { class: "details", "aria-labelledby": id }, make("h2", { id }, title), ...children);
}

/** @param {...string} titles */
export function tableHead(...titles) {
    return make("thead", {}, make("tr", {}, ...titles.map((title) => make("th", { scope: "col" }, title))));
}

/** @param {ApiType} type */
export function shapeTable({ name, fields = [], strict }) {
    return make(
        "div",
        { class: "shape" },
        make("h3", {}, name || "object"),
        make(
            "table",
            {},
            tableHead("Property", "Type", ""),
            make(
                "tbody",
                {},
                ...fields.map((field) =>
                    make(
                        "tr",
                        {},
                        make("td", {}, make("code", {}, field.name), field.optional && "?"),
                        make("td", { class: "type" }, typeText(field.type)),
                        make("td", {}, ...prose(field.doc))
                    )
                )
            )
        ),
        strict && make("p", { class: "note" }, "Nothing is converted: a property of another type is refused.")
    );
}
