// Sync folders with the real process: "papers", which becomes one, and "copy", which comes from the cloud.
const { CloudDoc, FileSystem, SyncFolder } = NovaExtension;
const data = String(process.argv[2]);
const at = (/** @type {string} */ name) => `${data}/user/${name}`;
const missing = refusal(1, "missing required parameters."), wrong = refusal(1, "wrong parameters.");
const illegal = refusal(3, "New path is illegal.");
const failed = (/** @type {string} */ reason) => refusal(3, `Sync folder request failed: ${reason}.`);
/** @type {(member: string, options?: any, ...keys: string[]) => () => Promise<any>} */
const ask = (member, options, ...keys) => async () => {
    const answer = await call(SyncFolder, member, options);
    return keys.length ? keys.map((key) => answer[key]) : answer;
};
const counts = ["uploaded", "downloaded", "removed", "conflicts"];
/** @type {any[]} */
const heard = [];
const listen = (/** @type {any} */ notice) => heard.push(notice);
SyncFolder.addNotifyListener(listen);

await check([
    ["none at first", ask("getSyncFolderCount"), { count: 0, folders: [] }],
    ["the ways", ask("getSupportSelectSyncFolderMode"), { supported: false, modes: ["twoWay"] }],
    ["as whom", () => SyncFolder.getUserTypeList().data.map(({ type, id }) => [type, id]), [["personal", "user-1"], ["company", "company-1"]]],
    ["the size of a folder", ask("getFolderSize", { localPath: at("papers") }), { size: 9, files: 2, folders: 1 }],
    ["what a sync of it would do", ask("scanFolder", { localPath: at("papers") }, "uploads", "skipped", "changes"),
        [2, 1, [{ path: "a.txt", action: "upload" }, { path: "deep/b.txt", action: "upload" }]]],
    ["whether it may be one", ask("syncFolderPrecheck", { localPath: at("papers") }, "allowed", "reason", "files", "size"), [true, "", 2, 9]],
    ...[["papers", true, ""], ["none", false, "missing"], ["papers/a.txt", false, "notFolder"], ["link", false, "link"],
        ["../.config", false, "closed"], ["holder", false, "closed"], ["../..", false, "closed"]].map(([path, valid, reason]) =>
        [`whether ${path} can be used`, ask("checkSyncFolderPathValid", { localPath: at(String(path)) }), { valid, reason }]),
    ["the desktop, which is among the suite's data here", ask("desktopSyncPreCheck", {}, "allowed", "reason"), [false, "closedToUploads"]],
    ["nor can it become one", ask("setPersonalDesktopSync", {}), failed("closedToUploads")],
    ["and is none", ask("cancelPersonalDesktopSync"), false],
    ...["syncFolder", "scanFolder", "getFolderSize"].flatMap((member) => [
        [`${member} of nothing`, ask(member), wrong],
        [`${member} of what is closed`, ask(member, { localPath: at("../.config") }), illegal],
        [`${member} of a number`, ask(member, { localPath: 5 }), wrong],
    ]),
    ...["syncFolder", "scanFolder"].map((member) => [`${member} of what holds it`, ask(member, { localPath: at("holder") }), illegal]),
    ["a way that there is not", ask("syncFolder", { localPath: at("papers"), mode: "sideways" }), failed("wrongArguments")],
    ["one that there is not", ask("syncFolder", { id: "s0" }), failed("notFound")],
    ["a folder that there is not", ask("syncFolder", { localPath: at("none") }), failed("missing")],

    ["the first sync", ask("syncFolder", { localPath: at("papers"), cloudPath: "Team/papers" }, ...counts), [2, 0, 0, 0]],
    ["a second one in it", ask("syncFolder", { localPath: at("papers/deep") }), failed("withinSyncFolder")],
    ["it is listed", async () => (await SyncFolder.getSyncFolderCount()).folders.map((one) => [one.localPath, one.cloudPath, one.state, one.kind]),
        [[at("papers"), "Team/papers", "idle", "folder"]]],
    ["and notified, without the page asking", async () => {
        for (const end = Date.now() + 20000; heard.length < 3 && Date.now() < end;)
            await new Promise((resolve) => setTimeout(resolve, 5));
        SyncFolder.removeNotifyListener(listen);
        return heard.map((one) => [one.state, one.uploaded]);
    }, [["added", 0], ["syncing", 0], ["synced", 2]]],
    ["whether it can come to another folder", ask("syncToLocalPrecheck", { cloudPath: "Team/papers", localPath: at("copy") }, "allowed", "files", "size"),
        [true, 2, 9]],
    ["no such folder in the cloud", ask("syncToLocal", { cloudPath: "nowhere", localPath: at("other") }), failed("notFound")],
    ["nothing is made then", () => FileSystem.exists(at("other")).data, false],
    ["it comes there", ask("syncToLocal", { cloudPath: "Team/papers", localPath: at("copy") }, ...counts), [0, 2, 0, 0]],
    ["whole", async () => FileSystem.getFileMd5(at("copy/deep/b.txt")), "900150983cd24fb0d6963f7d28e17f72"],
    ["what is latest", async () => (await SyncFolder.getRecentFileList({ count: 1 })).map(({ size }) => size > 0), [true]],
    ["too many of those", ask("getRecentFileList", { count: 201 }), wrong],
    ["the size in the cloud", ask("getFolderSize", { cloudPath: "Team" }), { size: 9, files: 2, folders: 2 }],
]);

