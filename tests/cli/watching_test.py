"""What novahost says of a page while it runs: hints, recordings and traces.

usage: watching_test.py NOVAHOST [--browser]
"""
import json
import os
import pathlib
import re
import resource
import signal
import subprocess
import sys
import tempfile

NOVAHOST, *OPTIONS = sys.argv[1:]
IN_BROWSER = "--browser" in OPTIONS

# name, script, the hints (regular expressions, all there are).
HINTS = [
    ["none for what is right", """NovaExtension.FileSystem.exists(NovaExtension.FileSystem.homePath().data);
        NovaExtension.SettingsManager.settings({ format: 0, extra: undefined, ...{} }).getValue({ key: "a", defaultValue: { any: 1 } });
        NovaExtension.Event.dispatchEvent("e", true, { success: true, data: 1 }); NovaExtension.ByteBufferManager.create(new Uint8Array(2))""",
     ["SettingsManager.settings has no option `extra`"]],
    ["none for questions", """[await NovaExtension.Log, JSON.stringify(NovaExtension.Log), `${NovaExtension.Log}`, "Nope" in NovaExtension,
        NovaExtension.Log.hasOwnProperty("x"), NovaExtension[Symbol.iterator], "logInof" in NovaExtension.Log]; for (const key in NovaExtension) key;
        const { FileSystem: F, Account: A } = NovaExtension; F.zip; F.nope?.(); F.readFile; F.isFile; F.name; A.setUserInfo""", []],
    ["none for what is passed on", """const { FileSystem: F, Account: A, Event: E, Log: L } = NovaExtension; ["/", "/"].map(F.exists.bind(F)); [1].map(A.isLoggedIn.bind(A));
        Promise.resolve(5).then(A.isLoggedIn.bind(A)); F.exists("/", undefined); L.logInfo({ moduleName: "m", logStr: `${{}} ${F.exists}` });
        for (const event of ["mine", "event.account.login.done"]) A.addEventListener(event, () => 0)""", []],
    ["once", "for (let i = 0; i < 3; ++i) NovaExtension.FileSystem.exists(i); NovaExtension.Loog?.bar; NovaExtension.Loog?.baz",
     ["`path` of FileSystem.exists is a number, where a string is expected", "NovaExtension has no Loog; did you mean Log?"]],
    ["an answer", "const { FileSystem: F } = NovaExtension; F.exists(F.homePath()); F.exists(`${F.homePath()}/a`); F.exists(`${Promise.resolve()}`); F.exists(F.homePath + '/a')",
     ["`path` of FileSystem.exists is an answer, where a string is expected: `.data` is forgotten",
      "`path` of FileSystem.exists contains \"[object Object]\": an object was made a string",
      "`path` of FileSystem.exists contains \"[object Promise]\": an `await` is forgotten",
      "`path` of FileSystem.exists contains \"[native code]\": a function was made a string: its `()` is forgotten"]],
    ["more arguments", "const { FileSystem: F, Account: A, Event: E } = NovaExtension, f = () => 0; try { F.copy({ path: '/no', newPath: '/no/a' }, f) } catch { } E.addEventListener('e', f, { once: true }); A.getUserInfo(f)",
     ["FileSystem.copy takes 1 argument, but gets 2", "Event.addEventListener takes 2 arguments, but gets 3", "Account.getUserInfo takes no arguments, but gets 1"]],
    ["options", "const { Log: L, FileSystem: F } = NovaExtension; try { L.logInfo({ modulename: 'm', logStr: 5, '\\x1b[2J': 1 }); } catch { }; try { L.logInfo({ moduleName: '' }) } catch { } F.exists(); F.exists(null); try { NovaExtension.ConfigCenter.setValue({ key: 'k', value: null }) } catch { }",
     ["`value` of ConfigCenter.setValue is null, where a value is expected", "`logStr` of Log.logInfo is missing, where a string is expected", "`path` of FileSystem.exists is missing, where a string is expected",
      "`path` of FileSystem.exists is null, where a string is expected", "Log.logInfo has no option `\\u001b[2J`", "Log.logInfo has no option `modulename`; did you mean `moduleName`?",
      "`logStr` of Log.logInfo is a number, where a string is expected"]],
    ["inner values", "try { NovaExtension.Network.fetch({ url: 'ftp://x', headers: { a: 5 }, responseType: 'txt' }); } catch { }",
     ["`headers.a` of Network.fetch is a number, where a string is expected",
      '`responseType` of Network.fetch is "txt", which is none of "text", "bytes"; did you mean "text"?']],
    ["events", "for (const event of ['event.account.logn', 'event.account.login']) NovaExtension.Account.addEventListener(event, () => 0)",
     ['Account has no event "event.account.logn"; did you mean "event.account.login"?']],
    ["names", "NovaExtension.Loog; NovaExtension.Log.logInof; NovaExtension.SettingsManager.settings({ format: 0 }).getvalue",
     ["NovaExtension has no Loog; did you mean Log?", "Log has no logInof; did you mean logInfo?",
      "SettingsManager.Settings has no getvalue; did you mean getValue?"]],
    ["words of names", "const { Log: L, ConfigCenter: C, Account: A, FileSystem: F, Skin: S } = NovaExtension; [C.getValue, L.info, A.userInfo, F.isDirectory, F.copyFile, S.getCurrentSkin]; NovaExtension.SettingsManager.settings({ format: 0 }).getValue({ key: 'a', default: 1 })",
     ["ConfigCenter has no getValue; did you mean value?", "Log has no info; did you mean logInfo?", "Account has no userInfo; did you mean getUserInfo?",
      "FileSystem has no isDirectory; did you mean isDir?", "FileSystem has no copyFile; did you mean copy?", "Skin has no getCurrentSkin; did you mean getCurrentSkinName?",
      "SettingsManager.Settings.getValue has no option `default`; did you mean `defaultValue`?"]],
]

