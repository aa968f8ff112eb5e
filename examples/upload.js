// Uploads: a large file goes to the signed-in user's cloud documents, with a progress bar; one upload is cancelled,
// another one restarted, and the cloud service dies in between.
//
//     novahost run examples/upload.js
//
// `process.play` is the stand-in suite's: it does what a user, or bad luck, would do. All else works in any suite.

const { Account, CloudDoc, FileSystem, SettingsManager } = NovaExtension;
const MiB = 1024 * 1024;
const sizeInMiB = 200;

/**
 * Settles with the payload of the object's next event of this name.
 *
 * @param {Pick<NovaExtension.Event, "addEventListener" | "removeEventListener">} object
 * @param {string} name
 * @returns {Promise<any>}
 */
function event(object, name) {
    return new Promise((resolve) => {
        const listener = (/** @type {any} */ payload) => {
            object.removeEventListener(name, listener);
            resolve(payload);
        };
        object.addEventListener(name, listener);
    });
}

/** @type {Record<string, string>} */
const WORDS = { 0: "waiting", 1: "finished", 2: "failed", 3: "running", 6: "cancelled" };

/**
 * An upload that prints how it goes.
 *
 * @param {string} label
 * @param {string} filePath
 * @param {string} cloudDir
 */
function upload(label, filePath, cloudDir) {
    const task = CloudDoc.createUploadFileTask({ filePath, cloudDir, autoRename: true });
    task.addEventListener("cloud.upload.progressChanged", ({ status, data }) => {
        const { transferred = 0, total = 0 } = JSON.parse(data || "{}"); // no data while the service does not answer
        const share = total ? transferred / total : 0;
        const bar = "#".repeat(Math.round(share * 30)).padEnd(30, ".");
        console.log(`  ${label} [${bar}] ${String(Math.round(share * 100)).padStart(3)} %  ${WORDS[status ?? ""] ?? "no answer"}`);
    });
    return task;
}

console.log("Signing in");
process.play("logout,login:user-1");
await event(Account, "event.account.login");
console.log(`  ${Account.getUserInfo().data.nickName}`);

const folder = `${FileSystem.officeData().data}/upload-${Date.now()}`;
FileSystem.mkpath(folder);
try {
    console.log(`A file of ${sizeInMiB} MiB`);
    const file = `${folder}/large.ini`;
    // Pages write no files but settings, which take any text.
    const settings = SettingsManager.settings({ format: 1, path: file });
    const part = "0123456789abcdef".repeat(MiB / 16);
    for (let i = 0; i < sizeInMiB; ++i)
        settings.setValue({ key: `part/${i}`, value: part });
    await new Promise((resolve) => setTimeout(resolve, 0)); // settings reach the disk between two turns of script
    const digest = await FileSystem.getFileMd5(file);
    console.log(`  ${file}, ${FileSystem.File({ path: file }).size().data} bytes, MD5 ${digest}`);

    const workspace = await CloudDoc.getDefaultWorkSpace();
    console.log(`Uploading to ${workspace.showCloudPath}`);
    let notices = 0;
    CloudDoc.addEventListener("docCloudSyncStatus", () => ++notices);

    console.log("One that is cancelled");
    const cancelled = upload("first ", file, workspace.uploadCloudPath);
    cancelled.start();
    await event(cancelled, "cloud.upload.progressChanged");
    cancelled.cancel();
    const end = await event(cancelled, "cloud.upload.finished");
    console.log(`  first  has ended: ${WORDS[end.status]}`);

    console.log("One that is restarted, while the service dies");
    const task = upload("second", file, workspace.uploadCloudPath);
    task.start();
    await event(task, "cloud.upload.progressChanged");
    task.restart();
    const { taskId } = await event(task, "cloud.upload.started");
    console.log(`  second was restarted as ${taskId}`);
    await event(task, "cloud.upload.progressChanged");
    process.play("cloud:kill");
    console.log("  second: the service has been killed");
    const { status, data, uploadErrorCode } = await event(task, "cloud.upload.finished");
    console.log(`  second has ended: ${WORDS[status] ?? "lost"}`);
    if (status !== "1")
        throw new Error(`the upload did not finish, error ${uploadErrorCode}`);

    console.log("What the cloud has");
    const { cloudPath, sha256 } = JSON.parse(data);
    const copy = await CloudDoc.getCloudCachedFile(cloudPath);
    const same = (await FileSystem.getFileMd5(copy)) === digest;
    console.log(`  ${cloudPath}, SHA-256 ${sha256}`);
    console.log(`  ${copy}: the same content is ${same}; ${notices} notices`);
    if (!same)
        throw new Error("the cloud has something else");
} finally {
    console.log(`Tidied up: ${FileSystem.remove(folder).data}`);
}
