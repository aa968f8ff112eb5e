const settings = NovaExtension.SettingsManager.settings({ format: 0 });

settings.setValue({ key: "notes/view", value: "page" });
console.log(settings.getValue({ key: "notes/view", defaultValue: "outline" }).data); // "page"
