// Calls every member of every object without arguments: each answers an envelope, a promise, an object or what the
// event members answer, or refuses with an Error that carries success, code and msg.
const expected = JSON.parse(process.argv[3]);
const seen = [];
const problem = (text) => { ++failures; console.error(text); };

async function walk(path, object) {
    for (const member of expected[path].members) {
        seen.push(`${path}.${member.name}`);
        const unbuilt = expected[path].unsupported.includes(member.name);
        let answer;
        try {
            answer = member.kind === 1 ? object[member.name] : object[member.name]();
            if (answer instanceof Promise)
                await answer;
            else if (unbuilt)
                problem(`${path}.${member.name}: listed as not built, but answers ${show(answer)}`);
            else if (member.result === 0 ? answer !== undefined : typeof answer !== "object")
                problem(`${path}.${member.name}: answers ${show(answer)}`);
            else if (member.result === 0x8004 && answer.success !== true)
                problem(`${path}.${member.name}: ${show(answer)} is no envelope`);
        } catch (error) {
            const { success, code, msg } = error;
            if (!(error instanceof Error) || success !== false || typeof code !== "number" || !msg || msg !== error.message)
                problem(`${path}.${member.name}: threw ${error}`);
            else if ((code === 3 && msg === "not supported.") !== unbuilt)
                problem(`${path}.${member.name}: ${msg}, but it is ${unbuilt ? "not " : ""}built`);
        }
        if (member.kind === 1 && answer)
            await walk(`${path}.${member.name}`, answer);
    }
}

for (const name of Object.keys(NovaExtension))
    await walk(`NovaExtension.${name}`, NovaExtension[name]);
await walk("NovaExtension.SettingsManager.Settings", NovaExtension.SettingsManager.settings({ format: 0 }));
const reached = new Set(seen.map((path) => path.slice(0, path.lastIndexOf("."))));
if (reached.size !== 31)
    problem(`${reached.size} objects reached`);
exit(failures ? 1 : 0);
