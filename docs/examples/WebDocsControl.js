const { WebDocsControl } = NovaExtension;

try {
    const { extraParam } = await WebDocsControl.notifySetupFinished(
        { group_id: "group-1", file_id: "file-1", uuid: "document-1", label: "contract" });
    console.log("recorded", extraParam);
} catch (error) {
    console.log(/** @type {NovaExtension.Failure} */ (error).msg); // the service knows no such document
}
