// What a member is called on.

import { handsChanged, targetsOf } from "./calls.js";
import { fill, make } from "./dom.js";
import { isHandedOut, makersOf, pathOf } from "./reference.js";
import { callLine } from "./values.js";

/**
 * The choice of what members are called on, where there is a choice.
 *
 * @param {ApiObject} object
 */
export function makeTargetChoice(object) {
    const select = make("select", { "data-role": "target", "aria-label": "called on" });
    const label = make("label", { class: "target" }, "on ", select);
    const makers = make(
        "p",
        { class: "note makers" },
        "Handed out by ",
        ...makersOf(object).flatMap(({ object: owner, member }, index) => [
            index > 0 && ", ",
            make("a", { href: `#${pathOf(owner, member)}` }, `${owner.name}.${member.name}`)
        ])
    );
    const option = (/** @type {Target} */ { name, origin }) =>
        make("option", { value: name }, origin ? `${name}: ${callLine(origin)}` : name);
    /** @type {Target[]} */
    let targets = [];

    /** @param {Target | undefined} kept */
    function refresh(kept) {
        targets = targetsOf(object);
        fill(select, ...targets.map(option));
        select.selectedIndex = kept ? targets.findIndex((target) => target.name === kept.name) : targets.length - 1;
        if (select.selectedIndex < 0)
            select.selectedIndex = targets.length - 1;
        label.hidden = !isHandedOut(object) && targets.length < 2;
        select.disabled = !targets.length;
        makers.hidden = !isHandedOut(object) || targets.length > 0;
    }

    // What has just been handed out is what one goes on with; the others keep the choice.
    handsChanged.subscribe(() => refresh(isHandedOut(object) ? undefined : targets[select.selectedIndex]));
    refresh(isHandedOut(object) ? undefined : targetsOf(object)[0]);
    return { node: label, makers, read: () => targets[select.selectedIndex], choose: refresh };
}
