const { FileSystem } = NovaExtension;

const path = FileSystem.getOpenFileName({ caption: "Which file?", dir: FileSystem.homePath().data }).data;
if (path !== "") { // the user has not cancelled
    const file = FileSystem.File({ path });
    console.log(file.exists().data, file.size().data);
}
