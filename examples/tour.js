// A tour of what a page can do: every answer below comes from the native library.
//
//     novahost run examples/tour.js
//
// With --all it then calls every member of every object once, Network's with the address behind it; the profile answers
// the dialogs:
//
//     novahost --profile examples/tour.profile.json run examples/tour.js --all https://www.example.com/

const { ConfigCenter, Event, FileSystem, Log, Novaoffice, Product, Profile, SettingsManager, TelemetrySdk } =
    NovaExtension;

/** @type {(what: string, answer: unknown) => void} */
function say(what, answer) {
    console.log(`  ${what.padEnd(34)} ${typeof answer === "string" ? answer : JSON.stringify(answer)}`);
}

/**
 * What a failure looks like: an Error that carries `success`, `code` and `msg`.
 *
 * @param {() => void} action
 */
function failure(action) {
    try {
        action();
    } catch (error) {
        return failureOf(error);
    }
    throw new Error("expected a failure");
}

function failureOf(/** @type {unknown} */ error) {
    const { code, msg } = /** @type {NovaExtension.Failure} */ (error);
    return `failed with code ${code}: ${msg}`;
}

console.log("The suite");
say("application", Novaoffice.getApplicationName().data);
say("version", Novaoffice.getNovaVersion().data);
say("product", Product.getAppVersionInfo().data);
say("language", Product.language().data);
say("this page's browser", Profile.getBrowserTraceId().data.browserid);

console.log("Settings, written and read back");
const settings = SettingsManager.settings({ format: 0 });
settings.setValue({ key: "tour/visits", value: 1 });
say("tour/visits", settings.getValue({ key: "tour/visits" }).data);
say("absent, with a default", settings.getValue({ key: "tour/absent", defaultValue: "none" }).data);

console.log("The configuration centre, exact beyond 2^53");
ConfigCenter.setValue({ key: "tour.largest", value: 9007199254740993n });
say("tour.largest", String(ConfigCenter.value({ key: "tour.largest" }).data));
const report = await new Promise((resolve) => {
    ConfigCenter.flushWrite({ key: "tour.flushed", value: { nested: [1, "two", null] } }, resolve);
});
say("flushed to the disk", report);

console.log("Log and telemetry");
say("logInfo", Log.logInfo({ moduleName: "tour", logStr: "the tour was here" }).success);
say("postEvent", TelemetrySdk.postEvent({ eventName: "tour", pb: 1, postContent: { step: "telemetry" } }).success);

console.log("Events");
/** @type {unknown[][]} */
const received = [];
const listener = (/** @type {unknown[]} */ ...payload) => received.push(payload);
Event.addEventListener("tour.greeting", listener);
Event.dispatchEvent("tour.greeting", true, "hello", { from: "the tour" });
Event.removeEventListener("tour.greeting", listener);
Event.dispatchEvent("tour.greeting", true, "nobody hears this");
say("received", received);

console.log("Promises");
say("resolved", await FileSystem.getFileMd5(process.argv[1]));
say("rejected", await FileSystem.getFileMd5("/no/such/file").catch((error) => `rejected: ${error.msg}`));

console.log("Failures, of which an editor that knows the types warns"); // types/package.json
// @ts-expect-error
say("Log.logInfo({})", failure(() => Log.logInfo({})));
// @ts-expect-error
say("settings with format 7", failure(() => SettingsManager.settings({ format: 7 })));

if (process.argv.includes("--all"))
    await callEveryMember();

