const plugin = NovaExtension.PluginManager.getPlugin("sample");

const ready = await new Promise((resolve) => {
    const { data: status } = plugin.load({}, ({ step }) => step !== "Progress" && resolve(step === "Succeeded"));
    if (status !== 2) // with 2 the function says how it ends
        resolve(status === 0);
});
console.log(ready ? plugin.resourceFilePath("letter.txt").data : "not loaded");
