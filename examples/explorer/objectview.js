// An object: its members, its events, and what is in hand of it. And the first page, with all objects.

import { handsChanged, targetsOf } from "./calls.js";
import { fill, make, prose } from "./dom.js";
import { findActive, listenersChanged, toggle } from "./listeners.js";
import { section, shapeTable, tableHead } from "./memberview.js";
import {
    answerText,
    countBuilt,
    firstSentence,
    isAllBuilt,
    isHandedOut,
    listenerPairs,
    makersOf,
    membersText,
    objects,
    pathOf,
    shapesOf,
    typeText
} from "./reference.js";

/** @type {Record<ApiObject["instance"], string>} */
const INSTANCES = {
    shared: "one object, shared by all pages",
    page: "one object for each page",
    "handed out": "handed out by another object"
};

/** @param {ApiObject} object */
export function makeObjectView(object) {
    const makers = makersOf(object);
    return make(
        "article",
        { class: "view", "data-view": object.name },
        make(
            "div",
            { class: "title-line" },
            make("h1", { tabindex: "-1" }, make("a", { href: "#" }, "NovaExtension."), object.name),
            make("span", { class: "pill plain" }, INSTANCES[object.instance])
        ),
        make("p", { class: "lead" }, ...prose(object.doc)),
        makers.length > 0 &&
            make(
                "p",
                { class: "note" },
                "Handed out by ",
                ...makers.flatMap(({ object: owner, member }, index) => [
                    index > 0 && ", ",
                    make("a", { href: `#${pathOf(owner, member)}` }, `${owner.name}.${member.name}`)
                ]),
                "."
            ),
        makeListening(object),
        section(`Members (${isAllBuilt(object) ? object.members.length : membersText(object)})`, membersTable(object)),
        ...object.events.map((event) =>
            section(
                `Event ${event.name}`,
                make("p", {}, ...prose(event.doc)),
                ...shapesOf(event.payload).map(shapeTable)
            )
        )
    );
}

/** @param {ApiObject} object */
function membersTable(object) {
    return make(
        "table",
        { class: "members" },
        tableHead("Member", "", "Value"),
        make(
            "tbody",
            {},
            ...object.members.map((member) =>
                make(
                    "tr",
                    { class: member.built ? "" : "unbuilt" },
                    make("td", {}, make("a", { href: `#${pathOf(object, member)}` }, member.name)),
                    make("td", {}, ...prose(member.built ? firstSentence(member.doc) : "Not built.")),
                    make("td", { class: "type" }, valueText(member))
                )
            )
        )
    );
}

/** @param {ApiMember} member */
function valueText(member) {
    return member.answer.form === "envelope" ? typeText(member.answer.type) : answerText(member);
}

/**
 * Switches for the listeners of an object, for each that there is of it.
 *
 * @param {ApiObject} object
 */
function makeListening(object) {
    const place = make("div", {});
    const refresh = () => fill(place, ...targetsOf(object).map((target) => makeSwitches(target)));
    handsChanged.subscribe(refresh);
    refresh();
    const isEmpty =
        !listenerPairs(object).length && !object.members.some((member) => member.name === "addEventListener");
    return (
        !isEmpty &&
        section("Listen", place, isHandedOut(object) && make("p", { class: "note" }, "For each object in hand."))
    );
}

/**
 * @param {Target} target
 * @param {readonly ListenerPair[]} [pairs]
 */
export function makeSwitches(target, pairs = listenerPairs(target.object)) {
    const rows = pairs.map((pair) => makeSwitch(target, pair));
    const add = target.object.members.find((member) => member.name === "addEventListener");
    const remove = target.object.members.find((member) => member.name === "removeEventListener");
    return make(
        "div",
        { class: "card switches", "data-target": target.name },
        make("h3", {}, target.name),
        ...rows,
        add && remove && makeOther(target, add, remove)
    );
}

/**
 * @param {Target} target
 * @param {ListenerPair} pair
 */
function makeSwitch(target, pair) {
    const box = make("input", {
        type: "checkbox",
        class: "switch",
        role: "switch",
        "data-listen": `${target.name} ${pair.label}`
    });
    const refusal = make("span", { class: "problem", role: "alert" });
    const refresh = () => (box.checked = findActive(target, pair) !== undefined);
    box.addEventListener("change", async () => {
        const { state, error } = await toggle(target, pair).ended;
        refusal.textContent = state === "failed" ? String(Object(error).msg ?? error) : "";
        refresh();
    });
    listenersChanged.subscribe(refresh);
    refresh();
    return make(
        "label",
        { class: "switch-row" },
        box,
        make("span", { class: "name" }, pair.label),
        make("span", { class: "doc" }, ...prose(pair.doc)),
        refusal
    );
}

/**
 * Events that the reference does not list are listened to by their names.
 *
 * @param {Target} target
 * @param {ApiMember} add
 * @param {ApiMember} remove
 */
function makeOther(target, add, remove) {
    const name = make("input", {
        type: "text",
        placeholder: "another event",
        "aria-label": "name of another event",
        spellcheck: "false"
    });
    const form = make(
        "form",
        { class: "inline" },
        name,
        make("button", { type: "submit", class: "secondary" }, "Listen")
    );
    form.addEventListener("submit", (event) => {
        event.preventDefault();
        if (!name.value)
            return;
        const pair = { label: name.value, doc: "", add, remove, eventName: name.value };
        if (!findActive(target, pair))
            toggle(target, pair);
        form.before(makeSwitch(target, pair));
        name.value = "";
    });
    return form;
}

const KEYS = [
    ["/", "search"],
    ["↑ ↓ ← →", "move in the list, open and close objects"],
    ["Enter", "in the list: open; in a form: call"],
    ["Ctrl ⏎", "call from anywhere"],
    ["Esc", "clear the search; from elsewhere: back to the list"],
    ["Alt 1 2 3", "the list, the page, the log"]
];

export function makeHomeView() {
    const members = objects.reduce((sum, object) => sum + object.members.length, 0);
    const built = objects.reduce((sum, object) => sum + countBuilt(object), 0);
    const builtText = built === members ? "" : `, of which ${built} are built`;
    return make(
        "article",
        { class: "view", "data-view": "home" },
        make(
            "div",
            { class: "hero" },
            make("h1", { tabindex: "-1" }, "NovaExtension"),
            make(
                "p",
                { class: "lead" },
                `${objects.filter((object) => !isHandedOut(object)).length} objects, ` +
                    `${objects.filter(isHandedOut).length} that they hand out, ${members} members` +
                    `${builtText}. Choose one, fill in its form, call it.`
            )
        ),
        section(
            "Objects",
            cards((object) => !isHandedOut(object))
        ),
        section("Handed out by other objects", cards(isHandedOut)),
        section(
            "Keys",
            make(
                "dl",
                { class: "keys" },
                ...KEYS.flatMap(([key, what]) => [make("dt", {}, make("kbd", {}, key)), make("dd", {}, what)])
            )
        )
    );
}

/** @param {(object: ApiObject) => boolean} isMeant */
function cards(isMeant) {
    return make(
        "div",
        { class: "cards" },
        ...objects.filter(isMeant).map((object) => {
            const meter = make("meter", {
                min: "0",
                max: String(object.members.length),
                value: String(countBuilt(object)),
                "aria-label": "built"
            });
            return make(
                "a",
                { class: "object-card", href: `#${object.name}`, "data-card": object.name },
                make("strong", {}, object.name),
                make("span", { class: "doc" }, ...prose(firstSentence(object.doc))),
                make("span", { class: "built" }, !isAllBuilt(object) && meter, membersText(object))
            );
        })
    );
}
