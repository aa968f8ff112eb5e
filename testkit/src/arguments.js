// Reads arguments as the library does, to find out what it refuses of them.
import { MissingParameters, WrongParameters } from "./failure.js";
import { isBytes, isPlain } from "./values.js";

const Done = "done";
const Absent = "absent";
const NotConvertible = "not convertible";
const Wrong = "wrong";

const isNumber = (value) => typeof value === "number" || typeof value === "bigint";

function toText(value) {
    if (typeof value === "string")
        return value;
    const isWritten = typeof value === "boolean" || typeof value === "bigint" || Number.isFinite(value);
    return isWritten ? String(value) : undefined;
}

const hasHalfPair = (text) => /\p{Surrogate}/u.test(text);

function toInteger(value) {
    if (typeof value === "boolean")
        return Number(value);
    if (typeof value === "string")
        return /^-?\d+(\.0*)?$/.test(value) ? toInteger(Number(value)) : undefined;
    const number = isNumber(value) ? Number(value) : NaN;
    return Number.isInteger(number) && number >= -(2 ** 31) && number < 2 ** 31 ? number : undefined;
}

function toDouble(value) {
    if (typeof value === "string")
        return /^-?(\d+\.?\d*|\.\d+)(e[+-]?\d+)?$/i.test(value) && Number.isFinite(Number(value)) ? Number(value) : undefined;
    if (typeof value === "boolean")
        return Number(value);
    return isNumber(value) && Number.isFinite(Number(value)) ? Number(value) : undefined;
}

function toBoolean(value) {
    if (value === "true" || value === "false")
        return value === "true";
    const number = typeof value === "number" ? value : toDouble(value);
    return typeof value === "boolean" ? value : number === undefined || Number.isNaN(number) ? undefined : number !== 0;
}

/** How a value of each kind is read: `is`, whether it needs no conversion; `read`, [how that ended, what was read]. */
const Kinds = {
    string: {
        is: (type, value) => typeof value === "string",
        read: (type, value) => {
            if (type.values)
                return choose(type, typeof value === "string" ? value : "");
            const text = toText(value);
            return type.utf8 && text !== undefined && hasHalfPair(text) ? [Wrong] : converted(text);
        },
    },
    integer: {
        is: (type, value) => isNumber(value) && toInteger(value) !== undefined,
        read: (type, value) => (type.values ? choose(type, toInteger(value)) : converted(toInteger(value))),
    },
    number: { is: (type, value) => isNumber(value), read: (type, value) => converted(toDouble(value)) },
    int64: { is: (type, value) => isNumber(value), read: (type, value) => converted(toDouble(value)) },
    boolean: { is: (type, value) => typeof value === "boolean", read: (type, value) => converted(toBoolean(value)) },
    bytes: { is: (type, value) => isBytes(value), read: (type, value) => (isBytes(value) ? [Done, value] : [Wrong]) },
    any: { is: () => true, read: (type, value) => (type.plain && !isData(value) ? [Wrong] : [Done, value]) },
    map: { is: isMapOf, read: readMap },
    array: { is: (type, value) => Array.isArray(value), read: readArray },
    union: { is: (type, value) => type.types.some((one) => Kinds[one.kind].is(one, value)), read: readUnion },
    object: { is: (type, value) => isPlain(value), read: readStruct },
};

const converted = (value) => (value === undefined ? [NotConvertible] : [Done, value]);
const choose = (type, value) => (type.values.includes(value) ? [Done, value] : [Wrong]);

/** Neither a function nor a native object nor bytes, at any depth. */
function isData(value) {
    if (typeof value !== "object" || value === null)
        return typeof value !== "function";
    return (Array.isArray(value) || isPlain(value)) && Object.values(value).every(isData);
}

function isMapOf(type, value) {
    return isPlain(value) && (type.values.kind !== "string" || Object.values(value).every((item) => typeof item === "string"));
}

