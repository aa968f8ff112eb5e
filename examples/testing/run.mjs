// Runs the tests in novahost, against the real library: node run.mjs NOVAHOST [--browser]
//
// novahost runs one plain script, so the modules are put one behind the other, without what they import and export.
import { spawnSync } from "node:child_process";
import { mkdtempSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";

const [novahost, ...options] = process.argv.slice(2);
const read = (name) => readFileSync(new URL(name, import.meta.url), "utf8");
const plain = (name) => read(name).replace(/^import [^;]*;\n/gm, "").replace(/^export (?=async |function |const |let |class )/gm, "");

const folder = mkdtempSync(join(tmpdir(), "notes-"));
try {
    const script = ["runner.js", "suite.novahost.js", "notes.js", "notes.test.js"].map(plain);
    writeFileSync(join(folder, "tests.js"), `${script.join("\n")}\nawait runTests();\n`);
    writeFileSync(join(folder, "profile.json"), read("notes.profile.json").replaceAll("${FOLDER}", folder));
    writeFileSync(join(folder, "letter.txt"), "Dear Ada\n");
    const { status, error } = spawnSync(novahost,
        ["--profile", join(folder, "profile.json"), ...options, "run", join(folder, "tests.js"), folder], { stdio: "inherit" });
    if (error)
        throw error;
    process.exitCode = status ?? 1;
} finally {
    rmSync(folder, { recursive: true });
}
