// The listeners that the page has, and what they were called with.

import { call, ended } from "./calls.js";
import { Signal } from "./signal.js";
import { nameOf, named } from "./script.js";

/** @type {ActiveListener[]} */
export const active = [];

export const arrived = /** @type {Signal<Arrival>} */ (new Signal());
export const listenersChanged = /** @type {Signal<void>} */ (new Signal());

/**
 * A function that shows what it is called with among the events.
 *
 * @param {string} label
 * @returns {LogListener}
 */
export function makeListener(label) {
    return named((...payload) => arrived.emit({ label, time: new Date(), payload }), label);
}

/**
 * The listener of that name which is added already, or a new one.
 *
 * @param {string} name
 */
export function findListener(name) {
    return active.find(({ listener }) => nameOf(listener) === name)?.listener ?? makeListener(name);
}

/**
 * @param {Target} target
 * @param {ListenerPair} pair
 */
export function findActive(target, { remove, eventName }) {
    return active.find(
        (one) => one.target.name === target.name && one.remove === remove && one.eventName === eventName
    );
}

/**
 * Adds a listener, or removes the one that there is.
 *
 * @param {Target} target
 * @param {ListenerPair} pair
 */
export function toggle(target, pair) {
    const present = findActive(target, pair);
    const name = pair.eventName === null ? [] : [pair.eventName];
    const listener = present?.listener ?? makeListener(`${target.name.replace("NovaExtension.", "")} ${pair.label}`);
    return call(target, present ? pair.remove : pair.add, [...name, listener]);
}

// The calls say which listeners there are, whoever made them: a switch, a form, or a repeated call.
ended.subscribe(({ state, target, member, given }) => {
    const [, verb, what] = /^(add|remove)(.+)Listener$/.exec(member.name) ?? [];
    if (state !== "ok" || !verb)
        return;
    const eventName = what === "Event" ? String(given[0]) : null;
    const listener = /** @type {LogListener | undefined} */ (given.find((value) => typeof value === "function"));
    const isSame = (/** @type {ActiveListener} */ one) =>
        one.target.name === target.name &&
        one.eventName === eventName &&
        one.remove.name === `remove${what}Listener` &&
        (!listener || one.listener === listener);
    const present = active.filter(isSame);
    if (verb === "remove") {
        present.forEach((one) => active.splice(active.indexOf(one), 1));
    } else if (listener && !present.length) {
        const remove = target.object.members.find((one) => one.name === `remove${what}Listener`);
        if (remove)
            active.push({ target, remove, eventName, label: eventName ?? member.event ?? what, listener });
    }
    listenersChanged.emit();
});
