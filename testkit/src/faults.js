// What members say where the suite lacks a service, and what the dialogs of the suite make of an answer.

/** The texts of the failures by which a member shows that a service is missing; `of` limits them to these objects. */
const services = {
    accountSdk: { texts: ["Accountsdk is not initialized.", "Get account SDK error."] },
    cloudFileDialog: { texts: ["inputBox is null"] },
    cloudIpc: { texts: ["Cloud service error."] },
    currentAccount: { texts: ["Current account is not initialized.", "Get account SDK error."] },
    dataCollection: { texts: ["kdcinfo error"] },
    domainManager: { texts: ["empty handle."], of: "Tools" },
    eventHubs: { texts: ["Event service error."] },
    fileFilter: { texts: ["empty fileFilter"] },
    filePanel: { texts: ["empty handle"] },
    pluginManager: { texts: ["plugin manager is null"] },
    promiseService: { texts: ["Promise Service error.", "PromiseServiceNull"] },
    purchase: { texts: ["Purchase service error."] },
    remoteConfig: { texts: ["Remote config service error."] },
    syncFolderUi: { texts: ["Sync folder dialogs are not available."] },
};

export const serviceNames = Object.keys(services);

/** The declared failure by which a member shows that one of these services is missing. */
export function failureWithout(names, object, member) {
    return member.failures?.find(({ text }) => names.some((name) =>
        services[name].texts.includes(text) && (services[name].of ?? object) === object));
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