STRICT = """const said = (action) => { try { return action() } catch (e) { return `${e.name} ${e.code} ${e.message}` } };
console.log(said(() => NovaExtension.FileSystem.exists(5)), "|", said(() => NovaExtension.Nope), said(() => NovaExtension.Log.logInfo({ moduleName: "m", logStr: String({}) }).success), "|", said(() => NovaExtension.Log.logInof))"""
STRICT_SAYS = ("Error 1 `path` of FileSystem.exists is a number, where a string is expected | undefined true"
               " | TypeError undefined Log has no logInof; did you mean logInfo?\n")

# What the library sees of each kind of value, and of each kind of thing that happens.
WATCHED = r"""
const { Event, SettingsManager, FileSystem, Account, Log, ByteBufferManager } = NovaExtension;
const listener = (...given) => { Log.logInfo({ moduleName: "m", logStr: "heard" }); };
Event.addEventListener("e", listener);
Event.addEventListener("e", () => 0);
Event.dispatchEvent("e", true, -0, NaN, 5n, undefined, { $a: "\ud800\n", b: [1.5, null] }, "x".repeat(2 ** 20));
Event.removeEventListener("e", listener);
const settings = SettingsManager.settings({ format: 0 });
settings.setValue({ key: "k", value: true });
ByteBufferManager.create(new Uint8Array([0, 1, 2])).data();
try { FileSystem.mkpath(""); } catch { }
await FileSystem.getFileMd5("/no").catch(() => 0);
await new Promise((done) => { Account.addLoginListener(done); process.play("login:user-2"); });
"""
# The records by type and name, in the order in which they come where the engines do not differ.
RECORDS = [
    ("call", "addEventListener", '["e",{"$function":1}]'), ("call", "addEventListener", '["e",{"$function":2}]'),
    ("event", "e", '[{"$number":"-0"},{"$number":"NaN"},5,{"$undefined":true},{"$plain":{"$a":"\\ud800\\u000a","b":[1.5,null]}},{"$cut":"string","length":1048576}]'),
    ("call", "dispatchEvent", '{"$bigint":"5"}'), ("call", "removeEventListener", '["e",{"$function":1}]'),
    ("call", "settings", '{"$object":N,"class":"NovaExtension.SettingsManager.Settings"}'), ("call", "setValue", '"instance":N'),
    ("call", "create", '[{"$bytes":"AAEC"}]'), ("call", "data", '"answer":{"$bytes":"AAEC"}'), ("call", "mkpath", '"thrown":{"code":1,"msg":"Path is empty."}'),
    ("call", "getFileMd5", '"promise":1'), ("settled", 1, '"state":"rejected","value":{"code":3,"msg":"/no is not existed","success":false}'),
    ("call", "addLoginListener", '[{"$function":'), ("play", "login:user-2", ""), ("event", "event.account.login", '[{"callstatus":"ok"')]


def run(*arguments, limit=None, **variables):
    """How novahost ends; `limit` is the most bytes that it may write into a file."""
    def prepare():
        if limit:
            resource.setrlimit(resource.RLIMIT_FSIZE, (limit, limit))
            signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
    environment = {**os.environ, "QT_LOGGING_RULES": "default.info=false", **variables}
    if IN_BROWSER:
        environment["QT_QPA_PLATFORM"] = "offscreen"
        if os.geteuid() == 0:
            environment["QTWEBENGINE_DISABLE_SANDBOX"] = "1"
    return subprocess.run([NOVAHOST, *OPTIONS, *arguments], capture_output=True, text=True, check=False, env=environment,
                          preexec_fn=prepare, restore_signals=not limit, timeout=120)


