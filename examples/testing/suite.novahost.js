// The suite of the tests in novahost: the real library, and the stand-in suite with notes.profile.json. Rows are not needed.
const folder = process.argv[2];
const fill = (/** @type {any} */ properties) => properties;
const begin = (/** @type {unknown[]} */ ..._rows) => {};
const turn = async (/** @type {number} */ _milliseconds) => {};

/** @param {() => void} change */
async function signOut(change) {
    change();
    const heard = new Promise((resolve) => NovaExtension.Account.addLogoutListener(resolve));
    process.play("logout");
    await heard;
}
