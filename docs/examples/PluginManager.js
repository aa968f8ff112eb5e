const { PluginManager } = NovaExtension;

try {
    console.log(PluginManager.getPlugin("sample").getProp("version").data);
} catch (error) {
    console.log(/** @type {NovaExtension.Failure} */ (error).msg); // "invalid plugin" where there is none of that name
}