def check_record(text, faults):
    """Whether a recording has what the page did, in its order, each once."""
    lines = [json.loads(line) for line in text.splitlines()]
    if lines[0] != {**lines[0], "novaRecording": 1, "origin": "nova://script"}:
        faults.append(f"the first line is {lines[0]}")
    texts = [re.sub(r'("\$object"|"instance"):\d+', r"\1:N", line) for line in text.splitlines()]
    seen = [(one["type"], one.get("member") or one.get("event") or one.get("step") or one.get("promise"), line)
            for one, line in zip(lines[1:], texts[1:]) if one.get("member") != "logInfo"]
    if [row[:2] for row in seen] != [row[:2] for row in RECORDS]:
        faults.append(f"the records are {[row[:2] for row in seen]}")
    faults += [f"{part} is not in {line[:500]}" for (_, _, part), (_, _, line) in zip(RECORDS, seen) if part not in line]
    outer = next(one["id"] for one in lines if one.get("member") == "dispatchEvent")
    within = [one["type"] for one in lines if one.get("within") == outer]
    if within != (["event"] if IN_BROWSER else ["event", "call"]):
        faults.append(f"within dispatchEvent are {within}")
    if max(len(line) for line in texts) > 2**20 + 1000:
        faults.append("a line is longer than 1 MiB")


def check_trace(text, faults):
    """Whether a trace is one array, has what happened, and ends each promise that it begins."""
    events = json.loads(text)
    shapes = {(one["ph"], one["name"]) for one in events}
    wanted = {("M", "process_name"), ("M", "thread_name"), ("X", "Event.dispatchEvent"), ("X", "Event e"), ("i", "play login:user-2"),
              ("b", "FileSystem.getFileMd5"), ("e", "FileSystem.getFileMd5"), ("X", "Log.logInfo")}
    if wanted - shapes:
        faults.append(f"the trace lacks {wanted - shapes}")
    spans = {one["name"]: (one["ts"], one["ts"] + one["dur"]) for one in events if one["ph"] == "X"}
    call, event, outer = spans["Log.logInfo"], spans["Event e"], spans["Event.dispatchEvent"]
    if not IN_BROWSER and not outer[0] <= event[0] <= call[0] <= call[1] <= event[1] <= outer[1]:
        faults.append(f"{call}, {event}, {outer} are not nested")


def main():
    faults = []
    for name, script, hints in HINTS:
        said = run("eval", f"(async () => {{ {script} }})()")
        seen = sorted(line for line in said.stderr.splitlines() if line.startswith("hint: ") and not line.startswith("hint: ended with "))
        places = [re.search(r" \(eval1:\d+:\d+\)$", line) for line in seen]
        seen = sorted(line[:place.start()] if place else line for line, place in zip(seen, places))
        if said.returncode or seen != sorted(f"hint: {hint}" for hint in hints) or not all(places):
            faults.append(f"{name}: {said.returncode} {said.stderr}")
    if run("--no-hints", "eval", "NovaExtension.Foo; NovaExtension.FileSystem.exists(5)").stderr:
        faults.append("--no-hints prints something")
    said = run("--trace", "eval", r"NovaExtension.FileSystem.exists('\x1b[2J'); try { NovaExtension.FileSystem.mkpath('') } catch { } 1", FORCE_COLOR="1").stderr
    if not re.fullmatch(r"(\x1b\[(90|36|31|39)m|[^\x1b])*", said) or "\x1b[31mfailed: code 1 " not in said:
        faults.append(f"colours: {said!r}")
    with tempfile.TemporaryDirectory() as place:
        folder = pathlib.Path(place)
        (folder / "strict.js").write_text(STRICT, encoding="utf-8")
        if (said := run("--strict", "run", f"{place}/strict.js")).stdout != STRICT_SAYS:
            faults.append(f"--strict: {said}")
        (folder / "page.js").write_text(WATCHED, encoding="utf-8")
        (folder / "link").symlink_to(folder / "elsewhere")
        said = run("--record", f"{place}/record", f"--trace={place}/trace", "run", f"{place}/page.js")
        if said.returncode or not said.stderr.startswith("hint: ended with ") or said.stderr.count("\n") > 1:
            faults.append(f"recording: {said}")
        check_record((folder / "record").read_text(encoding="utf-8"), faults)
        check_trace((folder / "trace").read_text(encoding="utf-8"), faults)
        if (folder / "record").stat().st_mode & 0o77:
            faults.append("others can read the recording")
        if run("--record", f"{place}/both", f"--trace={place}/both", "eval", "1").returncode != 2:
            faults.append("one file is written twice")
        for path in (f"{place}/page.js", f"{place}/trace", f"{place}/link", f"{place}/no/file", place, "/dev/full"):
            if (said := run("--record", path, "eval", "console.log(1)")).returncode != 2 or said.stdout or "novahost: --record" not in said.stderr:
                faults.append(f"--record {path}: {said}")
        if (folder / "elsewhere").exists() or (folder / "page.js").read_text(encoding="utf-8") != WATCHED:
            faults.append("a link was followed, or a page emptied")
        said = run("--record", f"{place}/short", "run", f"{place}/page.js", limit=None if IN_BROWSER else 1000)
        if not IN_BROWSER and (said.returncode != 1 or said.stderr.count("the file is not complete") != 1):
            faults.append(f"a full disk: {said}")
    if faults:
        sys.exit("\n".join(faults))


main()
