const { FileSystem, SettingsManager } = NovaExtension;
const data = process.argv[2];
const at = (/** @type {string} */ name) => `${data}/${name}`;
/** @type {(action: () => { data: any }) => () => any} */
const value = (action) => () => action().data;
const missing = (code = 1) => refusal(code, "missing required parameters.");
const empty = (/** @type {number} */ code) => refusal(code, "Path is empty.");
const illegal = refusal(3, "Path is illegal.");
const newIllegal = refusal(3, "New path is illegal.");
const notExisted = (/** @type {number} */ code, /** @type {string} */ path) => refusal(code, `${path} is not existed`);
const md5 = { hello: "5d41402abc4b2a76b9719d911017c592", empty: "d41d8cd98f00b204e9800998ecf8427e", other: "795f3202b17cb6bc3d4b771d8c6c9eaf" };
const sum = (/** @type {string} */ name) => () => FileSystem.getFileMd5(at(name));
const until = async (/** @type {() => boolean} */ done) => {
    for (let i = 0; i < 1000 && !done(); ++i)
        await new Promise((resolve) => setTimeout(resolve, 10));
    return done();
};
const oddNames = ["with space.txt", "quote\".txt", "three\"\"\".txt", "line\nbreak.txt", "$(x) `x` ; & .txt", "%1 %HOME%.txt", "\u{1f600} \u00fc\u0301\u05d0.txt",
    "-option.txt", "back\\slash.txt"];

await check([
    ["exists", value(() => FileSystem.exists(at("plain.txt"))), true],
    ["exists: a broken link", value(() => FileSystem.exists(at("broken"))), false],
    // @ts-expect-error
    ["exists: something else than a path", value(() => FileSystem.exists({ path: data })), false],
    ["exists: a name that a NUL would cut", value(() => FileSystem.exists(`${at("plain.txt")}\0.png`)), false],
    ["isDir", () => ["tree", "plain.txt", "link to tree", "none"].map((name) => FileSystem.isDir(at(name)).data), [true, false, true, false]],
    ["the directories", () => ["officeData", "officeHome", "tempPath", "desktopPath", "homePath", "documentsPath", "downloadPath"]
        .map((member) => call(FileSystem, member).data),
    [at("documents"), at("home"), process.argv[3], at("Desktop"), data, at("Documents"), at("Downloads")]],
    ["getDllWorkPath", value(() => FileSystem.getDllWorkPath("name")), ""],
    // @ts-expect-error
    ["getDllWorkPath of a number", () => FileSystem.getDllWorkPath(5), missing()],

    ["File: size", value(() => FileSystem.File({ path: at("plain.txt") }).size()), 5],
    ["File: size beyond 32 bits", value(() => FileSystem.File({ path: at("sparse.bin") }).size()), 2 ** 32 + 1],
    // @ts-expect-error
    ["File without a path", () => FileSystem.File(), empty(3)],
    ["File of a directory", () => FileSystem.File({ path: data }), illegal],
    ["File of a pipe", () => FileSystem.File({ path: at("pipe") }), illegal],
    ["File: gone meanwhile", () => {
        const file = FileSystem.File({ path: at("short-lived.txt") });
        return [file.exists().data, file.remove().data, file.exists().data, file.remove().data];
    }, [true, true, false, false]],
    ["File: size of what is gone", () => {
        FileSystem.copy({ path: at("plain.txt"), newPath: at("gone.txt") });
        const file = FileSystem.File({ path: at("gone.txt") });
        file.remove();
        return file.size();
    }, refusal(3, "invalid path")],
    ["File: remove by a relative path", () => FileSystem.File({ path: "plain.txt" }).remove(), refusal(3, "illegal path")],
    ["File: it is still there", value(() => FileSystem.File({ path: "plain.txt" }).exists()), true],
    ["File: remove in a closed directory", () => FileSystem.File({ path: at("closed/kept.txt") }).remove(), refusal(3, "illegal path")],

    ["getFileStatus", value(() => FileSystem.getFileStatus(at("plain.txt"))), true],
    ["getFileStatus: locked as a whole", value(() => FileSystem.getFileStatus(at("locked whole.txt"))), false],
    ["getFileStatus: a part locked", value(() => FileSystem.getFileStatus(at("locked part.txt"))), false],
    ["getFileStatus: a directory", value(() => FileSystem.getFileStatus(data)), false],
    ["getFileStatus and digests take nothing out of a pipe", async () => {
        const asked = [FileSystem.getFileStatus(at("full pipe")).data, await FileSystem.getFileMd5(at("full pipe")).catch(() => false)];
        FileSystem.openLocalLocation({ path: data, fileName: "full pipe" });
        return [...asked, await until(() => FileSystem.exists(at("opened/full pipe")).data && FileSystem.File({ path: at("opened/full pipe") }).size().data > 0), await FileSystem.getFileMd5(at("opened/full pipe"))];
    }, [false, false, true, md5.hello]],
    ["getFileStatus: a pipe does not wait", value(() => FileSystem.getFileStatus(at("pipe"))), false],
    ["getFileStatus: missing", () => FileSystem.getFileStatus("/no/file"), notExisted(1, "/no/file")],
    ["getFileStatus changes nothing", sum("plain.txt"), md5.hello],
]);

