// Failures as the library throws them.

export const MissingParameters = { code: 1, text: "missing required parameters." };
export const WrongParameters = { code: 1, text: "wrong parameters." };

/** The Error of a call that failed. */
export function makeFailure(code, msg) {
    return Object.assign(new Error(msg), { success: false, code, msg });
}

/** Whether a text is one of a declared failure, in whose text %1 stands for any. */
export function isTextOf(declared, text) {
    const parts = declared.split(/%\d/).map((part) => part.replace(/[.*+?^${}()|[\]\\]/g, "\\$&"));
    return new RegExp(`^${parts.join("[^]*")}$`).test(text);
}
