// What a call fails with before a row is looked for.
import { refusalOfArguments } from "./arguments.js";
import { WrongParameters } from "./failure.js";
import { failureWithout } from "./faults.js";

export const genericMembers = ["addEventListener", "removeEventListener", "dispatchEvent", "getAllEventInfo"];

/** What the hub of an object refuses, which sees to listeners itself. */
function refusalOfListener(member, values) {
    const isGeneric = genericMembers.includes(member.name);
    const isAdding = member.name.startsWith("add");
    if ((!isGeneric && !member.event) || !(isAdding || member.name.startsWith("remove")))
        return undefined;
    const listener = isGeneric ? values[1] : values[0];
    return typeof listener !== "function" && (isAdding || listener !== undefined) ? WrongParameters : undefined;
}

/** The declared failure of a call while services are missing. Failures are declared in the order in which they are found. */
export function refusalOf(path, member, values, missing) {
    const absent = failureWithout([...missing], path, member);
    const wrong = refusalOfListener(member, values) ?? refusalOfArguments(member, values);
    if (!absent || !wrong)
        return absent ?? wrong;
    const position = (one) => member.failures.findIndex(({ code, text }) => code === one.code && text === one.text);
    // A promise that is to be rejected has to be made first.
    return position(absent) < position(wrong) || (wrong.rejects && !absent.rejects) ? absent : wrong;
}
