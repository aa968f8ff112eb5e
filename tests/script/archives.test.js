const { FileSystem, Tools } = NovaExtension;
const data = process.argv[2];
const at = (/** @type {string} */ name) => `${data}/${name}`;
const md5 = { hello: "5d41402abc4b2a76b9719d911017c592", other: "795f3202b17cb6bc3d4b771d8c6c9eaf", old: "149603e6c03516362a8da23f624db945" };
/** The digest of a file, or why there is none. */
const sum = (/** @type {string} */ name) => FileSystem.getFileMd5(at(name)).catch((error) => error.msg);
const gone = (/** @type {string} */ name) => `${at(name)} is not existed`;
/** @type {(name: string, folder?: string, more?: object) => Promise<NovaExtension.Tools.DecompressResult>} */
const unpack = (name, folder = "out", more) => Tools.decompress({ path: at(`archives/${name}.zip`), folder: at(folder), ...more });
/** @type {(files: string[], path?: string, more?: object) => Promise<NovaExtension.Tools.CompressResult>} */
const pack = (files, path = "made.zip", more) => Tools.compress({ files: files.map(at), path: at(path), ...more });
const counted = (/** @type {Promise<{ files: number }>} */ work) => work.then(({ files }) => files);

await check([
    ["unpack", () => unpack("good"), { folder: at("out"), files: 3, bytes: 15 }],
    ["what was unpacked", () => Promise.all(["a/b.txt", "a/c/\u00fc.txt", "stored.txt"].map((name) => sum(`out/${name}`))), [md5.hello, md5.hello, md5.hello]],
    ["nothing in it", () => unpack("nothing", "none/here"), { folder: at("none/here"), files: 0, bytes: 0 }],
    ["nothing in it: the directory", () => FileSystem.isDir(at("none/here")).data, true],
    ["names of old programs", async () => [await counted(unpack("old", "old")), await sum("old/\u00fc.txt")], [1, md5.hello]],
    ["names in UTF-8 that do not say so", async () => [await counted(unpack("unflagged", "old2")), await sum("old2/\u00fc.txt")], [1, md5.hello]],
    ["names that differ by case only", () => counted(unpack("case", "case")), 2],

    ["a file is there", () => unpack("one", "place"), refusal(3, `${at("place/kept/old.txt")} exists already.`)],
    ["a file is there: nothing has come", async () => [await sum("place/kept/old.txt"), await sum("place/kept/new.txt")], [md5.old, gone("place/kept/new.txt")]],
    ["a directory where a file is to be", () => unpack("on directory", "place", { overwrite: true }), refusal(3, `${at("place/kept")} exists already.`)],
    ["a link where a directory is to be", () => unpack("through link", "place", { overwrite: true }), refusal(3, `${at("place/link")} exists already.`)],
    ["refused on the way: what was moved is moved back", () => Promise.all([sum("place/a.txt"), sum("place/kept/b.txt")]), [gone("place/a.txt"), gone("place/kept/b.txt")]],
    ["a directory that is closed", () => unpack("closed", "place"), refusal(3, "deep/inner/b.txt can't be unpacked.")],
    ["overwrite", () => counted(unpack("over", "place", { overwrite: true })), 2],
    ["overwrite: the files", () => Promise.all([sum("place/kept/old.txt"), sum("place/z.txt")]), [md5.other, md5.hello]],
    ["into a file", () => unpack("good", "older.zip"), refusal(3, `${at("older.zip")} can't be written.`)],
    ["into a link", () => unpack("good", "place/link"), refusal(3, `${at("place/link")} can't be written.`)],
    ["into a closed directory", () => unpack("good", "closed/a"), refusal(3, "New path is illegal.")],
    ["a missing archive", () => unpack("missing"), refusal(3, "Path is illegal.")],
    ["an archive behind a closed door", () => Tools.decompress({ path: at("keys"), folder: at("out") }), refusal(3, "Path is illegal.")],
    ["as many bytes as may be", () => counted(unpack("real size", "sizes", { maxBytes: 2000 })), 1],
    ["a byte more", () => unpack("real size", "sizes2", { maxBytes: 1999 }), refusal(3, `${at("archives/real size.zip")} is too large.`)],
    ["no number of bytes", () => unpack("good", "out", { maxBytes: -1 }), refusal(1, "wrong parameters.")],
    ["a folder that is none", () => call(Tools, "decompress", { path: at("a"), folder: [] }), refusal(1, "wrong parameters.")],
    ["without a folder", () => call(Tools, "decompress", { path: at("a") }), refusal(1, "Path is empty.")],
]);

/** @type {Record<string, string[]>} what is refused in which archives; %a stands for the archive */
const hostile = {
    "../x.txt can't be unpacked.": ["climbs"], "a/../../x.txt can't be unpacked.": ["climbs below"], "/x.txt can't be unpacked.": ["absolute"],
    "C:/x.txt can't be unpacked.": ["drive"], "..\\x.txt can't be unpacked.": ["backslash"], "x.txt\0.png can't be unpacked.": ["zero"],
    "x\x1b.txt can't be unpacked.": ["control"], "a//x.txt can't be unpacked.": ["no step"], " can't be unpacked.": ["no name"],
    "\u00fc.txt can't be unpacked.": ["no UTF-8"], "\u2514\u00ab\u2514\u00ab/x.txt can't be unpacked.": ["overlong"], "./x.txt can't be unpacked.": ["dot"],
    "\u03c6\u00e1\u00c7x.txt can't be unpacked.": ["half a pair"], [`${"x".repeat(200)} can't be unpacked.`]: ["long"], [`${"x/".repeat(100)} can't be unpacked.`]: ["deep"],
    "x.txt can't be unpacked.": ["link", "device", "twice", "program", "bzip2", "directory as file"], "x.py can't be unpacked.": ["script"], "x.txt is encrypted.": ["encrypted"],
    "x.txt/b.txt can't be unpacked.": ["file as directory"], "x.txt/ can't be unpacked.": ["full directory"],
    "x.txt is damaged.": ["checksum", "less", "more", "overlaps"], "%a is damaged.": ["cut", "no archive", "lost", "count", "many"],
    "%a is too large.": ["large", "huge", "all bits"],
};
for (const [text, names] of Object.entries(hostile)) {
    await check(names.flatMap((name) => [
        [name, () => unpack(name, "refused/here"), refusal(3, text.replace("%a", at(`archives/${name}.zip`)))],
        [`${name}: nothing is there`, () => ["refused", "x.txt", "refused/x.txt"].map((path) => FileSystem.exists(at(path)).data), [false, false, false]],
    ]));
}