/** @type {(path: string, newPath: string, more?: object) => boolean} */
const copy = (path, newPath, more) => FileSystem.copy({ path: at(path), newPath: newPath.replace("DATA", data), ...more }).data;
const over = { overwrite: true };
await check([
    ["copy", () => copy("plain.txt", "%HOME%/copied.txt"), true],
    ["copy: the content", sum("copied.txt"), md5.hello],
    ["copy onto a file", () => copy("other.txt", "DATA/copied.txt"), false],
    ["copy onto a file leaves it", sum("copied.txt"), md5.hello],
    ["copy over a file", () => copy("other.txt", "DATA/copied.txt", over), true],
    ["copy over a file: the content", sum("copied.txt"), md5.other],
    ["copy over itself", () => copy("copied.txt", "DATA/copied.txt", over), true],
    ["copy over itself by a link", () => copy("link to copied", "DATA/copied.txt", over), true],
    ["copy over itself by another way", () => copy("copied.txt", "DATA/link to data/copied.txt", over), true],
    ["copy over itself keeps the content", sum("copied.txt"), md5.other],
    ["copy over a link replaces the link", () => copy("empty.txt", "DATA/link to plain", over), true],
    ["copy over a link leaves its target", sum("plain.txt"), md5.hello],
    ["copy over a directory", () => copy("plain.txt", "DATA/tree", over), refusal(3, "override existing file failed")],
    ...["pipe", "link to deep", "link to data"].map((name) =>
        [`copy over a ${name}`, () => copy("plain.txt", `DATA/${name}`, over), refusal(3, "override existing file failed")]),
    ["copy of a file that tells no size", () => FileSystem.copy({ path: "/proc/version", newPath: at("copied.txt"), ...over }).data, false],
    ["copy that fails leaves the file", sum("copied.txt"), md5.other],
    ...[{ overwrite: "no" }, { overwrite: null }, { newPath: 5 }, { path: ["plain.txt"] }].map((wrong) =>
        [`copy with ${show(wrong)}`, () => copy("other.txt", "DATA/plain.txt", wrong), refusal(1, "wrong parameters.")]),
    ["copy into no directory", () => copy("plain.txt", "DATA/none/a.txt"), false],
    ["copy: a name of 256 bytes", () => copy("plain.txt", `DATA/${"n".repeat(256)}`), false],
    // @ts-expect-error
    ["copy without a path", () => FileSystem.copy({}), empty(3)],
    ["copy a directory", () => copy("tree", "DATA/x"), illegal],
    ["copy a pipe", () => copy("pipe", "DATA/x"), illegal],
    ["copy a program", () => copy("program", "DATA/x"), illegal],
    ["copy a script under another name", () => copy("script.txt", "DATA/x"), illegal],
    // @ts-expect-error: the path to copy to must be given
    ["copy without a new path", () => FileSystem.copy({ path: at("plain.txt") }), newIllegal],
    ["copy to a relative path", () => copy("plain.txt", "x.txt"), newIllegal],
    ["copy into a closed directory by a link", () => copy("plain.txt", "DATA/tree/to closed/x"), newIllegal],
    ["copy leaves nothing half done", () => FileSystem.exists(at("closed/x")).data || FileSystem.exists(at("x")).data, false],

    ...["plain.txt", "script.txt", "program", "pipe", "broken", "tree", "sparse.bin", "notes", "held", "n".repeat(252)].map((name) =>
        [`settings in ${name.slice(0, 10)}`, () => SettingsManager.settings({ format: 1, path: at(name) }).setValue({ key: "k", value: 1 }),
            refusal(3, "Setting is invalid.")]),
    ["settings leave what is there", sum("plain.txt"), md5.hello],
    ...["commented.ini", "twice.ini", "launcher.ini"].map((name) => [`settings that would lose something: ${name}`, () => {
        const before = FileSystem.File({ path: at(name) }).size().data;
        const read = SettingsManager.settings({ format: 1, path: at(name) });
        const refused = (() => { try { return read.setValue({ key: "g/k", value: 1 }); } catch (error) { return /** @type {any} */ (error).msg; } })();
        return [read.getValue({ key: "g/old" }).data, refused, FileSystem.File({ path: at(name) }).size().data - before];
    }, ["1", "Setting is invalid.", 0]]),
    ["a byte array of another program reads as text", () =>
        SettingsManager.settings({ format: 1, path: at("bytes.ini") }).getValue({ key: "a" }).data, "caf\u00e9"],
    ...["deep.ini", "hidden.ini"].map((name) => [`settings nested too deep to be read: ${name}`, () =>
        SettingsManager.settings({ format: 1, path: at(name) }).getValue({ key: "a" }), refusal(3, "Setting is invalid.")]),
    ["settings take no file of the user's for a lock", sum("notes.lock"), md5.hello],
    ["settings behind a link", () => {
        SettingsManager.settings({ format: 1, path: at("link to settings") }).setValue({ key: "g/new", value: "x" });
        const read = SettingsManager.settings({ format: 1, path: at("settings.ini") });
        return ["g/old", "g/new"].map((key) => read.getValue({ key }).data);
    }, ["1", "x"]],
    ["settings that another program changes meanwhile", () => {
        const changed = SettingsManager.settings({ format: 1, path: at("settings.ini") });
        copy("other.ini", "DATA/settings.ini", over);
        changed.setValue({ key: "g/new", value: "y" });
        return ["g/old", "g/other", "g/new"].map((key) => changed.getValue({ key }).data);
    }, [undefined, "2", "y"]],
    ["mkpath", value(() => FileSystem.mkpath("%HOME%/made/by/page")), true],
    ["mkpath again", () => FileSystem.mkpath(at("made/by/page")), refusal(3, "the directory already exist")],
    ["mkpath where a file is", () => FileSystem.mkpath(at("plain.txt")), refusal(3, "the directory already exist")],
    ["mkpath below a file", value(() => FileSystem.mkpath(at("plain.txt/x"))), false],
    // @ts-expect-error
    ["mkpath of nothing", () => FileSystem.mkpath(), empty(1)],
    ["mkpath in a closed directory", () => FileSystem.mkpath(at("closed/x")), newIllegal],
    ["remove", value(() => FileSystem.remove("%HOME%/made")), true],
    ["remove: it is gone", value(() => FileSystem.exists(at("made"))), false],
    ["remove of nothing", () => FileSystem.remove(""), empty(1)],
    ["remove a relative path", () => FileSystem.remove("tree"), newIllegal],
    ["remove what is not there", () => FileSystem.remove(at("made")), notExisted(1, at("made"))],
    ["remove a file", () => FileSystem.remove(at("plain.txt")), refusal(1, `${at("plain.txt")} is not dir`)],
    ["remove a link", value(() => FileSystem.remove(at("link to tree"))), true],
    ["remove a link: its target stays", value(() => FileSystem.exists(at("tree/leaf.txt"))), true],
    ["remove a closed directory", () => FileSystem.remove(at("closed")), newIllegal],
    ["remove what holds a closed directory", () => FileSystem.remove(at("holder")), newIllegal],
    ["remove the home directory", () => FileSystem.remove("%HOME%/tree/.."), newIllegal],
    ["remove what holds the home directory", () => FileSystem.remove(at("..")), newIllegal],
    ["remove the home directory by another root", () => FileSystem.remove(`/proc/self/root${data}`), newIllegal],
    ["remove the home directory through a link", () => FileSystem.remove(at("link to outer/home")), newIllegal],
    ["remove the home directory with half a character", () => FileSystem.remove(`${data}/\ud800`), newIllegal],
    ["remove the target of a link with half a character", () => FileSystem.remove(at("link to odd/\udc00")), newIllegal],
    ["remove what holds links to closed directories", () => FileSystem.remove(at("links out")), newIllegal],
    ["remove what holds other links", value(() => FileSystem.remove(at("links"))), true],
    ["remove by steps behind a link", () => FileSystem.remove(at("link to deep/../tree")), newIllegal],
    ["exists reads the same path as the system", value(() => FileSystem.exists(at("link to deep/../deep/kept.txt"))), true],
    ["remove refused, or of links: nothing is lost", () =>
        ["closed/kept.txt", "holder/deep/kept.txt", "tree/leaf.txt", "plain.txt", "odd/-option.txt"].every((name) => FileSystem.exists(at(name)).data), true],

    ["isDirWritable", () => ["tree", " ", "plain.txt", "none", "closed", "closed/x", "velmora/testproduct/linux-x64/addons/pool",
        "velmora/testproduct/linux-x64/addons/POOL/x", "velmora/testproduct/linux-x64/addons/poolside"]
        .map((name) => FileSystem.isDirWritable(at(name)).data), [true, true, false, false, false, false, false, false, true]],
    ["isDirWritable with spaces around", value(() => FileSystem.isDirWritable(`  ${at("tree")} `)), true],
    ["isDirWritable: closed, by a relative path", value(() => FileSystem.isDirWritable("closed")), false],
    ["isDirWritable: closed, with a space in front", value(() => FileSystem.isDirWritable(` ${at("closed")}`)), false],
]);

