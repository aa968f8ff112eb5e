const { CloudDoc } = NovaExtension;

const { uploadCloudPath } = await CloudDoc.getDefaultWorkSpace();
console.log(`Uploads go to ${uploadCloudPath}`);
CloudDoc.addEventListener("clouddoc.loginstatus.changed", () => console.log("Somebody has signed in or out"));