function readMap(type, value) {
    if (type.values.kind === "any")
        return isPlain(value) && isData(value) ? [Done, value] : [Wrong];
    return isPlain(value) ? [Done, value] : [NotConvertible];
}

function readArray(type, value) {
    const isIntegers = type.items.kind === "integer" && !type.items.values;
    if (!Array.isArray(value))
        return [isIntegers ? Wrong : NotConvertible];
    const isRight = value.every((item) => read(type.items, item, !isIntegers)[0] === Done);
    return isRight ? [Done, value] : [Wrong];
}

function readUnion(type, value) {
    const fitting = type.types.find((one) => Kinds[one.kind].is(one, value));
    if (fitting)
        return Kinds[fitting.kind].read(fitting, value);
    // A string or bytes: whatever else is given is wrong.
    return [type.types.some((one) => one.kind === "bytes") && type.types.length === 2 ? Wrong : NotConvertible];
}

function readStruct(type, value) {
    if (!isPlain(value))
        return [NotConvertible];
    return refusalOfFields(type, value) ? [Wrong] : [Done, value];
}

function read(type, value, strict) {
    if (value === undefined)
        return [Absent];
    return strict && !Kinds[type.kind].is(type, value) ? [Wrong] : Kinds[type.kind].read(type, value);
}

/** Whether a required property counts as missing though it was read. */
function isEmpty(type, value) {
    if (type.kind === "any")
        return value === null || value === undefined;
    return (type.kind === "string" && value === "") || (type.kind === "array" && type.items.utf8 && value.length === 0);
}

function refusalOfFields(type, object) {
    for (const field of type.fields) {
        const [reading, value] = read(field.type, object?.[field.name], type.strict);
        if (reading === Wrong)
            return field.wrong ?? WrongParameters;
        if (!field.optional && (reading !== Done || isEmpty(field.type, value)) && (!field.expected || field.missing))
            return field.missing ?? MissingParameters;
    }
    return undefined;
}

/** An argument that must be given and be of its kind. */
function refusalOfDemanded(type, refusals, value) {
    const [reading] = read(type, value, true);
    return reading === Absent ? refusals[0] : reading === Done ? undefined : refusals.at(-1);
}

function refusalOfText(parameter, value) {
    const { type, refusals, empty } = parameter;
    if (type.utf8) {
        const [reading, text] = read(type, value);
        return reading === Wrong ? WrongParameters : text ? undefined : empty;
    }
    const isWrong = typeof value !== "string" && value !== undefined && refusals?.length === 1;
    return isWrong ? refusals[0] : typeof value !== "string" || value === "" ? empty ?? refusals?.[0] : undefined;
}

function refusalOfPosition(parameter, value) {
    const { type, refusals } = parameter;
    if (type.kind === "object") {
        if (!isPlain(value) && (refusals || (type.strict && value !== undefined)))
            return refusals?.[0] ?? type.fields[0].wrong ?? WrongParameters;
        return refusalOfFields(type, isPlain(value) ? value : undefined);
    }
    if (type.kind === "function")
        return refusals && typeof value !== "function" ? refusals[value === undefined ? 0 : refusals.length - 1] : undefined;
    if (refusals && refusals[0].text === MissingParameters.text)
        return refusalOfDemanded(type, refusals, value);
    if (type.kind === "string" && !type.values)
        return refusalOfText(parameter, value);
    if (type.kind === "array" && (value === undefined || (Array.isArray(value) && value.length === 0)))
        return parameter.empty;
    const isRefused = Kinds[type.kind].read(type, value)[0] === Wrong && !(type.kind === "any" && value === undefined);
    return isRefused ? refusals?.[0] ?? WrongParameters : undefined;
}

/** What the library refuses of these arguments: a declared failure, or undefined. */
export function refusalOfArguments(member, values) {
    let position = 0;
    for (const parameter of member.parameters) {
        if (parameter.rest)
            return undefined;
        const refusal = refusalOfPosition(parameter, values[position++]);
        if (refusal)
            return refusal;
    }
    return undefined;
}