await check([
    ...Object.entries({ "plain.txt": md5.hello, "empty.txt": md5.empty, "link to copied": md5.other }).map(([name, digest]) => [`digest of ${name}`, sum(name), digest]),
    ["digest: 4 GiB and a byte, while the page goes on", async () => {
        let turns = 0;
        const clock = setInterval(() => ++turns, 0);
        const digest = await FileSystem.getFileMd5(at("sparse.bin"));
        clearInterval(clock);
        return [digest, turns > 100];
    }, ["f18c798ff5d450dfe4d3acdc12b621ff", true]],
    ["digest: a file of the system that tells no size", async () => /^[0-9a-f]{32}$/.test(await FileSystem.getFileMd5("/proc/version")), true],
    ["digests: more than files can be open", async () =>
        [...new Set(await Promise.all(Array.from({ length: 1500 }, () => FileSystem.getFileMd5(at("other.txt")))))], [md5.other]],
    // @ts-expect-error
    ["digest without a path", () => FileSystem.getFileMd5(), empty(3)],
    ["digest of nothing", () => FileSystem.getFileMd5("/no/file"), notExisted(3, "/no/file")],
    ...["tree", "pipe"].map((name) => [`digest of a ${name}`, sum(name), refusal(3, `${at(name)} can't been opened`)]),
    ["digest of a device", () => FileSystem.getFileMd5("/dev/zero"), refusal(3, "/dev/zero can't been opened")],
    // The desktop's opener changes them. They are too large for the digest to end before that.
    ...["shrinking.bin", "restored.bin"].map((fileName) => [`digest of a file that changes: ${fileName}`, async () => {
        const digest = FileSystem.getFileMd5(at(fileName));
        for (let turn = 0; turn < 20; ++turn) // it is opened when its turn comes
            await new Promise((resolve) => setTimeout(resolve, 0));
        FileSystem.openLocalLocation({ path: data, fileName });
        return digest;
    }, refusal(3, `${at(fileName)} can't been opened`)]),
]);

