const { ConfigCenter, Log, Novaoffice, Product, Profile, SettingsManager, TelemetrySdk } = NovaExtension;
const missing = refusal(1, "missing required parameters.");
const wrong = refusal(1, "wrong parameters.");
/** @type {(action: () => { data: any }) => () => any} */
const data = (action) => () => action().data;
const dataDir = process.argv[2];

await check([
    ["log answers undefined", () => Log.logInfo({ moduleName: "m", logStr: "s" }), { success: true, data: undefined }],
    // @ts-expect-error
    ["log converts a number", data(() => Log.logWarning({ moduleName: "m", logStr: 5 })), undefined],
    // @ts-expect-error
    ["log without arguments", () => Log.logInfo(), missing],
    // @ts-expect-error
    ["log with a string for the object", () => Log.logInfo("moduleName"), missing],
    ["log with an empty text", () => Log.logInfo({ moduleName: "m", logStr: "" }), missing],
    // @ts-expect-error
    ["log with null for the module", () => Log.logWarning({ moduleName: null, logStr: "s" }), missing],
]);

const stored = {
    "an integer": -5, "a large integer": 2 ** 40, "beyond 2^53": 9007199254740993n, "the smallest": -(2n ** 63n),
    "a fraction": 0.1, "minus zero": -0, "text with a NUL and a surrogate pair": "a\0\u{1f600}", "empty text": "",
    "false": false, "nested": { a: [1, [2, { b: null }], "x"], "": 0, ["__proto__"]: 1 }, "an empty array": [],
};
await check(Object.entries(stored).flatMap(([name, value]) => [
    [`configuration stores ${name}`, data(() => ConfigCenter.setValue({ key: `k ${name}`, value })), true],
    [`configuration keeps ${name}`, data(() => ConfigCenter.value({ key: `k ${name}` })), value],
    [`the disk keeps ${name}`, async () => {
        await new Promise((resolve) => ConfigCenter.flushWrite({ key: `k ${name}`, value }, resolve));
        return ConfigCenter.flushRead({ key: `k ${name}` }).data;
    }, value],
]));
/** @type {(member: string, options: object) => () => Promise<unknown>} */
const flush = (member, options) => () => new Promise((resolve) => call(ConfigCenter, member, options, resolve));
await check([
    ["users do not share", () => {
        ConfigCenter.setValue({ key: "u", value: 1, userId: "a" });
        return [ConfigCenter.value({ key: "u", userId: "b" }).data, ConfigCenter.value({ key: "u", userId: "a" }).data];
    }, [undefined, 1]],
    ["a default for an absent key", data(() => ConfigCenter.value({ key: "absent", defaultValue: [1] })), [1]],
    ["remove what is there", data(() => ConfigCenter.remove({ key: "u", userId: "a" })), true],
    ["remove what is not", data(() => ConfigCenter.remove({ key: "u", userId: "a" })), false],
    ["flushWrite reports", flush("flushWrite", { key: "f", value: { x: 1 } }), { key: "f", value: { x: 1 }, ok: true }],
    ["flushWrite without a function", data(() => ConfigCenter.flushWrite({ key: "f", value: 2 })), true],
    // @ts-expect-error
    ["flushWrite with something else for the function", data(() => ConfigCenter.flushWrite({ key: "f", value: 2 }, 5)), true],
    ["flushRemove reports", flush("flushRemove", { key: "f" }), { key: "f", value: undefined, ok: true }],
    ["every member needs a key", () =>
        ["setValue", "value", "remove", "flushRead", "flushWrite", "flushRemove"].filter((member) => {
            try {
                call(ConfigCenter, member, { value: 1 });
            } catch (error) {
                return !same(caught(error), missing);
            }
            return true;
        }), []],
    ["setValue null", () => ConfigCenter.setValue({ key: "k", value: null }), missing],
    ["flushWrite undefined", () => ConfigCenter.flushWrite({ key: "k", value: undefined }), missing],
    ["setValue a function", () => ConfigCenter.setValue({ key: "k", value: [() => 1] }), wrong],
]);

const suite = SettingsManager.settings({ format: 0 });
const file = SettingsManager.settings({ format: 1, path: `${dataDir}/a page.ini` });
await check([
    // @ts-expect-error
    ["no options", () => SettingsManager.settings(), refusal(1, "Format is illegal.")],
    // @ts-expect-error
    ["no format", () => SettingsManager.settings({}), refusal(1, "Format is illegal.")],
    // @ts-expect-error
    ["an unreadable format", () => SettingsManager.settings({ format: "x" }), refusal(1, "Format is illegal.")],
    // @ts-expect-error
    ["a fraction as format", () => SettingsManager.settings({ format: 0.5 }), refusal(1, "Format is illegal.")],
    ["format 1 without a path", () => SettingsManager.settings({ format: 1 }), missing],
    ["parent steps and a file", () => SettingsManager.settings({ format: 1, path: "../../a.ini" }), refusal(1, "Path is illegal.")],
    ["a NUL in the path", () => SettingsManager.settings({ format: 1, path: `${dataDir}/a.ini\0b` }), refusal(1, "Path is illegal.")],
    ["an unset variable", () => SettingsManager.settings({ format: 1, path: "%NOT_SET_ANYWHERE%/a.ini" }).getValue({ key: "k", defaultValue: 3 }).data, 3],
    ["the suite's store", () => {
        suite.setValue({ key: "a/b", value: { x: [1] } });
        return SettingsManager.settings({ format: 0 }).getValue({ key: "a/b" }).data;
    }, { x: [1] }],
    ["a file", () => {
        file.setValue({ key: "a", value: "ü\u{1f600}" });
        return SettingsManager.settings({ format: 1, path: `${dataDir}/a page.ini` }).getValue({ key: "a" }).data;
    }, "ü\u{1f600}"],
    ["a file that can not be written", () => SettingsManager.settings({ format: 1, path: "/proc/a.ini" }).setValue({ key: "k", value: 1 }),
        refusal(3, "Setting is invalid.")],
    // @ts-expect-error
    ["no key", () => suite.setValue({ value: 1 }), missing],
    // @ts-expect-error
    ["no value", () => suite.setValue({ key: "k" }), missing],
    // @ts-expect-error
    ["read without a key", () => suite.getValue({}), missing],
    ["a function as value", () => suite.setValue({ key: "k", value: { f() {} } }), wrong],
]);

