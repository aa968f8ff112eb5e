const { CirrusConfig } = NovaExtension;

if (CirrusConfig.getAuthSwitch({ name: "documentChat" }).data) {
    CirrusConfig.setConfigData({ section: "editor", key: "autosaveSeconds", value: 30 });
    console.log(CirrusConfig.getConfigData({ section: "editor", key: "autosaveSeconds", defaultValue: 60 }).data); // 30
}