/** Calls every member of every object once, with the arguments below, and prints what comes back. */
async function callEveryMember() {
    const folder = `${FileSystem.officeData().data}/tour`;
    const file = `${folder}/file.txt`;
    FileSystem.mkpath(`${folder}/work`);
    FileSystem.copy({ path: "/etc/os-release", newPath: file, overwrite: true });
    FileSystem.copy({ path: file, newPath: `${folder}/spare.txt`, overwrite: true });
    const workspace = await NovaExtension.CloudDoc.getDefaultWorkSpace();
    const cloudPath = workspace.uploadCloudPath;
    const groupId = workspace.groupId;
    const saved = await NovaExtension.CloudDoc.saveToCloudDir({ groupId, fileId: cloudPath, fname: "tour.txt" });
    const { id } = await NovaExtension.SyncFolder.syncFolder({ localPath: `${folder}/work` });
    const dot = new Uint8Array([ // a picture of one pixel, BMP
        66, 77, 58, 0, 0, 0, 0, 0, 0, 0, 54, 0, 0, 0, 40, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 24, 0, 0, 0, 0, 0, 4, 0, 0, 0,
        0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 255, 0, 0, 0]);
    const url = process.argv[process.argv.indexOf("--all") + 1] ?? "https://www.example.com/";
    const requestId = "tour";
    const toLocal = { cloudPath, localPath: `${folder}/from cloud` };
    const ignored = () => { };
    const dialog = { caption: "Tour", dir: FileSystem.homePath().data, filter: "All (*)" };
    const size = { w: 400, h: 300 };
    const area = { x: 0, y: 0, ...size };
    const key = { key: "tour.all" };
    const record = { moduleName: "tour", logStr: "all" };
    const colours = { config: ["window", "text"] };
    const setting = { section: "editor", key: "autosaveSeconds" };

    /**
     * What members are called with; those that are not here are called without arguments.
     *
     * @type {Record<string, Record<string, unknown[]>>}
     */
    const given = {
        "Hive": {
            addDataWatch: [{ key: "welcome" }, ignored],
            getData: [{ key: "welcome" }],
            getGroupMatchValue: [{ group: "newToolbar", context: { plan: "team" } }],
            i18nFieldName: [{ key: "welcome", field: "title" }],
            subscribeGroupMatchValue: [{ group: "newToolbar" }, ignored],
        },
        "ByteBufferManager": { create: ["bytes"] },
        "ByteBufferManager.ByteBuffer": { setSize: [8] },
        "Network": {
            download: [{ url, path: `${folder}/downloaded.html`, requestId }, ignored], cancelDownload: [requestId],
            httpRequest: [{ url, requestId }, ignored], fetch: [{ url }], abortRequest: [requestId],
        },
        "Crypto": { c64Encode: ["text"], md5Data: ["text"] },
        "Utils": {
            setTextToClipboard: ["text"], setImageToClipboard: [{ bytes: dot }], pickColor: [{ color: "#ffffff" }, ignored],
            getPictureFilepath: [{}], startDetach: [{ program: "/usr/bin/true" }], getSnapperColor: [{}, ignored],
            inBlackDownloadDir: [file],
        },
        "Tools": {
            openUrl: [{ url }], openInnerUrl: [{ url: "nova://app/inner.html" }], getDomainUrl: [{ name: "account" }],
            launchProcessByNova: [{ program: "tour" }], compress: [{ files: [file], path: `${folder}/files.zip` }],
            decompress: [{ path: `${folder}/files.zip`, folder: `${folder}/unpacked` }],
            showConfirmDlg: [{ text: "Go on?", buttons: ["Go on", "Stop"] }], sendMail: [{ to: ["ada@example.com"], subject: "Tour" }],
        },
        "Payment": { open: [{ source: "tour" }] },
        "CloudDoc.Orbitapi": { commonRequest: [{ requestKey: "user.space" }] },
        "CloudAdapter": { commonRequest: [{ method: "getRoamingMode" }] },
        "SyncFolder": {
            getFolderSize: [{ localPath: folder }], syncFolderPrecheck: [{ localPath: folder }], syncToLocalPrecheck: [toLocal],
            syncFolder: [{ id }], syncToLocal: [toLocal], changeSyncPath: [{ id, localPath: `${folder}/moved` }],
            checkSyncFolderPathValid: [{ localPath: folder }], checkSyncFolderValid: [{ id }], scanFolder: [{ id }],
            showNovaBox: [{ text: "Done." }],
        },
        "Account.Privilege": { hasPrivilege: ["cloudSpace"] },
        "FileSystem": {
            File: [{ path: `${folder}/spare.txt` }], exists: [file], copy: [{ path: file, newPath: `${folder}/copy.txt`, overwrite: true }],
            openLocalLocation: [{ path: folder }], getDllWorkPath: ["tour"], selectLocalFolder: [{ caption: dialog.caption }], selectFolderx: [{}],
            mkpath: [`${folder}/made`], remove: [`${folder}/made`], open: [file], getFileStatus: [file],
            getWritableSaveFileName: [dialog], getExistingDirectory: [dialog], getOpenFileNames: [dialog],
            getOpenFileName: [dialog], showSelectFilePanel: [{ section: "tour" }], getFileMd5: [file],
            startAccess: [{ path: file, requestIfNoPermission: false, showRequestFailedTip: false }], isDir: [folder],
            isDirWritable: [folder],
        },
        "TelemetrySdk": { postEvent: [{ eventName: "tour", pb: 1, postContent: { step: "all" } }] },
        "Log": { logInfo: [record], logWarning: [record] },
        "ConfigCenter": {
            setValue: [{ ...key, value: 1 }], value: [key], remove: [key], flushRead: [key],
            flushWrite: [{ ...key, value: 2 }, ignored], flushRemove: [key, ignored],
        },
        "CirrusConfig": {
            getAuthSwitch: [{ name: "documentChat" }], setAuthSwitch: [{ name: "documentChat", value: true }],
            getConfigData: [setting], setConfigData: [{ ...setting, value: 60 }],
        },
        "PluginManager": { getPlugin: ["sample"] },
        "Webview": {
            setMode: [false], setResizeable: [true], setWindowTitle: ["Tour"], setWindowBackgroundColor: [{ r: 255, g: 255, b: 255 }],
            setEnableStayOnTop: [false], setWindowFlags: [[1]], setWindowFlag: [{ flag: 1, on: true }],
            setAttribute: [{ attribute: 51, on: false }], setRoundFillColor: [{ fillColor: "#ffffff" }],
            setDisableScrollBar: [false], setDisableXScrollBar: [false], setDisableYScrollBar: [false],
            setGeometry: [{ x: 10, y: 10 }], setSize: [size], setDragArea: [area], setBlackDragArea: [area],
            setMinimumSize: [{ minw: 100, minh: 100 }], setMaximumSize: [{ maxw: 2000, maxh: 2000 }], setMinimumWidth: [100], setMinimumHeight: [100],
            setMaximumWidth: [2000], setMaximumHeight: [2000], setDragEnterEnable: [true],
            invokeGeneralMethod: [{ funcName: "getWindowTitle" }], invokeGeneralMethodAsync: [{ funcName: "getWindowTitle" }],
        },
        "WebviewMgr": { create: [{ id: "tour", windowType: "Dialog" }], getWebview: ["tour"] },
        "CloudDoc": {
            uploadFile2CloudFolder: [{ cloudPath, files: [file] }], getCloudCachedFile: [saved.cloudPath],
            openCloudFolder: [{ cloudPath }], createUploadFileTask: [{ filePath: file }], syncFolder: [{ groupId, folderId: cloudPath }],
            saveToCloudDir: [{ groupId, fileId: cloudPath, fname: "tour" }], changeRoamingMode: ["auto"],
        },
        "SettingsManager": { settings: [{ format: 0 }] },
        "Product": { getProductString: [{ key: "Home" }], getConfigString: ["tour"], getConfigInt: ["tour"] },
        "Skin": {
            switchSkin: [NovaExtension.Skin.getCurrentSkinName().data], getSkinHintConfig: [colours],
            getSkinGradientConfig: [colours], getSkinColorConfig: [colours], getSkinConfig: [colours],
            getFileTypeIconInfo: [{ fileIdentify: ["docx"] }],
            getSkinIconPathInfo: [{ icons: [{ name: "document-open", width: 16, height: 16 }] }],
        },
        "Account": { login: [{ src: "tour" }], logout: ["tour"], upgradeMember: [{ csource: "tour" }] },
        "AiDocsChat": { registerQACallback: [ignored], qaNotify: [{ type: "question", text: "What?", id: "1" }] },
        "WebDocsControl": { notifySetupFinished: [{ group_id: groupId, file_id: saved.extraParam.fileId, uuid: "1", label: "tour" }] },
        "KContract": { registerCallback: [ignored], panelNotify: [{ type: "contract", viewId: "tour", text: "12 May 2026" }] },
        "PluginManager.Plugin": {
            load: [{ option: 0, mode: 1 }, ignored], getProp: ["title"], resourceFilePath: ["a"], frameworkFilePath: ["a"],
        },
        "SettingsManager.Settings": { setValue: [{ key: "tour/all", value: 1 }], getValue: [{ key: "tour/all" }] },
    };
    // The view that WebviewMgr makes comes in place of the page's own; what ends a window, a login or a file comes last.
    const late = ["Webview", "Account", "destroy", "logout", "remove"];
    const lateLast = (/** @type {string} */ left, /** @type {string} */ right) =>
        Number(late.includes(left)) - Number(late.includes(right));

    /** @type {(member: string) => unknown[]} */
    function usual(member) {
        if (/^(add|remove)EventListener$/.test(member))
            return ["tour.event", ignored];
        if (/^(add|remove)\w+Listener$/.test(member))
            return [ignored];
        return member === "dispatchEvent" ? ["tour.event", true] : [];
    }

    /** @type {(path: string, object: any, member: string) => Promise<void>} */
    async function callMember(path, object, member) {
        let outcome;
        try {
            const value = object[member];
            outcome = await (typeof value === "function" ? value.apply(object, given[path]?.[member] ?? usual(member)) : value);
        } catch (error) {
            outcome = failureOf(error);
        }
        const handedOut = /^\[object NovaExtension\.(.*)\]$/.exec(`${outcome}`);
        const text = JSON.stringify(outcome, (name, value) => (typeof value === "bigint" ? `${value}` : value)) ?? "nothing";
        say(`${path}.${member}`, handedOut ? `a ${handedOut[1]}` : text.length > 110 ? `${text.slice(0, 107)}...` : text);
        if (handedOut)
            await callMembers(handedOut[1], outcome);
    }

    /** @type {Set<string>} */
    const called = new Set();
    /** @type {(path: string, object: any) => Promise<void>} */
    async function callMembers(path, object) {
        if (called.has(path))
            return;
        called.add(path);
        const members = [];
        for (const member in object)
            members.push(member);
        for (const member of members.sort(lateLast))
            await callMember(path, object, member);
    }

    console.log("Every member once");
    for (const name of Object.keys(NovaExtension).sort(lateLast))
        await callMembers(name, NovaExtension[/** @type {keyof typeof NovaExtension} */ (name)]);
}
