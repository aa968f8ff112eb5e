// Remote configuration: what is decided for whom, what users choose, and what is heard of changes. run_test.py writes the files.
const { Account, CirrusConfig, FileSystem, Hive } = NovaExtension;
const folder = process.argv[2];
const missing = refusal(1, "missing required parameters.");
const wrong = refusal(1, "wrong parameters.");
const notStored = refusal(3, "The value can not be stored.");
/** @type {(key: string) => () => unknown} */
const value = (key) => () => Hive.getData({ key, defaultValue: "none" }).data;
/** @type {(group: string, context?: any) => () => unknown} */
const group = (name, context) => () => Hive.getGroupMatchValue({ group: name, context, defaultValue: "none" }).data;
/** @type {any[]} */
const heard = [];
const heardNext = async (/** @type {number} */ count) => {
    for (const end = Date.now() + 20000; heard.length < count && Date.now() < end;)
        await new Promise((resolve) => setTimeout(resolve, 5));
    return heard.splice(0);
};
const hear = (/** @type {any} */ change) => heard.push(change);
/** Has the server decide what the file NAME.json says. */
const publish = async (/** @type {string} */ name) => {
    FileSystem.openLocalLocation({ path: folder, fileName: `${name}.json` });
    while (!FileSystem.exists(`${folder}/${name}.json.published`).data)
        await new Promise((resolve) => setTimeout(resolve, 5));
};
const choose = (/** @type {any} */ options) => () => CirrusConfig.setConfigData(options).success;
const chosen = (/** @type {string} */ key) => () => CirrusConfig.getConfigData({ section: "editor", key, defaultValue: "none" }).data;
const callbackTypes = [null, {}, "f"];

