// As much of node:test and node:assert as the tests use, for novahost.
/** @type {{ name: string, run: () => unknown }[]} */
const tests = [];
const test = (/** @type {string} */ name, /** @type {() => unknown} */ run) => void tests.push({ name, run });

const same = (/** @type {any} */ a, /** @type {any} */ b) => Object.is(a, b) || (typeof a === "object" && typeof b === "object" && a && b
    && Object.keys(a).length === Object.keys(b).length && Object.keys(a).every((/** @type {string} */ key) => same(a[key], b[key])));
const check = (/** @type {boolean} */ fits, /** @type {unknown} */ actual, /** @type {unknown} */ expected) => {
    if (!fits)
        throw new Error(`expected ${expected instanceof RegExp ? expected : JSON.stringify(expected)}, got ${JSON.stringify(actual)}`);
};
const assert = {
    equal: (/** @type {unknown} */ actual, /** @type {unknown} */ expected) => check(Object.is(actual, expected), actual, expected),
    deepEqual: (/** @type {unknown} */ actual, /** @type {unknown} */ expected) => check(same(actual, expected), actual, expected),
    match: (/** @type {string} */ actual, /** @type {RegExp} */ expected) => check(expected.test(actual), actual, expected),
    throws: (/** @type {() => unknown} */ action, /** @type {any} */ expected) => {
        let thrown;
        try {
            action();
        } catch (error) {
            thrown = /** @type {any} */ (error);
        }
        check(thrown !== undefined && Object.keys(expected).every((key) => thrown[key] === expected[key]), thrown, expected);
    },
};

/** Runs the tests one after the other, and ends the page. */
async function runTests() {
    let failed = 0;
    for (const { name, run } of tests) {
        try {
            await run();
            console.log(`ok - ${name}`);
        } catch (error) {
            ++failed;
            console.log(`not ok - ${name}: ${error}`);
        }
    }
    console.log(`# ${tests.length - failed} of ${tests.length} passed`);
    exit(failed ? 1 : 0);
}
