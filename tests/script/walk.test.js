// Calls every member of every object without arguments: each answers in the form that it is described with, or fails
// with an Error that carries success, code and msg. `api` is the description, which run_test.py puts in front.
const described = new Map(api.objects.map((object) => [object.name, object]));
/** @type {Set<string>} */
const reached = new Set();
const problem = (/** @type {string} */ text) => { ++failures; console.error(text); };
/** @type {Record<string, (answer: any) => boolean>} */
const FORMS = {
    envelope: (answer) => typeof answer === "object" && answer.success === true && "data" in answer,
    promise: (answer) => answer instanceof Promise,
    object: (answer) => `${answer}`.startsWith("[object NovaExtension."),
    plain: (answer) => answer === undefined || Array.isArray(answer),
};

async function walk(/** @type {string} */ path, /** @type {any} */ object) {
    reached.add(path);
    for (const { name, kind, built, answer: { form } } of described.get(path)?.members ?? []) {
        let answer;
        try {
            answer = kind === "property" ? object[name] : object[name]();
            if (!built)
                problem(`${path}.${name}: described as not built, but answers ${show(answer)}`);
            else if (!FORMS[form](answer))
                problem(`${path}.${name}: answers ${show(answer)}, which is no ${form}`);
            await answer;
        } catch (error) {
            const { success, code, msg, message } = /** @type {NovaExtension.Failure} */ (error);
            if (!(error instanceof Error) || success !== false || typeof code !== "number" || !msg || msg !== message)
                problem(`${path}.${name}: threw ${error}`);
            else if ((code === 3 && msg === "not supported.") === built)
                problem(`${path}.${name}: ${msg}, but it is ${built ? "" : "not "}built`);
        }
        if (kind === "property" && answer)
            await walk(`${path}.${name}`, answer);
    }
}

for (const [name, object] of Object.entries(NovaExtension))
    await walk(name, object);
await walk("SettingsManager.Settings", NovaExtension.SettingsManager.settings({ format: 0 }));
for (const { name, instance } of described.values()) {
    if (instance !== "handed out" && !reached.has(name))
        problem(`${name} was not reached`);
}
for (const name of reached) {
    if (!described.has(name))
        problem(`${name} is not described`);
}
exit(failures ? 1 : 0);
