const { ConfigCenter } = NovaExtension;

ConfigCenter.setValue({ key: "zoom", value: 1.25 });
console.log(ConfigCenter.value({ key: "zoom", defaultValue: 1 }).data); // 1.25
ConfigCenter.flushWrite({ key: "zoom", value: 1.5 }, ({ ok }) => console.log(ok ? "on the disk" : "lost"));
