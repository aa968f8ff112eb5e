// Every call that the user makes is made here, so that none escapes the trace. (What skin.js reads is not traced.)

import { Signal } from "./signal.js";
import { findObject, isHandedOut } from "./reference.js";

/** @type {Call[]} */
export const calls = [];
/** @type {Target[]} */
export const inHand = [];

/** A call is about to be made. */
export const began = /** @type {Signal<Call>} */ (new Signal());
/** A call has returned a promise. */
export const promised = /** @type {Signal<Call>} */ (new Signal());
/** A call has ended: it has returned or thrown, or its promise is settled. */
export const ended = /** @type {Signal<Call>} */ (new Signal());
/** An object was handed out, or let go. */
export const handsChanged = /** @type {Signal<void>} */ (new Signal());

/** Whether the page was opened where there is something to call. */
export const isConnected = () => typeof NovaExtension !== "undefined";

/**
 * An object of NovaExtension, looked up at each call.
 *
 * @param {ApiObject} object
 * @returns {Target}
 */
export function rootTarget(object) {
    const name = `NovaExtension.${object.name}`;
    return {
        object,
        name,
        find() {
            if (!isConnected())
                throw new Error(
                    "This page has no NovaExtension. Open it with: novahost open examples/explorer/index.html"
                );
            const found = Reflect.get(NovaExtension, object.name);
            if (!found)
                throw new Error(
                    `This page has no ${name}: the profile's policy does not give it to pages of this origin.`
                );
            return found;
        }
    };
}

/**
 * What the members of an object can be called on at this time.
 *
 * @param {ApiObject} object
 */
export function targetsOf(object) {
    const held = inHand.filter((target) => target.object === object);
    return isHandedOut(object) ? held : [rootTarget(object), ...held];
}

/**
 * Calls a member, or reads a property.
 *
 * @param {Target} target
 * @param {ApiMember} member
 * @param {readonly unknown[]} given
 * @returns {Call}
 */
export function call(target, member, given) {
    /** @type {(call: Call) => void} */
    let settle = () => {};
    /** @type {Call} */
    const made = {
        id: calls.length + 1,
        target,
        member,
        given,
        started: new Date(),
        state: "pending",
        promised: false,
        elapsed: 0,
        ended: new Promise((resolve) => (settle = resolve))
    };
    calls.push(made);
    began.emit(made);
    const start = performance.now();

    /** @param {Pick<Call, "state" | "value" | "error">} outcome */
    function end(outcome) {
        Object.assign(made, outcome, { elapsed: performance.now() - start });
        if (made.state === "ok")
            takeInHand(made);
        ended.emit(made);
        settle(made);
    }

    try {
        const returned = invoke(target, member, given);
        if (returned instanceof Promise) {
            Object.assign(made, { promised: true, elapsed: performance.now() - start });
            returned.then(
                (value) => end({ state: "ok", value }),
                (error) => end({ state: "failed", error })
            );
            promised.emit(made);
        } else {
            end({ state: "ok", value: returned });
        }
    } catch (error) {
        end({ state: "failed", error });
    }
    return made;
}

/**
 * @param {Target} target
 * @param {ApiMember} member
 * @param {readonly unknown[]} given
 */
function invoke(target, member, given) {
    const native = target.find();
    if (!(member.name in native))
        throw new Error(`${target.name} has no ${member.name}: the profile does not give it to this page.`);
    return member.kind === "property" ? native[member.name] : native[member.name](...given);
}

/**
 * Keeps the object that a call has handed out, so that its members can be called.
 *
 * @param {Call} made
 */
function takeInHand(made) {
    const { form, type } = made.member.answer;
    const object = type.kind === "handle" && type.name ? findObject(type.name) : undefined;
    const native = form === "envelope" ? Object(made.value).data : made.value;
    if (!object || typeof native !== "object" || native === null)
        return;
    made.handedOut = inHand.find((target) => target.find() === native) ?? held(object, native, made);
    if (!inHand.includes(made.handedOut)) {
        inHand.push(made.handedOut);
        handsChanged.emit();
    }
}

/** @type {Record<string, number>} */
const numbers = {};

/**
 * @param {ApiObject} object
 * @param {object} native
 * @param {Call} origin
 * @returns {Target}
 */
function held(object, native, origin) {
    const kind = object.name.slice(object.name.lastIndexOf(".") + 1);
    const stem = kind[0].toLowerCase() + kind.slice(1);
    numbers[stem] = (numbers[stem] ?? 0) + 1;
    return { object, name: `${stem}${numbers[stem]}`, origin, find: () => native };
}

/** @param {Target} target */
export function letGo(target) {
    inHand.splice(inHand.indexOf(target), 1);
    handsChanged.emit();
}
