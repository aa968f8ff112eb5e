const { CloudDoc, FileSystem } = NovaExtension;

const filePath = FileSystem.getOpenFileName({ caption: "Upload", dir: FileSystem.homePath().data }).data;
if (filePath !== "") { // the user has not cancelled
    const task = CloudDoc.createUploadFileTask({ filePath, autoRename: true });
    task.addEventListener("cloud.upload.progressChanged", ({ status }) => console.log("goes on", status));
    await new Promise((resolve) => {
        task.addEventListener("cloud.upload.finished", ({ status }) => resolve(console.log(status === "1" ? "stored" : "failed")));
        task.start();
    });
}
