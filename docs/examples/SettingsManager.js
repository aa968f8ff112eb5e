const { SettingsManager } = NovaExtension;

const own = SettingsManager.settings({ format: 0 }); // the suite's store
const file = SettingsManager.settings({ format: 1, path: "%HOME%/notes.ini" }); // an INI file
file.setValue({ key: "view/zoom", value: "1.25" });
console.log(own.getValue({ key: "notes/view", defaultValue: "outline" }).data);
