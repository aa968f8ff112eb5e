// The list of objects and members: a tree for the keyboard and for screen readers, narrowed by the search.

import { fill, make } from "./dom.js";
import { matches, objects, pathOf } from "./reference.js";

/**
 * @typedef {{ node: HTMLElement, row: HTMLElement, group?: HTMLElement, path: string, doc: string, built: boolean,
 *     owner?: Item, members: Item[] }} Item
 */

/**
 * @param {HTMLElement} root
 * @param {(path: string) => void} open
 */
export function makeTree(root, open) {
    const items = objects.map(makeObjectItem);
    const all = items.flatMap((item) => [item, ...item.members]);
    /** Which objects were open before the search opened others. */
    const opened = new Set();
    let isSearching = false;
    fill(root, ...items.map((item) => item.node));

    const isOpen = (/** @type {Item} */ item) => item.node.getAttribute("aria-expanded") === "true";
    const itemOf = (/** @type {EventTarget | null} */ target) =>
        all.find((item) => item.node === (target instanceof Element && target.closest("[role=treeitem]")));
    const visible = () =>
        all.filter((item) => !item.node.hidden && (!item.owner || (isOpen(item.owner) && !item.owner.node.hidden)));

    /**
     * @param {Item} item
     * @param {boolean} on
     */
    function expand(item, on) {
        if (!item.group)
            return;
        item.node.setAttribute("aria-expanded", String(on));
        item.group.hidden = !on;
        if (!isSearching)
            opened[on ? "add" : "delete"](item);
    }

    /** @param {Item | undefined} item */
    function focus(item) {
        if (!item)
            return;
        all.forEach((one) => (one.node.tabIndex = one === item ? 0 : -1));
        item.node.focus();
        item.row.scrollIntoView({ block: "nearest" });
    }

    /** @param {string} path */
    function select(path) {
        const item = all.find((one) => one.path === path);
        all.forEach((one) => {
            one.node.setAttribute("aria-selected", String(one === item));
            one.node.tabIndex = one === (item ?? items[0]) ? 0 : -1;
        });
        if (item)
            expand(item.owner ?? item, true);
        item?.row.scrollIntoView({ block: "nearest" });
    }

    /**
     * Shows what has all words.
     *
     * @param {string} text
     * @param {boolean} builtOnly
     * @returns {number} how many members and objects are shown
     */
    function filter(text, builtOnly) {
        const words = text.toLowerCase().split(/\s+/).filter(Boolean);
        isSearching = words.length > 0;
        let shown = 0;
        for (const item of items) {
            const isObjectMeant = words.length > 0 && matches(words, item.path, "");
            for (const member of item.members) {
                member.node.hidden =
                    (builtOnly && !member.built) || !(isObjectMeant || matches(words, member.path, member.doc));
                shown += Number(!member.node.hidden);
            }
            const hasMembers = item.members.some((member) => !member.node.hidden);
            item.node.hidden = !hasMembers && !(isObjectMeant && !builtOnly);
            expand(item, isSearching ? hasMembers : opened.has(item));
        }
        const first = visible()[0];
        if (first && !visible().some((item) => item.node.tabIndex === 0))
            all.forEach((one) => (one.node.tabIndex = one === first ? 0 : -1));
        return shown;
    }

    /** @param {Item} item */
    const goOut = (item) => (item.group && isOpen(item) ? expand(item, false) : focus(item.owner));
    /** @param {Item} item */
    const goIn = (item) =>
        item.group && !isOpen(item) ? expand(item, true) : focus(item.members.find((member) => !member.node.hidden));

    /** @param {KeyboardEvent} event */
    function moveByKey(event) {
        const item = itemOf(event.target);
        if (!item || event.ctrlKey || event.altKey || event.metaKey)
            return;
        const list = visible();
        const at = list.indexOf(item);
        /** @type {Record<string, () => void>} */
        const moves = {
            ArrowDown: () => focus(list[at + 1]),
            ArrowUp: () => focus(list[at - 1]),
            Home: () => focus(list[0]),
            End: () => focus(list[list.length - 1]),
            ArrowRight: () => goIn(item),
            ArrowLeft: () => goOut(item),
            Enter: () => open(item.path),
            " ": () => open(item.path)
        };
        const byLetter = () =>
            focus(
                [...list.slice(at + 1), ...list.slice(0, at)].find((one) =>
                    nameOf(one).toLowerCase().startsWith(event.key.toLowerCase())
                )
            );
        const move = moves[event.key] ?? (/^[a-z]$/i.test(event.key) ? byLetter : undefined);
        if (!move)
            return;
        event.preventDefault();
        move();
    }

    root.addEventListener("keydown", moveByKey);
    root.addEventListener("click", (event) => {
        const item = itemOf(event.target);
        if (!item)
            return;
        const isTwisty = event.target instanceof Element && event.target.closest(".twisty");
        expand(item, isTwisty ? !isOpen(item) : true);
        focus(item);
        if (!isTwisty)
            open(item.path);
    });

    return {
        select,
        filter,
        /** Moves the focus to where the list was left. */
        enter: () => focus(visible().find((item) => item.node.tabIndex === 0) ?? visible()[0]),
        /** The first member that the search has found. */
        first: () => (visible().find((item) => item.owner) ?? visible()[0])?.path
    };
}

/** @param {Item} item */
function nameOf({ path }) {
    return path.slice(path.lastIndexOf(".") + 1);
}

/**
 * @param {ApiObject} object
 * @returns {Item}
 */
function makeObjectItem(object) {
    const row = make(
        "div",
        { class: "tree-row" },
        make("span", { class: "twisty" }),
        make("span", { class: "tree-name" }, object.name),
        make("span", { class: "count", "aria-hidden": "true" }, String(object.members.length))
    );
    const group = make("ul", { role: "group", hidden: true });
    const node = make(
        "li",
        {
            role: "treeitem",
            "aria-expanded": "false",
            "aria-selected": "false",
            tabindex: "-1",
            "aria-label": object.name,
            "data-object": object.name
        },
        row,
        group
    );
    /** @type {Item} */
    const item = { node, row, group, path: object.name, doc: object.doc, built: true, members: [] };
    item.members = object.members.map((member) => makeMemberItem(object, member, item));
    group.append(...item.members.map((member) => member.node));
    return item;
}

/**
 * @param {ApiObject} object
 * @param {ApiMember} member
 * @param {Item} owner
 * @returns {Item}
 */
function makeMemberItem(object, member, owner) {
    const path = pathOf(object, member);
    const row = make(
        "div",
        { class: member.built ? "tree-row" : "tree-row unbuilt" },
        make("span", { class: "tree-name" }, member.name),
        !member.built && make("span", { class: "tag" }, "not built")
    );
    const node = make(
        "li",
        {
            role: "treeitem",
            "aria-selected": "false",
            tabindex: "-1",
            "data-member": path,
            "aria-label": member.built ? member.name : `${member.name}, not built`
        },
        row
    );
    return { node, row, path, doc: member.doc, built: member.built, owner, members: [] };
}
