// What members say where the suite lacks a service, and what the dialogs of the suite make of an answer.

/** The texts of the failures by which a member shows that a service is missing; some only of one object. */
const services = {
    accountSdk: ["Accountsdk is not initialized.", "Get account SDK error."],
    cloudFileDialog: ["inputBox is null"],
    cloudIpc: ["Cloud service error."],
    currentAccount: ["Current account is not initialized.", "Get account SDK error."],
    dataCollection: ["kdcinfo error"],
    domainManager: ["Tools: empty handle."],
    eventHubs: ["Event service error.", "Webview: empty handle."],
    fileFilter: ["empty fileFilter"],
    filePanel: ["empty handle"],
    pluginManager: ["plugin manager is null"],
    promiseService: ["Promise Service error.", "PromiseServiceNull"],
    purchase: ["Purchase service error."],
    remoteConfig: ["Remote config service error."],
    syncFolderUi: ["Sync folder dialogs are not available."],
};

export const serviceNames = Object.keys(services);

/** The declared failure by which a member shows that one of these services is missing. */
export function failureWithout(names, object, member) {
    return member.failures?.find(({ text }) => names.some((name) =>
        services[name].includes(text) || services[name].includes(`${object}: ${text}`)));
}

const chosen = (answer) => answer.files ?? [];
const first = (answer) => chosen(answer)[0] ?? "";

function buttonIn(labels, answer, otherwise) {
    const index = labels.indexOf(answer.values?.button);
    return index < 0 ? otherwise : index;
}

/** The dialog that a member shows: its kind in `dialogs`, and what the member returns, or its callback is called with. */
export const dialogs = {
    "FileSystem.getOpenFileName": { kind: "file", confirmed: first, cancelled: "" },
    "FileSystem.getOpenFileNames": { kind: "files", confirmed: chosen, cancelled: [] },
    "FileSystem.getExistingDirectory": { kind: "folder", confirmed: first, cancelled: "" },
    "FileSystem.selectLocalFolder": { kind: "folder", confirmed: first, cancelled: "" },
    "FileSystem.getWritableSaveFileName": { kind: "save", confirmed: first, cancelled: "" },
    "FileSystem.showSelectFilePanel": {
        kind: "panel", cancelled: {},
        confirmed: (answer) => ({ ...answer.values, ...(answer.files ? { files: answer.files } : {}) }),
    },
    "FileSystem.startAccess": { kind: "access", confirmed: () => true, cancelled: false },
    "SyncFolder.showSyncFolderPathWidget": { kind: "folder", confirmed: first, cancelled: "" },
    "SyncFolder.showNovaBox": {
        kind: "sync", cancelled: -1, confirmed: (answer, [options]) => buttonIn(options.buttons ?? [], answer, 0),
    },
    "SyncFolder.openSyncFolderListDlg": { kind: "sync", confirmed: () => ({ confirmed: true }), cancelled: { confirmed: false } },
    "SyncFolder.openCloudSpacePage": { kind: "sync", confirmed: () => ({ confirmed: true }), cancelled: { confirmed: false } },
    "SyncFolder.showCompanyPrivilegeDlg": { kind: "sync", confirmed: () => ({ confirmed: true }), cancelled: { confirmed: false } },
    "Tools.showConfirmDlg": {
        kind: "confirm", cancelled: -1,
        confirmed: (answer, [options]) => buttonIn(options.buttons ?? ["OK", "Cancel"], answer, options.defaultButton ?? 0),
    },
    "Utils.getPictureFilepath": {
        kind: "file", kindOf: ([options]) => (options?.multiple ? "files" : "file"), confirmed: chosen, cancelled: [],
    },
    "Utils.pickColor": {
        kind: "color", answer: true, cancelled: { accepted: false },
        confirmed: (answer, [options]) => ({ accepted: true, color: answer.values?.color ?? options?.color ?? "#ffffff" }),
    },
};

/** The kinds that `dialogs` can have. */
export const dialogKinds = [...new Set(Object.values(dialogs).map(({ kind }) => kind))];
