const { FileSystem } = NovaExtension;

const folder = `${FileSystem.homePath().data}/notes`;
if (!FileSystem.exists(folder).data)
    FileSystem.mkpath(folder);
const file = FileSystem.getOpenFileName({ caption: "Attach", dir: folder }).data;
console.log(file ? await FileSystem.getFileMd5(file) : "cancelled");
