// Files: ask for one, hash it, copy it, and keep settings next to the copy.
//
//     novahost run examples/files.js                                   # with a display: a dialog asks
//     novahost --profile examples/files.profile.json run examples/files.js   # answered by the profile

const { FileSystem, SettingsManager } = NovaExtension;

/**
 * The data of a call, or false after a failure that the page has a use for; other failures are thrown on.
 *
 * @param {string} expected
 * @param {() => { data?: unknown }} call
 */
function or(expected, call) {
    try {
        return call().data;
    } catch (error) {
        const failure = /** @type {NovaExtension.Failure} */ (error);
        if (failure.msg !== expected)
            throw error;
        console.log(`  failed with code ${failure.code}: ${failure.msg}`);
        return false;
    }
}

/** Settings reach the disk when script has returned to the event loop. */
const written = () => new Promise((resolve) => setTimeout(resolve, 0));

console.log("Where things are");
for (const place of /** @type {const} */ (["homePath", "documentsPath", "downloadPath", "tempPath", "officeData"]))
    console.log(`  ${place.padEnd(14)} ${FileSystem[place]().data}`);

console.log("A folder of our own");
const folder = `${FileSystem.tempPath().data}/nova-example-${Date.now()}`;
FileSystem.mkpath(folder); // refuses what is there already, so all in it is ours
console.log(`  ${folder} writable: ${FileSystem.isDirWritable(folder).data}`);

try {
    console.log("A file that the user picks");
    const sample = `${folder}/sample.ini`;
    SettingsManager.settings({ format: 1, path: sample }).setValue({ key: "greeting", value: "hello" });
    await written();
    const options = { caption: "Pick a file to copy", dir: folder, filter: "All files (*)" };
    const picked = FileSystem.getOpenFileName(options).data || sample; // "" when the user cancelled
    const size = FileSystem.File({ path: picked }).size().data;
    console.log(`  ${picked}, ${size} bytes${picked === sample ? " (nothing was picked: our sample)" : ""}`);

    console.log("Its digest, while the page goes on");
    const digest = await FileSystem.getFileMd5(picked);
    console.log(`  ${digest}`);

    console.log("A copy");
    const copy = `${folder}/copy of ${picked.slice(picked.lastIndexOf("/") + 1)}`;
    // A program is refused, and false says that the system did not copy.
    if (or("Path is illegal.", () => FileSystem.copy({ path: picked, newPath: copy, overwrite: true }))) {
        console.log(`  ${copy}: the same content is ${(await FileSystem.getFileMd5(copy)) === digest}`);
        console.log(`  a second one without overwrite: ${FileSystem.copy({ path: picked, newPath: copy }).data}`);
    }

    console.log("Settings next to it");
    const settings = SettingsManager.settings({ format: 1, path: `${copy}.ini` });
    settings.setValue({ key: "copied/from", value: picked });
    settings.setValue({ key: "copied/md5", value: digest });
    await written();
    console.log(`  copied from ${settings.getValue({ key: "copied/from" }).data}`);

    console.log("What a page must expect");
    or("New path is illegal.", () => FileSystem.copy({ path: sample, newPath: "relative.txt" }));
    or("New path is illegal.", () => FileSystem.mkpath("../folder"));
    or("the directory already exist", () => FileSystem.mkpath(folder));
    or("Path is illegal.", () => FileSystem.File({ path: folder }).exists());
    await FileSystem.getFileMd5(`${folder}/none`).catch((error) => console.log(`  rejected with code ${error.code}: ${error.msg}`));
} finally {
    console.log(`Tidied up: ${FileSystem.remove(folder).data && !FileSystem.exists(folder).data}`);
}