await check([
    ...oddNames.map((fileName) => [`openLocalLocation: ${show(fileName)}`, async () =>
        [FileSystem.openLocalLocation({ path: at("odd"), fileName }).data, await until(() => FileSystem.exists(at(`opened/${fileName}`)).data)], [true, true]]),
    ["openLocalLocation of a directory", async () =>
        [FileSystem.openLocalLocation({ path: at("tree") }).data, await until(() => FileSystem.exists(at("opened/tree")).data)], [true, true]],
    ["openLocalLocation runs nothing from the working directory", value(() => FileSystem.exists(at("trapped"))), false],
    // @ts-expect-error
    ["openLocalLocation without a path", () => FileSystem.openLocalLocation({ fileName: "a" }), missing()],
    ["openLocalLocation of nothing", () => FileSystem.openLocalLocation({ path: "/no/dir" }), notExisted(3, "/no/dir")],
    ["openLocalLocation of a file", () => FileSystem.openLocalLocation({ path: at("plain.txt") }), refusal(3, `${at("plain.txt")} is not dir`)],
    ["openLocalLocation of a missing file", () => FileSystem.openLocalLocation({ path: at("tree/"), fileName: "none" }),
        refusal(3, `file ${at("tree/none")} is not exists`)],
    // @ts-expect-error
    ["open without a path", () => FileSystem.open(), empty(3)],
    ["open what is missing", () => FileSystem.open("/no/file"), notExisted(3, "/no/file")],
    ["open a directory", () => FileSystem.open(data), refusal(3, `${data} is not file`)],
    ["open without a desktop", () => FileSystem.open(at("plain.txt")), refusal(3, `Failed to open file : ${at("plain.txt")} `)],
]);

