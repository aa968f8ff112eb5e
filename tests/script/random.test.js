// Throws random arguments at every member: plausible ones, made from the description of its parameters, and hostile
// ones anywhere within them. Whatever they are, each call answers or throws, and nothing crashes. `api` is the
// description, which run_test.py puts in front.
const seconds = Number(process.argv[3]);
let state = Number(process.argv[4]) >>> 0;
const random = (/** @type {number} */ below) => {
    state = (Math.imul(state, 1664525) + 1013904223) >>> 0;
    return Math.floor((state / 2 ** 32) * below);
};
/** @type {<T>(list: readonly T[]) => T} */
const pick = (list) => list[random(list.length)];
const times = (/** @type {number} */ most, /** @type {() => any} */ make) => Array.from({ length: random(most + 1) }, make);

/** @type {any} */
const cycle = {};
cycle.self = cycle;
/** @type {any[]} */
let deep = [];
for (let i = 0; i < 1500; ++i)
    deep = [deep];
const [, script, data] = process.argv;
const leaves = [undefined, null, true, false, 0, -0, -1, 1, 37, 100, 2 ** 31, 2 ** 53, 1e308, NaN, Infinity, 10n, 2n ** 63n,
    2n ** 64n, "", "a", "%HOME%", "../../x", data, `${data}/a`, "\ud800", "x".repeat(70000), Symbol("s"), () => 1, new Date(0),
    new Map(), /x/, new Uint8Array(9), new DataView(new ArrayBuffer(9), 3, 2), new BigInt64Array(1 << 16), new Proxy({}, {}), new Proxy(() => 1, {}), cycle, deep, new Array(2 ** 32 - 1),
    Promise.resolve(1), NovaExtension, NovaExtension.Log, { get key() { throw new Error("getter"); } },
    { toString() { throw new Error("toString"); }, valueOf: null }, Object.create(null), new Error("e"), globalThis,
    { __proto__: { key: "inherited" } }, [, 1], new String("boxed"), function* () {}, { async then() {} }];

const eventNames = ["a", ...api.objects.flatMap(({ events }) => events.map(({ name }) => name))];
const strings = ["", "a", "auto", "*.txt", "sample", script, data, `${data}/a`, "%HOME%/b", ...eventNames];
/** @type {Set<string>} */
const optionNames = new Set(["__proto__", "constructor", "then", "", "\0", "length"]);
/** @type {(type: ApiType) => void} */
const collectNames = (type) => type.fields?.forEach((field) => { optionNames.add(field.name); collectNames(field.type); });
api.objects.forEach(({ members }) => members.forEach(({ parameters }) => parameters.forEach(({ type }) => collectNames(type))));
const keys = [...optionNames];

const hostile = (depth = 0) => {
    const kind = random(depth > 3 ? 1 : 4);
    if (kind < 2)
        return pick(leaves);
    if (kind === 2)
        return times(4, () => hostile(depth + 1));
    return Object.fromEntries(times(5, () => [pick(keys), hostile(depth + 1)]));
};
/** @type {Record<string, (type: ApiType, share: number) => any>} What is plausible for a type. */
const PLAUSIBLE = {
    string: () => pick(strings),
    number: () => pick([0, 1, 1.5, -1, 640]),
    integer: () => random(200),
    int64: () => pick([0, 1, 2 ** 40, 2n ** 62n]),
    boolean: () => random(2) === 1,
    bytes: () => pick([new Uint8Array(random(99)), new ArrayBuffer(3), new DataView(new ArrayBuffer(5), 2), new Float64Array([0.5])]),
    any: () => pick([1, "a", true, null, { a: [1, "x"] }, []]),
    void: () => undefined,
    array: ({ items }, share) => times(3, () => value(items, share)),
    map: ({ values }, share) => Object.fromEntries(times(3, () => [pick(strings), value(/** @type {ApiType} */ (values), share)])),
    object: ({ fields = [] }, share) => Object.fromEntries(fields.filter(({ optional }) => !optional || random(2))
        .map(({ name, type }) => [name, value(type, share)])),
    function: () => () => 1,
    union: ({ types = [] }, share) => value(pick(types), share),
    handle: ({ name }) => instances.find((one) => one.name === name)?.object,
};
/** A value for a type; one of `share` is hostile. @type {(type: ApiType | undefined, share: number) => any} */
const value = (type, share) => {
    if (!type || random(share) === 0)
        return hostile();
    return Array.isArray(type.values) ? pick(type.values) : PLAUSIBLE[type.kind](type, share);
};
const args = (/** @type {ApiMember} */ { parameters }, /** @type {number} */ share) => parameters.flatMap(
    ({ type, optional, rest }) => rest ? times(3, () => value(type, share)) : optional && random(3) === 0 ? [] : [value(type, share)]);

/** @type {{ object: any, name: string, members: readonly ApiMember[] }[]} */
const instances = [];
const add = (/** @type {string} */ name, /** @type {any} */ object) => {
    const { members = [] } = api.objects.find((one) => one.name === name) ?? {};
    instances.push({ object, name, members });
    for (const member of members.filter(({ kind, built }) => built && kind === "property"))
        add(String(member.answer.type.name), object[member.name]);
};
for (const [name, object] of Object.entries(NovaExtension))
    add(name, object);
// What members hand out, for arguments that they accept.
for (const { object, members } of [...instances]) {
    for (const member of members.filter(({ kind, built, answer }) => built && kind === "method" && answer.form === "object")) {
        for (let tries = 0; !instances.some(({ name }) => name === member.answer.type.name); ++tries) {
            try {
                add(String(member.answer.type.name), object[member.name](...args(member, 2 ** 31)));
            } catch (error) {
                if (tries === 2000)
                    throw error;
            }
        }
    }
}

// The page of a browser goes with its window.
const endsPage = (/** @type {any} */ object, /** @type {ApiMember} */ { name }) =>
    "document" in globalThis && object === NovaExtension.Webview && name === "destroy";
const calls = instances.flatMap(({ object, members }) => members.filter((member) => member.kind === "method" && !endsPage(object, member))
    .map((member) => ({ object, member })));
const end = Date.now() + seconds * 1000;
let count = 0;
let answered = 0;
while (Date.now() < end) {
    if (!NovaExtension.Account.isLoggedIn().data)
        process.play("login:user-1");
    for (let i = 0; i < 200; ++i) {
        const { object, member } = pick(calls);
        const receiver = random(20) ? object : pick(leaves);
        const given = random(3) ? args(member, 6) : times(4, hostile);
        ++count;
        try {
            const answer = object[member.name].apply(receiver, given);
            if (answer instanceof Promise)
                answer.catch(() => 1);
            ++answered;
        } catch (error) {
            if (!(error instanceof Error))
                throw error;
        }
    }
    for (const { object } of instances.filter((one) => one.object.removeEventListener))
        eventNames.forEach((name) => object.removeEventListener(name));
    await new Promise((resolve) => setTimeout(resolve, 0));
}
if (answered === 0 || answered === count)
    throw new Error(`${answered} of ${count} calls answered`);
console.log(`${count} calls, ${answered} answered`);
exit(0);