const [work, copy] = (await SyncFolder.getSyncFolderCount()).folders;
const sync = (/** @type {any} */ folder) => ask("syncFolder", { id: folder?.id }, ...counts);
await check([
    ["a change on one side", async () => {
        FileSystem.File({ path: at("copy/a.txt") }).remove();
        FileSystem.copy({ path: at("papers/deep/b.txt"), newPath: at("papers/c.txt") });
        return [await sync(work)(), await sync(copy)(), await sync(work)()];
    }, [[1, 0, 0, 0], [0, 1, 1, 0], [0, 0, 1, 0]]],
    ["both are the same then", () => [at("papers"), at("copy")].map((folder) => ["a.txt", "c.txt"].map((file) => FileSystem.exists(`${folder}/${file}`).data)),
        [[false, true], [false, true]]],
    ["moved", async () => (await SyncFolder.changeSyncPath({ id: String(copy?.id), localPath: at("moved") })).localPath, at("moved")],
    ["and synced there", sync(copy), [0, 0, 0, 0]],
    ["nowhere", ask("changeSyncPath", { id: copy?.id, localPath: "" }), missing],
    ["to what is closed", ask("changeSyncPath", { id: copy?.id, localPath: at("../.config") }), illegal],
    ["into the other one", ask("changeSyncPath", { id: copy?.id, localPath: at("papers/in") }), failed("withinSyncFolder")],
    ["valid", ask("checkSyncFolderValid", { id: copy?.id }), { valid: true, reason: "" }],
    ["no more", async () => {
        FileSystem.remove(at("moved"));
        return [await SyncFolder.checkSyncFolderValid({ id: String(copy?.id) }), await sync(copy)().catch(caught), await sync(work)()];
    }, [{ valid: false, reason: "missing" }, failed("missing"), [0, 0, 0, 0]]],
    ["marks, where the disk has them", async () => {
        const { supported, missing: lost } = await SyncFolder.getIsNeedRepairOverlayIcon();
        const { repaired } = await SyncFolder.doRepairOverlayIcon();
        return [typeof supported, lost, repaired];
    }, ["boolean", 0, 0]],
    ["a folder that the user chooses", ask("showSyncFolderPathWidget", { title: "t" }), at("papers")],
    ["and does not", ask("showSyncFolderPathWidget"), ""],
    ["a message", ask("showNovaBox", { text: "t", buttons: ["a", "b"] }), 1],
    ["that the user closes", ask("showNovaBox", { text: "t" }), -1],
    ["one dialog at a time", () => Promise.all([ask("openSyncFolderListDlg")(), ask("showNovaBox", { text: "t" })(), ask("showSyncFolderPathWidget")()]),
        [{ confirmed: true }, -1, ""]],
    ["a message without text", ask("showNovaBox", {}), missing],
    ["with too many buttons", ask("showNovaBox", { text: "t", buttons: ["a", "b", "c", "d", "e"] }), wrong],
    ["nothing left to answer", ask("openCloudSpacePage"), { confirmed: false }],
    ["nor here", ask("showCompanyPrivilegeDlg"), { confirmed: false }],
    ["the service killed meanwhile", async () => {
        const waiting = Array.from({ length: 20 }, (_, i) => (i % 2 ? sync(work) : ask("scanFolder", { id: work?.id }, "files"))()
            .then(() => "answered", caught));
        process.play("cloud:kill");
        const seen = await Promise.all(waiting);
        await sync(work)().catch(caught);
        return [seen.every((one) => one === "answered" || same(one, failed("noReply"))), await sync(work)(),
            (await SyncFolder.getSyncFolderCount()).count];
    }, [true, [0, 0, 0, 0], 2]],
]);
await CloudDoc.getRoamingMode();
exit(failures ? 1 : 0);
