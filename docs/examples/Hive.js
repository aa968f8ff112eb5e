const { Hive } = NovaExtension;

const show = (/** @type {unknown} */ layout) => console.log(`The toolbar is ${layout}`);
const group = { group: "newToolbar", context: { plan: "team" }, defaultValue: "off" };
show(Hive.subscribeGroupMatchValue(group, ({ value }) => show(value)).data); // now, and when the server decides otherwise
