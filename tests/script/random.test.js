// Throws random arguments at every member. Whatever they are, each call answers or throws, and nothing crashes.
const seconds = Number(process.argv[3]);
let state = Number(process.argv[4]) >>> 0;
const random = (below) => {
    state = (Math.imul(state, 1664525) + 1013904223) >>> 0;
    return Math.floor((state / 2 ** 32) * below);
};
const pick = (list) => list[random(list.length)];

const keys = ["key", "value", "defaultValue", "userId", "format", "path", "moduleName", "logStr", "eventName", "pb",
    "postContent", "option", "bUseCache", "newPath", "overwrite", "dir", "fileName", "filter", "__proto__", "constructor", "then", "", "\0", "length"];
const cycle = {};
cycle.self = cycle;
let deep = [];
for (let i = 0; i < 1500; ++i)
    deep = [deep];
const leaves = [undefined, null, true, false, 0, -0, -1, 1, 37, 100, 2 ** 31, 2 ** 53, 1e308, NaN, Infinity, 10n, 2n ** 63n,
    2n ** 64n, "", "a", "%HOME%", "../../x", process.argv[2], `${process.argv[2]}/a`, "\ud800", "x".repeat(70000), Symbol("s"), () => 1, new Date(0),
    new Map(), /x/, new Uint8Array(9), new Proxy({}, {}), new Proxy(() => 1, {}), cycle, deep, new Array(2 ** 32 - 1),
    Promise.resolve(1), NovaExtension, NovaExtension.Log, { get key() { throw new Error("getter"); } },
    { toString() { throw new Error("toString"); }, valueOf: null }, Object.create(null), new Error("e"), globalThis,
    { __proto__: { key: "inherited" } }, [, 1], new String("boxed"), function* () {}, { async then() {} }];
const value = (depth) => {
    const kind = random(depth > 3 ? 1 : 4);
    if (kind < 2)
        return pick(leaves);
    if (kind === 2)
        return Array.from({ length: random(5) }, () => value(depth + 1));
    return Object.fromEntries(Array.from({ length: random(6) }, () => [pick(keys), value(depth + 1)]));
};

const objects = Object.keys(NovaExtension).map((name) => NovaExtension[name]);
objects.push(NovaExtension.Account.Privilege, NovaExtension.CloudDoc.Orbitapi, NovaExtension.SettingsManager.settings({ format: 0 }));
const members = objects.flatMap((object) => {
    const names = new Set();
    for (let level = object; level && level !== Object.prototype; level = Object.getPrototypeOf(level))
        Object.getOwnPropertyNames(level).forEach((name) => names.add(name));
    return [...names].filter((name) => typeof object[name] === "function" && name !== "constructor").map((name) => [object, name]);
});
const end = Date.now() + seconds * 1000;
let calls = 0;
let answered = 0;
while (Date.now() < end) {
    for (let i = 0; i < 200; ++i) {
        const [object, name] = pick(members);
        const receiver = random(20) ? object : pick(leaves);
        const given = Array.from({ length: random(5) }, () => value(0));
        ++calls;
        try {
            const answer = object[name].apply(receiver, given);
            if (answer instanceof Promise)
                answer.catch(() => 1);
            ++answered;
        } catch (error) {
            if (!(error instanceof Error))
                throw error;
        }
    }
    NovaExtension.Event.removeEventListener("a");
    await new Promise((resolve) => setTimeout(resolve, 0));
}
if (members.length < 250 || answered === 0 || answered === calls)
    throw new Error(`${members.length} members, ${answered} of ${calls} calls answered`);
console.log(`${calls} calls, ${answered} answered`);
exit(0);
