// A page's module: what the page does with the suite, without the page's looks.

/** How the page looks: what the user chose last, or the default. */
export function loadView(fallback = "outline") {
    return NovaExtension.SettingsManager.settings({ format: 0 })
        .getValue({ key: "notes/view", defaultValue: fallback }).data;
}

/** @param {string} view */
export function saveView(view) {
    NovaExtension.SettingsManager.settings({ format: 0 }).setValue({ key: "notes/view", value: view });
}

/**
 * Has the user attach a file: its name and digest, null when the user cancels.
 *
 * @param {string} folder
 */
export async function attach(folder) {
    const path = NovaExtension.FileSystem.getOpenFileName({ caption: "Attach", dir: folder, filter: "" }).data;
    return path ? { name: path.slice(path.lastIndexOf("/") + 1), digest: await digest(path) } : null;
}

/**
 * A file's digest, or why there is none.
 *
 * @param {string} path
 */
export async function digest(path) {
    try {
        return await NovaExtension.FileSystem.getFileMd5(path);
    } catch (error) {
        return `no digest: ${/** @type {NovaExtension.Failure} */ (error).msg}`;
    }
}

/**
 * Makes a folder. False when it is there already.
 *
 * @param {string} path
 */
export function ensureFolder(path) {
    try {
        return NovaExtension.FileSystem.mkpath(path).data;
    } catch (error) {
        if (/** @type {NovaExtension.Failure} */ (error).msg === "the directory already exist")
            return false;
        throw error;
    }
}

/** @param {string} title */
export function mayRemove(title) {
    return NovaExtension.Tools.showConfirmDlg({ text: `Remove "${title}"?`, buttons: ["Remove", "Keep"] }).data === 0;
}

/** The colour that the user picks, or null. @returns {Promise<string | null>} */
export function pickInk() {
    return new Promise((resolve) => {
        NovaExtension.Utils.pickColor({ color: "#000000" }, ({ accepted, color }) => resolve(accepted && color ? color : null));
    });
}

/**
 * Calls back with a greeting now, and each time that somebody signs in or out.
 *
 * @param {(greeting: string) => void} show
 */
export function greet(show) {
    const { Account } = NovaExtension;
    const greeting = () => show(Account.isLoggedIn().data ? `Hello ${Account.getUserInfo().data.nickName}` : "Hello");
    Account.addLoginListener(greeting);
    Account.addLogoutListener(greeting);
    greeting();
}