const inData = { caption: "Choose", dir: data };
await check([
    ["a file", value(() => FileSystem.getOpenFileName({ ...inData, filter: "Text (*.txt)" })), at("plain.txt")],
    ["a file, cancelled", value(() => FileSystem.getOpenFileName(inData)), ""],
    ["a file that is not there", value(() => FileSystem.getOpenFileName(inData)), ""],
    ["no answer left", value(() => FileSystem.getOpenFileName(inData)), ""],
    ["files", () => FileSystem.getOpenFileNames(inData).data.sort(), [at("empty.txt"), at("plain.txt")]],
    ["files, cancelled", value(() => FileSystem.getOpenFileNames(inData)), []],
    ["a directory", value(() => FileSystem.getExistingDirectory(inData)), at("tree")],
    ["a local folder", value(() => FileSystem.selectLocalFolder(inData)), at("a folder")],
    ["a local folder, cancelled", value(() => FileSystem.selectLocalFolder({ dir: "/no/dir" })), ""],
    // @ts-expect-error
    ["a local folder without a directory", () => FileSystem.selectLocalFolder({}), missing()],
    ...["getOpenFileName", "getOpenFileNames", "getExistingDirectory"].flatMap((member) => [
        [`${member} in no directory`, () => call(FileSystem, member, { dir: "/no/dir" }), notExisted(1, "/no/dir")],
        [`${member} in a file`, () => call(FileSystem, member, { dir: at("plain.txt") }), refusal(1, `${at("plain.txt")} is not dir`)],
        [`${member} without arguments`, () => call(FileSystem, member), notExisted(1, "")],
    ]),
    ["a name to save to", value(() => FileSystem.getWritableSaveFileName(inData)), at("tree/new.txt")],
    ["a name that can not be written to", value(() => FileSystem.getWritableSaveFileName(inData)), ""],
    ["on the machine or in the cloud", value(() => FileSystem.selectFolderx({ caption: "c", isOpenDialog: true })),
        { files: [at("plain.txt")], cloudFilePath: "/Docs/a", cloudGroupIds: ["g1", "g2"], cloudParentId: "p", duplicateCloudFileId: "d", duplicateAction: "rename" }],
    ["on the machine or in the cloud, cancelled", value(() => FileSystem.selectFolderx()), { files: [], cloudFilePath: undefined,
        cloudGroupIds: undefined, cloudParentId: undefined, duplicateCloudFileId: undefined, duplicateAction: undefined }],
    ["the panel", value(() => FileSystem.showSelectFilePanel({ multiple: true })), { note: "as it is", files: [at("plain.txt")] }],
    ["the panel, cancelled", value(() => FileSystem.showSelectFilePanel()), {}],
    ["the panel with a function", () => FileSystem.showSelectFilePanel({ f() {} }), refusal(1, "wrong parameters.")],
    ["access that is there", value(() => FileSystem.startAccess({ path: at("tree/leaf.txt") })), true],
    ["access without a question", value(() => FileSystem.startAccess({ path: at("plain.txt"), requestIfNoPermission: false, showRequestFailedTip: false })), false],
    ["access that the user grants", value(() => FileSystem.startAccess({ path: at("plain.txt") })), true],
    ["access that the user refuses", value(() => FileSystem.startAccess({ path: at("empty.txt") })), false],
]);
exit(failures ? 1 : 0);
