const { SyncFolder } = NovaExtension;

const localPath = await SyncFolder.showSyncFolderPathWidget({ title: "Keep in step" });
if (localPath) {
    SyncFolder.addNotifyListener(({ state, reason }) => console.log(state, reason));
    const { allowed } = await SyncFolder.syncFolderPrecheck({ localPath });
    console.log(allowed ? await SyncFolder.syncFolder({ localPath, cloudPath: "Notes" }) : "not this folder");
}
