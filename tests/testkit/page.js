// A page to record in novahost and to play back with the testkit: what it has heard is the same.
const { Account, ByteBufferManager, ConfigCenter, CloudDoc, Event, FileSystem, SettingsManager } = NovaExtension;
const heard = [];
heard.push(SettingsManager.settings({ format: 0 }).getValue({ key: "view", defaultValue: "outline" }).data);
heard.push(await FileSystem.getFileMd5("/no").catch(({ msg }) => msg));
try {
    FileSystem.mkpath("");
} catch ({ code }) {
    heard.push(code);
}
heard.push(Account.Privilege.hasPrivilege("pdf.export").data, [...ByteBufferManager.create("ab").data()]);
heard.push(await new Promise((resolve) => {
    ConfigCenter.flushWrite({ key: "zoom", value: 2n ** 60n }, ({ value, ok }) => resolve([`${value}`, ok]));
}));
await new Promise((resolve) => {
    Event.addEventListener("tick", (value) => resolve(heard.push(value)));
    Event.dispatchEvent("tick", true, { a: [1, undefined] });
});
const loggedOut = new Promise((resolve) => Account.addEventListener("event.account.logout", ({ userId }) => resolve(userId)));
happen("logout");
heard.push(await loggedOut);
try {
    await CloudDoc.getRoamingMode();
} catch ({ msg }) {
    heard.push(msg);
}
