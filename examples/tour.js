// A tour of what a page can do: every answer below comes from the native library.
//
//     novahost run examples/tour.js

const { ConfigCenter, Event, FileSystem, Log, Novaoffice, Product, Profile, SettingsManager, TelemetrySdk } =
    NovaExtension;

/** @type {(what: string, answer: unknown) => void} */
function say(what, answer) {
    console.log(`  ${what.padEnd(34)} ${typeof answer === "string" ? answer : JSON.stringify(answer)}`);
}

/**
 * What a failure looks like: an Error that carries `success`, `code` and `msg`.
 *
 * @param {() => void} action
 */
function failure(action) {
    try {
        action();
    } catch (error) {
        const { code, msg } = /** @type {NovaExtension.Failure} */ (error);
        return `failed with code ${code}: ${msg}`;
    }
    throw new Error("expected a failure");
}

console.log("The suite");
say("application", Novaoffice.getApplicationName().data);
say("version", Novaoffice.getNovaVersion().data);
say("product", Product.getAppVersionInfo().data);
say("language", Product.language().data);
say("this page's browser", Profile.getBrowserTraceId().data.browserid);

console.log("Settings, written and read back");
const settings = SettingsManager.settings({ format: 0 });
settings.setValue({ key: "tour/visits", value: 1 });
say("tour/visits", settings.getValue({ key: "tour/visits" }).data);
say("absent, with a default", settings.getValue({ key: "tour/absent", defaultValue: "none" }).data);

console.log("The configuration centre, exact beyond 2^53");
ConfigCenter.setValue({ key: "tour.largest", value: 9007199254740993n });
say("tour.largest", String(ConfigCenter.value({ key: "tour.largest" }).data));
const report = await new Promise((resolve) => {
    ConfigCenter.flushWrite({ key: "tour.flushed", value: { nested: [1, "two", null] } }, resolve);
});
say("flushed to the disk", report);

console.log("Log and telemetry");
say("logInfo", Log.logInfo({ moduleName: "tour", logStr: "the tour was here" }).success);
say("postEvent", TelemetrySdk.postEvent({ eventName: "tour", pb: 1, postContent: { step: "telemetry" } }).success);

console.log("Events");
/** @type {unknown[][]} */
const received = [];
const listener = (/** @type {unknown[]} */ ...payload) => received.push(payload);
Event.addEventListener("tour.greeting", listener);
Event.dispatchEvent("tour.greeting", true, "hello", { from: "the tour" });
Event.removeEventListener("tour.greeting", listener);
Event.dispatchEvent("tour.greeting", true, "nobody hears this");
say("received", received);

console.log("Promises");
say("resolved", await FileSystem.getFileMd5(process.argv[1]));
say("rejected", await FileSystem.getFileMd5("/no/such/file").catch((error) => `rejected: ${error.msg}`));

console.log("Failures, of which an editor that knows the types warns"); // types/package.json
// @ts-expect-error
say("Log.logInfo({})", failure(() => Log.logInfo({})));
// @ts-expect-error
say("settings with format 7", failure(() => SettingsManager.settings({ format: 7 })));
say("a member that is not built yet", failure(() => NovaExtension.Network.isConnected()));
