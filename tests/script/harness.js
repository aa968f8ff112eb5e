// What every script test begins with: rows of [name, action, expectation]. An expectation is the value that the action
// answers (compared in depth), or refusal(code, msg) for an Error that carries them.
const show = (/** @type {unknown} */ value) =>
    JSON.stringify(value, (key, item) => (typeof item === "bigint" ? `${item}n` : item === undefined ? "undefined" : item));
/** @type {(a: any, b: any) => boolean} */
const same = (a, b) =>
    Object.is(a, b) || (typeof a === "object" && typeof b === "object" && a && b && Array.isArray(a) === Array.isArray(b)
        && Object.keys(a).length === Object.keys(b).length
        && Object.keys(a).every((key) => Object.prototype.hasOwnProperty.call(b, key) && same(a[key], b[key])));
const refusal = (/** @type {number} */ code, /** @type {string} */ msg) => ({ refused: true, success: false, code, msg });
const caught = (/** @type {any} */ error) => {
    if (!(error instanceof Error) || error.message !== /** @type {any} */ (error).msg)
        throw error;
    const { success, code, msg } = /** @type {NovaExtension.Failure} */ (error);
    return { refused: true, success, code, msg };
};
/** Calls a member by its name, with arguments of any type. */
const call = (/** @type {any} */ object, /** @type {string} */ member, /** @type {unknown[]} */ ...args) =>
    object[member](...args);
/** Rows that hold in the bare engine only; docs/pages.md says why under "Two engines". */
const bare = (/** @type {any[][]} */ ...rows) => ("document" in globalThis ? [] : rows);
let failures = 0;
/** @param {any[][]} rows */
async function check(rows) {
    for (const [name, action, expected] of rows) {
        let answer;
        try {
            answer = await action();
        } catch (error) {
            try {
                answer = caught(error);
            } catch {
                answer = `${error}`;
            }
        }
        if (!same(answer, expected)) {
            ++failures;
            console.error(`${name}: expected ${show(expected)}, got ${show(answer)}`);
        }
    }
}