// Where a path leads: what is written through it is found in the file of that absolute path. The tricks are in
// tests/paths; here it is only whether settings() goes by the check.
const opened = (/** @type {string} */ path) => {
    const key = `written through ${path}`;
    SettingsManager.settings({ format: 1, path }).setValue({ key, value: "x" });
    return (/** @type {string} */ file) => SettingsManager.settings({ format: 1, path: file }).getValue({ key }).data === "x";
};
/** @type {(path: string, file: string) => any[]} */
const leadsTo = (path, file) => [`${show(path)} leads to ${file}`, () => opened(path)(file), true];
/** @type {(why: string, path: string) => any[]} */
const refused = (why, path) => [`${why}: ${show(path)}`, () => opened(path), refusal(1, "Path is illegal.")];
await check([
    leadsTo("%HOME%/a.ini", `${dataDir}/a.ini`),
    leadsTo(`${dataDir}/x/../e.ini`, `${dataDir}/e.ini`),
    refused("relative", "a.ini"),
    refused("a resource of the program", ":/a.ini"),
    refused("a closed directory by a variable", "%HOME%/closed/a.ini"),
    refused("a closed directory by steps", `${dataDir}/x/../closed/deep/a.ini`),
    refused("the plugin directory by a variable", "%HOME%/plugins/a.ini"),
]);

const post = (/** @type {object} */ options) => () => TelemetrySdk.postEvent({ eventName: "e", postContent: { a: "1" }, ...options });
await check([
    ["post", post({ pb: 1 }), { success: true, data: undefined }],
    ["post with values of other types", post({ postContent: { a: 1, b: true, c: null, d: {} } }), { success: true, data: undefined }],
    ["post without a name", post({ eventName: "" }), refusal(1, "empty event name")],
    // @ts-expect-error
    ["post nothing at all", () => TelemetrySdk.postEvent(), refusal(1, "empty event name")],
    ["an undefined pb is none", post({ pb: undefined }), { success: true, data: undefined }],
    ...[10, 0, "x", null, 1.5, 2 ** 40].map((pb) => [`pb ${pb}`, post({ pb }), wrong]),
    ...[1, 100, 1000, "100"].map((pb) => [`pb ${show(pb)} is sent`, () => post({ pb })().success, true]),
    ...[undefined, null, "text", 5].map((postContent) => [`postContent ${postContent}`, post({ postContent }), wrong]),
    ["an empty postContent", post({ postContent: {} }), refusal(1, "empty post content")],
]);

const profile = Profile.getProfileInfo().data;
const trace = Profile.getBrowserTraceInfo().data;
await check([
    ["times are today's", () => Math.abs(Date.now() - profile.c_cb_ts) < 60000, true],
    ["marks of the group in the wrong order", () => [trace.c_cb_ld, trace.c_cb_ld_ts - trace.c_cb_ts], [0, 50]],
    ["the trace id agrees", () => same(Profile.getBrowserTraceId().data, { pid: trace.pid, appid: trace.appid, browserid: trace.browserid }), true],
    ["the language with its region", data(() => Product.language()), "de_AT"],
    ["the language alone", data(() => Product.language({ format: 0 })), "de"],
    // @ts-expect-error
    ["an unreadable format is 0", data(() => Product.language({ format: {} })), "de"],
    ["an undefined format is none", data(() => Product.language({ format: undefined })), "de_AT"],
    ["a product string", data(() => Product.getProductString({ key: "Section" })), "of 37"],
    ["a product string by option", data(() => Product.getProductString({ key: "Section", option: 4 })), "of 4"],
    ["a product string that is not there", data(() => Product.getProductString()), ""],
    ["a configuration text", data(() => Product.getConfigString("text")), "from the profile"],
    ["a configuration number", data(() => Product.getConfigInt("number")), 12],
    // @ts-expect-error
    ["a configuration by a number", data(() => Product.getConfigString(5)), ""],
    ["the PDF switch", data(() => Product.isPDFStandAlone()), true],
    ["versions", data(() => Product.getAppVersionInfo()), { platform: "linux", product: "Test Office" }],
    ["the display scale", data(() => Novaoffice.getCurrentNovaDpi()), 1.5],
    ["the installation", () => ["getNovaVersion", "getApplicationName", "getGuid", "getUuid", "getHdid", "getChannel", "getNovaofficeInstallPath"]
        .map((member) => call(Novaoffice, member).data), ["9.8.7", "testoffice", "g", "u", "h", "c", "/opt/test office"]],
    ["the machine", () => [typeof Novaoffice.getComputerName().data, Novaoffice.getSystemUserName().data.length > 0], ["string", true]],
]);
exit(failures ? 1 : 0);
