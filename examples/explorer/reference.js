// The reference: what there is of objects, members, types, and how it is spelled.

import { objects } from "./api.js";

export { objects };

/** @param {ApiObject} object */
export const isHandedOut = (object) => object.instance === "handed out";

/** @param {string} name */
export function findObject(name) {
    return objects.find((object) => object.name === name);
}

/**
 * An object that the explorer itself uses.
 *
 * @param {string} name
 */
export function objectNamed(name) {
    const object = findObject(name);
    if (!object)
        throw new Error(`the reference has no ${name}`);
    return object;
}

/**
 * @param {ApiObject} object
 * @param {string} name
 */
export function memberNamed(object, name) {
    const member = object.members.find((one) => one.name === name);
    if (!member)
        throw new Error(`the reference has no ${object.name}.${name}`);
    return member;
}

/**
 * What a link names: an object, "FileSystem", or a member, "FileSystem.copy". An object comes first: "FileSystem.File"
 * is both.
 *
 * @param {string} path
 * @returns {{ object: ApiObject, member?: ApiMember } | undefined}
 */
export function find(path) {
    const [, place, asMember] = /^(.*?)(\(\))?$/.exec(path) ?? [];
    const object = asMember ? undefined : findObject(place);
    if (object)
        return { object };
    const dot = place.lastIndexOf(".");
    const owner = findObject(place.slice(0, dot));
    const member = owner?.members.find((one) => one.name === place.slice(dot + 1));
    return owner && member && { object: owner, member };
}

/**
 * The path of a member, which is also its link. One that is named as an object gets "()".
 *
 * @param {ApiObject} object
 * @param {ApiMember} member
 */
export function pathOf(object, member) {
    const path = `${object.name}.${member.name}`;
    return findObject(path) ? `${path}()` : path;
}

/**
 * The members that hand out an object.
 *
 * @param {ApiObject} object
 */
export function makersOf(object) {
    return objects.flatMap((owner) =>
        owner.members
            .filter((member) => member.answer.type.kind === "handle" && member.answer.type.name === object.name)
            .map((member) => ({ object: owner, member }))
    );
}

/** @param {ApiObject} object */
export function countBuilt(object) {
    return object.members.filter((member) => member.built).length;
}

/** @param {ApiObject} object */
export function isAllBuilt(object) {
    return countBuilt(object) === object.members.length;
}

/** @param {ApiObject} object */
export function membersText(object) {
    const count = object.members.length;
    if (isAllBuilt(object))
        return count === 1 ? "1 member" : `${count} members`;
    return `${countBuilt(object)} of ${count} built`;
}

/** @param {string} doc */
export function firstSentence(doc) {
    return doc.split(/(?<=\.)\s/, 1)[0];
}

/**
 * Whether all words occur in the path or the documentation.
 *
 * @param {string[]} words in lower case
 * @param {string} path
 * @param {string} doc
 */
export function matches(words, path, doc) {
    const text = `${path} ${doc}`.toLowerCase();
    return words.every((word) => text.includes(word));
}

/**
 * A type in one line.
 *
 * @param {ApiType} type
 * @returns {string}
 */
export function typeText(type) {
    switch (type.kind) {
        case "string":
        case "number":
        case "integer":
            return type.values
                ? type.values.map((/** @type {unknown} */ value) => JSON.stringify(value)).join(" | ")
                : type.kind;
        case "array":
            return `${typeWithin(type.items)}[]`;
        case "map":
            return `map of ${typeWithin(type.values)}`;
        case "union":
            return (type.types ?? []).map(typeText).join(" | ");
        case "object":
            return type.name || "object";
        case "function":
            return `function(${(type.parameters ?? []).map(({ name }) => name).join(", ")})`;
        case "handle":
            return type.name ?? "object";
        case "void":
            return "undefined";
        default:
            return type.kind;
    }
}

/** @param {ApiType} [type] */
function typeWithin(type = { kind: "any" }) {
    const text = typeText(type);
    return text.includes(" ") ? `(${text})` : text;
}

/** @param {ApiMember} member */
export function answerText({ answer }) {
    const text = typeText(answer.type);
    switch (answer.form) {
        case "envelope":
            return `{ success: true, data: ${text} }`;
        case "promise":
            return `Promise<${text}>`;
        default:
            return text;
    }
}

/** @param {ApiMember} member */
export function signature(member) {
    if (member.kind === "property")
        return `${member.name}: ${answerText(member)}`;
    const parameters = member.parameters.map(
        ({ name, type, optional, rest }) =>
            `${rest ? "..." : ""}${name}${optional && !rest ? "?" : ""}: ${typeText(type)}`
    );
    return `${member.name}(${parameters.join(", ")}): ${answerText(member)}`;
}

/**
 * The objects with named properties in a type, outer ones first.
 *
 * @param {ApiType} type
 * @returns {ApiType[]}
 */
export function shapesOf(type) {
    const inner = [
        type.items,
        type.kind === "map" ? type.values : undefined,
        ...(type.types ?? []),
        ...(type.fields ?? []).map((field) => field.type),
        ...(type.parameters ?? []).map((parameter) => parameter.type)
    ];
    return [
        ...(type.kind === "object" ? [type] : []),
        ...inner.flatMap((/** @type {ApiType | undefined} */ one) => (one ? shapesOf(one) : []))
    ];
}

/**
 * What one may listen to on an object: its events by name, and the pairs of members for anything else.
 *
 * @param {ApiObject} object
 * @returns {ListenerPair[]}
 */
export function listenerPairs(object) {
    const named = (/** @type {string} */ name) => object.members.find((member) => member.name === name);
    const [add, remove] = [named("addEventListener"), named("removeEventListener")];
    const events =
        add && remove ? object.events.map(({ name, doc }) => ({ label: name, doc, add, remove, eventName: name })) : [];
    const pairs = object.members.flatMap((member) => {
        const what = /^add(.+)Listener$/.exec(member.name)?.[1];
        const counterpart = what && what !== "Event" && named(`remove${what}Listener`);
        return counterpart
            ? [{ label: member.event ?? what, doc: member.doc, add: member, remove: counterpart, eventName: null }]
            : [];
    });
    return [...events, ...pairs.filter((pair) => !events.some((event) => event.label === pair.label))];
}
