// Whether the library refuses what the testkit refuses, with the same code and text: `calls` are those that sweep.mjs prints.
// Whatever a call may change lies in the folder that the script is given: no argument has an absolute path.
// What the testkit does not refuse needs a row; only these members have rules for arguments that it does not know.
const ownRules = /^(SettingsManager\.settings|Utils\.setImageToClipboard|Tools\.sendMail)$/;
const missingText = "missing required parameters.";
const { ByteBufferManager, CloudDoc, FileSystem, PluginManager, SettingsManager } = NovaExtension;
const made = (/** @type {() => any} */ make) => {
    try {
        return make();
    } catch {
        return undefined; // the service for it is missing
    }
};
/** @type {Record<string, any>} */
const handedOut = {
    "Account.Privilege": made(() => NovaExtension.Account.Privilege),
    "ByteBufferManager.ByteBuffer": ByteBufferManager.create(1),
    "CloudDoc.Orbitapi": made(() => CloudDoc.Orbitapi),
    "CloudDoc.UploadFileTask": made(() => CloudDoc.createUploadFileTask({ filePath: `${process.argv[2]}/own.txt` })),
    "FileSystem.File": FileSystem.File({ path: `${process.argv[2]}/own.txt` }),
    "PluginManager.Plugin": made(() => PluginManager.getPlugin("sample")),
    "SettingsManager.Settings": SettingsManager.settings({ format: 0 }),
};
let problems = 0;
let compared = 0;
for (const [path, member, make, expected] of calls) {
    const object = handedOut[path] ?? NovaExtension[path];
    // What ends the page, or signs the user out.
    if (!object || (!expected && /^(Webview\.(close|destroy)|Account\.logout)$/.test(`${path}.${member}`)))
        continue;
    let failure;
    try {
        const answer = typeof object[member] === "function" ? object[member](...make()) : undefined;
        if (answer instanceof Promise)
            expected?.rejects ? await answer : answer.catch(() => {});
    } catch (error) {
        failure = error;
    }
    const got = failure ? `${failure.code} ${failure.msg}` : "nothing";
    // The page has no window; or the member has rules of its own for arguments, which come before a service is looked for.
    if (/^empty web(shell)?widget$/.test(failure?.msg) || (expected?.code === 3 && failure?.code === 1))
        continue;
    compared += expected ? 1 : 0;
    if (expected ? got !== `${expected.code} ${expected.text}` : failure?.msg === missingText && !ownRules.test(`${path}.${member}`)) {
        ++problems;
        console.error(`${path}.${member}(${JSON.stringify(make())}): the testkit refuses ${
            expected ? `${expected.code} ${expected.text}` : "nothing"}, the library ${got}`);
    }
}
console.log(`${compared} refusals compared`);
exit(problems || !compared ? 1 : 0);
