const { Account, CloudDoc, Event, FileSystem, Skin } = NovaExtension;
const wrong = refusal(1, "wrong parameters.");

/**
 * What listeners of `event` receive while `action` runs.
 *
 * @param {NovaExtension.Event} object
 * @param {any} event
 * @param {(listener: (...payload: any[]) => void) => void} action
 */
function heard(object, event, action) {
    /** @type {any[][]} */
    const calls = [];
    const listener = (/** @type {any[]} */ ...payload) => calls.push(payload);
    object.addEventListener(event, listener);
    action(listener);
    object.removeEventListener(event, listener);
    return calls;
}

await check([
    ["payloads arrive in order", () => heard(Event, "e", () => Event.dispatchEvent("e", true, 1, { a: [null] }, "x")), [[1, { a: [null] }, "x"]]],
    ["no payload", () => heard(Event, "e", () => Event.dispatchEvent("e")), [[]]],
    ["to all pages", () => heard(Event, "e", () => Event.dispatchEvent("e", false, 1)), [[1]]],
    ["another name", () => heard(Event, "e", () => Event.dispatchEvent("f", true, 1)), []],
    ["another object of another class", () => heard(Event, "e", () => Skin.dispatchEvent("e", true, 1)), []],
    ["one listener added twice", () => heard(Event, "e", (l) => { Event.addEventListener("e", l); Event.dispatchEvent("e"); }), [[]]],
    ["removed within", () => heard(Event, "e", (l) => { Event.removeEventListener("e", l); Event.dispatchEvent("e"); }), []],
    ["removing by name alone", () => heard(Event, "e", () => { Event.removeEventListener("e"); Event.dispatchEvent("e"); }), []],
    ["removing a stranger", () => heard(Event, "e", () => { Event.removeEventListener("e", () => 1); Event.dispatchEvent("e"); }), [[]]],
    ["a number as name", () => heard(Event, 12, () => Event.dispatchEvent("12")), [[]]],
    // @ts-expect-error
    ["no function", () => Event.addEventListener("e", {}), wrong],
    // @ts-expect-error
    ["nothing at all", () => Event.addEventListener(), wrong],
    ["members answer nothing", () => [Event.dispatchEvent("e"), Event.removeEventListener("e")], [undefined, undefined]],
    ["the report", () => {
        Event.addEventListener("b", () => 1);
        Event.addEventListener("a", () => 1);
        Event.addEventListener("a", () => 2);
        return Event.getAllEventInfo().filter((/** @type {{ eventName: string }} */ row) => row.eventName < "c");
    }, [{ eventName: "a", listenerCount: 2 }, { eventName: "b", listenerCount: 1 }]],
    ["the objects that properties hand out", () => [typeof Account.Privilege.addEventListener, typeof CloudDoc.Orbitapi.commonRequest], ["function", "function"]],
    ["a property answers the same object every time", () => Account.Privilege === Account.Privilege && CloudDoc.Orbitapi === CloudDoc.Orbitapi, true],
    ["a listener that listens and dispatches", () => {
        /** @type {string[]} */
        const calls = [];
        Event.addEventListener("outer", () => {
            Event.addEventListener("inner", (x) => calls.push(x));
            Event.dispatchEvent("inner", true, "in");
            calls.push("out");
        });
        Event.dispatchEvent("outer");
        return calls;
    }, ["in", "out"]],
]);

await check([
    ["a refusal's stack has the page's lines, and none of the engine's", () => {
        try {
            // @ts-expect-error
            Event.addEventListener();
        } catch (error) {
            const frames = /** @type {{ stack: string }} */ (error).stack.split("\n").filter((frame) => !frame.includes("@[native code]"));
            return frames.length > 1 && frames.every((frame) => /events_and_promises\.js:\d+/.test(frame)) || frames;
        }
    }, true],
]);

const script = process.argv[1];
await check([
    ["a digest", async () => /^[0-9a-f]{32}$/.test(await FileSystem.getFileMd5(script)), true],
    // @ts-expect-error
    ["no path", () => FileSystem.getFileMd5(), refusal(3, "Path is empty.")],
    ["no file", () => FileSystem.getFileMd5("/no/file"), refusal(3, "/no/file is not existed")],
    ["a directory", () => FileSystem.getFileMd5("/"), refusal(3, "/ can't been opened")],
    ["many at once", async () => new Set(await Promise.all(Array.from({ length: 50 }, () => FileSystem.getFileMd5(script)))).size, 1],
    ["a promise is a Promise", () => FileSystem.getFileMd5(script) instanceof Promise, true],
]);
exit(failures ? 1 : 0);