await check([
    ["what there is", () => { const { updateTime, ...facts } = Hive.getHiveConfig({}).data; return [facts, updateTime > 1.7e12]; },
        [{ version: "1", keys: ["a", "b.c", "object"], groups: ["everyone", "share.0", "share.100", "team", "versions"] }, true]],
    ["part of it", () => Hive.getHiveConfig({ prefix: "b." }).data.keys, ["b.c"]],
    ["a value", value("a"), 1], ["a list", value("b.c"), [null, "x", { y: 1.5 }]],
    ["no value", value("toString"), "none"], ["no default", () => Hive.getData({ key: "d" }).data, undefined],
    ["a key that is none", () => call(Hive, "getData", {}), missing],
    ["the field of the language and region", () => Hive.i18nFieldName({ key: "object", field: "title" }).data, "title_nb_NO"],
    ["of the language", () => Hive.i18nFieldName({ key: "object", field: "text" }).data, "text_nb"],
    ["of none", () => Hive.i18nFieldName({ key: "object", field: "name" }).data, "name"],
    ["of what is no object", () => Hive.i18nFieldName({ key: "a", field: "title" }).data, "title"],
    ["a context", () => {
        const { plan, number, userId, language, version } = Hive.translateContext({ context: /** @type {any} */ ({ plan: "team", number: 5, userId: "root", language: "en" }) }).data;
        return [plan, number, userId, language, version];
    }, ["team", "5", "user-1", "nb", "12.5"]],
    ["a group by a fact of the page", group("team", { plan: "team" }), "on"],
    ["by another one", group("team", { plan: "teams" }), "off"],
    ["without a context", group("team"), "off"],
    ["a context that is none", group("team", "team"), "off"],
    ["by the version, not the page's", group("versions", { version: "99" }), 12],
    ["for nobody, and for everybody", () => [group("share.0")(), group("share.100")()], ["none", true]],
    ["by one of a list", group("everyone"), { to: "nb" }],
    ["no group", group("nobody"), "none"],
    // Switches and sections.
    ["a switch", () => CirrusConfig.getAuthSwitch({ name: "fixed" }).data, true],
    ["no switch", () => CirrusConfig.getAuthSwitch({ name: "nobody" }), refusal(3, "There is no such switch.")],
    ["no switch is set", () => CirrusConfig.setAuthSwitch({ name: "nobody", value: true }), refusal(3, "There is no such switch.")],
    ["a switch that is fixed", () => CirrusConfig.setAuthSwitch({ name: "fixed", value: false }), refusal(3, "The switch can not be changed.")],
    ["and stays", () => CirrusConfig.getAuthSwitch({ name: "fixed" }).data, true],
    ["a choice that is none", () => call(CirrusConfig, "setAuthSwitch", { name: "free", value: "true" }), wrong],
    ["no choice", () => call(CirrusConfig, "setAuthSwitch", { name: "free" }), missing],
    ["a choice", () => [CirrusConfig.setAuthSwitch({ name: "free", value: true }).success, CirrusConfig.getAuthSwitch({ name: "free" }).data], [true, true]],
    ["the server's value", chosen("seconds"), 60],
    ["the user's own", choose({ section: "editor", key: "seconds", value: { a: [1, null, "x"] } }), true],
    ["which counts", chosen("seconds"), { a: [1, null, "x"] }],
    ["a new one", choose({ section: "editor", key: "new", value: 2 }), true], ["which is there", chosen("new"), 2],
    ["a section that there is not", choose({ section: "nobody", key: "a", value: 1 }), notStored],
    ["one that is too large", choose({ section: "editor", key: "seconds", value: "x".repeat(2 ** 20) }), notStored],
    ["and nothing is lost", chosen("seconds"), { a: [1, null, "x"] }],
    ["a function", () => call(CirrusConfig, "setConfigData", { section: "editor", key: "seconds", value: () => 1 }), wrong],
    ["removed", choose({ section: "editor", key: "seconds", value: null }), true], ["the server's again", chosen("seconds"), 60],
    // Changes.
    ...callbackTypes.map((callback) => [`watched by ${show(callback)}`, () => call(Hive, "addDataWatch", { key: "a" }, callback), wrong]),
    ["a group watched by nothing", () => call(Hive, "subscribeGroupMatchValue", { group: "team" }), missing],
    ["a watch", () => Hive.addDataWatch({ key: "a" }, hear).data, 1],
    ["of no value", () => Hive.addDataWatch({ key: "later" }, hear).data, undefined],
    ["of a group", () => Hive.subscribeGroupMatchValue({ group: "team", context: { plan: "team" }, defaultValue: 0 }, hear).data, "on"],
    ["a change by the server", () => { process.play("config:later=true,config:a=1,config:a=2"); return heardNext(2); },
        [{ key: "later", value: true, previousValue: undefined }, { key: "a", value: 2, previousValue: 1 }]],
    ["another file", async () => { await publish("next"); return heardNext(1); }, [{ group: "team", value: 0, previousValue: "on" }]],
    ["its version", () => Hive.getHiveConfig({}).data.version, "2"],
    ["a switch that is not left to users any more", () => CirrusConfig.getAuthSwitch({ name: "free" }).data, false],
    ["a broken file, and what comes after", async () => {
        await publish("broken");
        process.play("config:a=3");
        return [await heardNext(1), Hive.getHiveConfig({}).data.version];
    }, [[{ key: "a", value: 3, previousValue: 2 }], "2"]],
    ["a function that throws, and one that watches", async () => {
        let count = 0;
        Hive.addDataWatch({ key: "b" }, () => { Hive.addDataWatch({ key: "b" }, hear); if (count++ === 0) throw { toString: () => "expected" }; });
        return Promise.resolve();
    }, undefined],
    ["too many watches", () => {
        for (let i = 0; i < 996; ++i)
            Hive.addDataWatch({ key: "b" }, () => {});
        return call(Hive, "addDataWatch", { key: "b" }, () => {});
    }, refusal(3, "too many watches.")],
    // What users choose is theirs.
    ["another user", async () => {
        await new Promise((resolve) => { Account.addLoginListener(resolve); process.play("login:user-2"); });
        return [chosen("new")(), Hive.translateContext({}).data.userId];
    }, ["none", "user-2"]],
    ["the first again", async () => {
        await new Promise((resolve) => { Account.addLoginListener(resolve); process.play("login:user-1"); });
        return chosen("new")();
    }, 2],
]);
exit(failures ? 1 : 0);