const tree = async () => [(await unpack("../made", "again")).files, await sum("again/tree/a.txt"), await sum("again/tree/deep/\u00fc.txt"), FileSystem.isDir(at("again/tree/deep/empty")).data,
    FileSystem.exists(at("again/tree/link")).data, await sum("again/link")];
await check([
    ["pack", async () => { const { path, files, bytes } = await pack(["tree", "link"]); return [path, files, bytes > 100]; }, [at("made.zip"), 3, true]],
    ["what was packed", tree, [3, md5.hello, md5.other, true, false, md5.hello]],
    ["an archive is there", () => pack(["tree"]), refusal(3, `${at("made.zip")} exists already.`)],
    ["it is replaced", () => counted(pack(["tree/a.txt"], "made.zip", { overwrite: true, level: 0 })), 1],
    ["an older one is left out", async () => [await counted(pack(["tree"], "tree/own.zip")), await counted(pack(["tree"], "tree/own.zip", { overwrite: true }))], [2, 2]],
    ["levels", () => Promise.all([0, 9].map(async (level) => (await pack(["zeros"], `${level}.zip`, { level })).bytes > 1e6)), [true, false]],
]);
const notPacked = (/** @type {string} */ name) => refusal(3, `${at(name)} can't be packed.`);
/** @type {any[][]} */
const refused = [
    ["missing", ["tree", "missing"], refusal(3, gone("missing"))], ["a program", ["tree", "script.txt"], notPacked("script.txt")], ["a pipe", ["pipe"], notPacked("pipe")],
    ["a file that is closed to uploads", ["keys"], notPacked("keys")], ["a name that leads elsewhere on other systems", ["odd\\name.txt"], notPacked("odd\\name.txt")],
    ["two of one name", ["tree", "again/tree"], notPacked("again/tree")], ["a name that a zero would cut", ["tree/a.txt\0.png"], notPacked("tree/a.txt\0.png")],
    ["the archive itself", ["tree", "older.zip"], notPacked("older.zip")],
    ["too many", ["pile"], refusal(3, `${at("older.zip")} has too many entries.`)],
];
await check([
    ...refused.flatMap(([name, files, expected]) => [[name, () => pack(files, "older.zip", { overwrite: true }), expected],
        [`${name}: the older archive`, () => FileSystem.File({ path: at("older.zip") }).size().data, 5]]),
    ["no directory for it", () => pack(["tree"], "missing/a.zip"), refusal(3, `${at("missing/a.zip")} can't be written.`)],
    ["a directory is there", () => pack(["tree"], "place", { overwrite: true }), refusal(3, `${at("place")} can't be written.`)],
    ["into a closed directory", () => pack(["tree"], "closed/a.zip"), refusal(3, "New path is illegal.")],
    ["no files", () => pack([]), refusal(1, "missing required parameters.")],
    ["files that are none", () => call(Tools, "compress", { files: [at("tree"), 5], path: at("a.zip") }), refusal(1, "wrong parameters.")],
    ["level", () => pack(["tree"], "a.zip", { level: 10 }), refusal(1, "wrong parameters.")],
    ["without a path", () => call(Tools, "compress", { files: [at("tree")] }), refusal(1, "Path is empty.")],
    // The test limits the size of files to 4 MB, which is a full disk to who writes.
    ...bare(["full disk", () => pack(["noise"], "older.zip", { overwrite: true }), refusal(3, `No space is left for ${at("older.zip")}.`)],
        ["full disk: the older archive", () => FileSystem.File({ path: at("older.zip") }).size().data, 5],
        ["full disk when unpacking", () => unpack("zeros", "full"), refusal(3, `No space is left for ${at("full")}.`)],
        ["full disk: nothing is there", () => FileSystem.exists(at("full")).data, false]),
    ["the page goes on meanwhile", async () => {
        let ticks = 0;
        const timer = setInterval(() => ++ticks, 0);
        await pack(["noise"], "a.zip", { level: 9 }).catch(() => 0);
        clearInterval(timer);
        return ticks > 1;
    }, true],
]);

// One that begins and ends while a function of script waits in a dialog; the one behind it is not forgotten.
await check([["a dialog when one has ended", async () => {
    const [first, second] = [pack(["tree"], "first.zip"), pack(["tree"], "second.zip")];
    await first.then(() => { void pack(["tree"], "closed/third.zip").catch(() => 0); Tools.showConfirmDlg({ text: "?" }); });
    return counted(second);
}, 3]]);

// What is under way when the page goes leaves nothing, which the runner sees.
void pack(["sparse"], "unfinished.zip").catch(() => 0);
void unpack("zeros", "unfinished").catch(() => 0);
await new Promise((resolve) => setTimeout(resolve, 50));
exit(failures ? 1 : 0);
