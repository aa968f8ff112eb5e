// novahost as a person or a program starts it.
#include "tests/cli/novahost.h"
#include "tests/services/rows.h"

#include <QRegularExpression>

namespace {

class CommandLine : public testing::TestWithParam<Row> { };

// The exit code, and regular expressions of what is printed and of the errors; nothing is printed where there
// is no expression.
TEST_P(CommandLine, EndsAsItShould)
{
    const QTemporaryDir place;
    writeFile(place, "script.js", "console.log(process.argv.slice(2).join());\n");
    writeFile(place, "profile.json",
        R"({"policy": [{"origin": "https://docs.example", "allow": ["Log"], "deny": ["Log.logInfo"]}]})");
    writeFile(
        place, "typo.json", R"({"policy": [{"origin": "*", "allow": ["*"], "deny": ["FileSystem.cpoy"]}]})");
    if (GetParam().given.startsWith(QLatin1String("--browser")))
        setUpBrowser();
    const Ended ended = novahost(wordsOf(GetParam().given, place));
    const QString& expected = GetParam().expected;
    EXPECT_EQ(ended.code, expected.section(QLatin1Char(' '), 0, 0).toInt()) << ended.errors.toStdString();
    const auto expectText = [](const QString& text, const QString& pattern) {
        const QRegularExpression expression(pattern.isEmpty() ? QStringLiteral("^$") : pattern);
        EXPECT_TRUE(text.contains(expression)) << text.toStdString() << "\nis not " << pattern.toStdString();
    };
    const QString texts = expected.section(QLatin1Char(' '), 1);
    expectText(ended.out, texts.section(QLatin1String("||"), 0, 0).trimmed());
    expectText(ended.errors, texts.section(QLatin1String("||"), 1).trimmed());
}

/// The rows, and the same rows in the browser engine.
std::vector<Row> inBoth(const char* table)
{
    std::vector<Row> all = rows(table);
    for (std::size_t i = 0, count = all.size(); i < count; ++i)
        all.push_back(
            { all[i].name + "InBrowser", QStringLiteral("--browser ") + all[i].given, all[i].expected });
    return all;
}

INSTANTIATE_TEST_SUITE_P(Eval, CommandLine, testing::ValuesIn(inBoth(R"js(
Number: eval "6 * 7" -> 0 ^42\n$
Promise: eval "Promise.resolve({a: [1n, null]})" -> 0 ^\{"a":\[1,null\]\}\n$
Undefined: eval undefined -> 0 ^null\n$
NullInJson: eval NaN -> 0 ^null\n$
TextUndefined: eval 'undefined' -> 0 ^"undefined"\n$
Function: eval "() => 1" -> 1 || ^novahost: the answer has no JSON form\n$
Symbol: eval "Symbol('undefined')" -> 1 || ^novahost: the answer has no JSON form\n$
Cycle: eval "const a = {}; a.a = a; a" -> 1 || ^novahost: the answer has no JSON form\n$
Throws: eval null.x -> 1 || TypeError
Refusal: eval NovaExtension.Log.logInfo() -> 1 || missing required parameters\.[\s\S]*code: 1
SyntaxError: eval "1 +" -> 1 || SyntaxError
RevokedProxy: eval "const r = Proxy.revocable({}, {}); r.revoke(); NovaExtension.Log.logInfo(r.proxy)" -> 1 || a proxy can not be passed[\s\S]*code: 1
SyntaxErrorWhileItRuns: eval "console.log('once'); JSON.parse('{')" -> 1 ^once\n$ || SyntaxError
Exit: eval exit(7) -> 7
ExitCodeOfExit: eval "process.exitCode = 3, exit()" -> 3
ExitAfterAnError: eval "const { Event: E } = NovaExtension; E.addEventListener('e', () => { throw 1 }); E.dispatchEvent('e'); exit()" -> 1 || Uncaught
WrongExitCode: eval "process.exitCode = 300, 1" -> 1 ^1\n$ || ^novahost: process\.exitCode must be an integer from 0 to 255\n$
ExitWithAWrongCode: eval "process.exitCode = -1, exit()" -> 1 || TypeError: process\.exitCode must be
MisspeltGlobal: eval Novaextension.Log -> 1 || ReferenceError[\s\S]*\nhint: did you mean NovaExtension\?\n$
ObjectAsAGlobal: eval FileSystem.homePath() -> 1 || \nhint: did you mean NovaExtension\.FileSystem\?\n$
OfNode: eval Buffer -> 1 || \nhint: there is no Buffer; Uint8Array
PromiseAsArgument: eval "NovaExtension.FileSystem.exists(Promise.resolve('/'))" -> 1 || \nhint: an `await` is forgotten\n$
ExitEndsTheTurn: eval "exit(7); console.log('after')" -> 7 ^after\n$
ErrorEndsNothing: eval "const E = NovaExtension.Event; E.addEventListener('e', () => { throw 'x' }); E.addEventListener('e', () => console.log('second'));
 E.dispatchEvent('e'); console.log('after')" -> 1 ^second\nafter\nnull\n$ || ^Uncaught \(in a listener of e\) 'x'\nhint: ended with listener of e \(2\); --keep waits for events\n$
RejectionAtTheEnd: eval "Promise.reject('no'), 5" -> 1 ^5\n$ || ^Uncaught \(in promise\) 'no'\n
OddOutput: eval "console.log('a', -0, NaN, 5n, '\ud83d\ude00', [1, , 2]); console.error('z'.repeat(3e5).length)" -> 0 ^a -0 NaN 5n \x{1f600} \[ 1, <1 empty item>, 2 \]\nnull\n$ || ^300000\n$
Traced: eval "NovaExtension.Log.logInfo({moduleName: 'm', logStr: 's'})" --trace -> 0 success || ^ +\d+\.\d ms  Log\.logInfo\(\{logStr: "s", moduleName: "m"\}\) → undefined  [\d.]+ [um]s\n$
TracedFailure: eval NovaExtension.Log.logInfo() --trace -> 1 || Log\.logInfo\(\) failed: code 1 "missing required parameters\."
HandedOutNames: eval "[NovaExtension.SettingsManager.settings({format: 0}), NovaExtension.Account.Privilege, NovaExtension.FileSystem.File({path: '/etc/passwd'}), NovaExtension.CloudDoc.Orbitapi].map(String)" -> 0 ^\["\[object NovaExtension.SettingsManager.Settings\]","\[object NovaExtension.Account.Privilege\]","\[object NovaExtension.FileSystem.File\]","\[object NovaExtension.CloudDoc.Orbitapi\]"\]\n$
Denied: --deny 0x40 eval "typeof NovaExtension.Log.logInfo" -> 0 ^"undefined"\n$
NotDenied: --deny 0x80 eval "typeof NovaExtension.Log.logInfo" -> 0 ^"function"\n$
)js")),
    rowName);

INSTANTIATE_TEST_SUITE_P(Without, CommandLine, testing::ValuesIn(inBoth(R"js(
JsCore: --without jsCore eval NovaExtension.Log -> 1 || Log.*80000008[\s\S]*code: 3
PromiseService: --without promiseService eval "NovaExtension.FileSystem.getFileMd5('/etc/passwd')" -> 1 || PromiseServiceNull[\s\S]*code: 3
AnswerChannel: --without answerChannel eval "NovaExtension.FileSystem.getFileMd5('/etc/passwd')" -> 1 || PromiseServiceNull[\s\S]*code: 3
Logger: --without logger eval "NovaExtension.Log.logInfo({moduleName: 'm', logStr: 's'})" -> 0 success
AccountSdk: --no-hints --without accountSdk eval "const A = NovaExtension.Account, said = (m, ...a) => { try { return A[m](...a) } catch (e) { return e.code + e.msg } };
 [['isLoggedIn', 'getUserId', 'getUserInfo', 'getMemberInfo', 'getCompanyInfo', 'getAccountListInfo', 'isNovaMember', 'isFolioMember', 'isSuperMember',
 'isCompanyMember', 'isMultiAccount', 'logout', 'upgradeMember'].map((m) => said(m)), said('login', {})].flat().filter((s) => s !== '3Accountsdk is not initialized.')" -> 0 ^\[\]\n$
CurrentAccount: --no-hints --without currentAccount eval "const A = NovaExtension.Account, said = (m, ...a) => { try { return A[m](...a) } catch (e) { return e.code + e.msg } };
 [['isLoggedIn', 'getUserId', 'getUserInfo', 'getMemberInfo', 'getCompanyInfo', 'getAccountListInfo', 'isNovaMember', 'isFolioMember', 'isSuperMember',
 'isCompanyMember', 'isMultiAccount'].filter((m) => said(m) !== '3Current account is not initialized.'), said('login', {}), said('logout'), said('upgradeMember')].flat()"
 -> 0 ^\[("1missing required parameters\.",?){3}\]\n$
AccountEvents: --without eventHubs eval "NovaExtension.Account.addLoginListener(() => 1)" -> 1 || Event service error\.[\s\S]*code: 3
EventHubs: --without eventHubs eval "NovaExtension.Event.addEventListener('e', () => 1)" -> 1 || Event service error\.[\s\S]*code: 3
ObjectFactory: --without objectFactory eval "NovaExtension.SettingsManager.settings({format: 0})" -> 1 || empty handle\.[\s\S]*code: 3
Browsers: --without browsers eval NovaExtension.Profile.getBrowserTraceInfo() -> 1 || Browser is not in browser group\.[\s\S]*code: 1
BrowserGroups: --without browserGroups eval NovaExtension.Profile.getBrowserTraceInfo() -> 1 || Browser is not in browser group\.[\s\S]*code: 1
DataCollection: --without dataCollection eval "NovaExtension.TelemetrySdk.postEvent({eventName: 'e', postContent: {a: 'b'}})" -> 1 || kdcinfo error[\s\S]*code: 3
ConfigCentre: --without configCentre eval "NovaExtension.ConfigCenter.setValue({key: 'k', value: 1})" -> 0 "data":false
TraceHook: --trace --without=traceHook eval NovaExtension.Product.language() -> 0 success || Product\.language\(\) → "
Several: --without eventHubs,dataCollection eval "NovaExtension.TelemetrySdk.postEvent({eventName: 'e', postContent: {a: 'b'}})" -> 1 || kdcinfo error
Repeated: --without dataCollection --without eventHubs eval "NovaExtension.TelemetrySdk.postEvent({eventName: 'e', postContent: {a: 'b'}})" -> 1 || kdcinfo error
Unknown: --without coffee eval 1 -> 2 || ^novahost: --without.*coffee
)js")),
    rowName);

INSTANTIATE_TEST_SUITE_P(Usage, CommandLine, testing::ValuesIn(rows(R"js(
NoCommand: -> 2 || ^novahost: a command is missing: run, eval,.*\nhint: `novahost --help`.*\n$
MisspeltCommand: rnu -> 2 || ^novahost: there is no command rnu; did you mean run\?
MisspeltOption: run --trce no.js -> 2 || ^novahost: there is no option --trce; did you mean --trace\?
MisspeltFile: run SCRIPTs -> 2 || ^novahost: FILE: there is no file ".*script\.jss"; did you mean /.*/script\.js\?
TraceFileIsNoCommand: --trace t.json run SCRIPT -> 2 || ^novahost: the file of --trace goes behind an equals sign: --trace=t\.json\n
TraceFileIsNoScript: run --trace PROFILE SCRIPT -> 2 || ^novahost: the file of --trace goes behind
OwnOptionInFront: --json members Log -> 0 ^\[\{"object":"NovaExtension\.Log"
OptionOfAnotherCommand: --size 1x1 run SCRIPT -> 2 || ^novahost: --size is for open\n
NoNumber: --time-limit abc eval 1 -> 2 || ^novahost: --time-limit: a number of seconds from 0\.1 to 1000000 is expected, not abc\n
NoValue: eval 1 --record -> 2 || ^novahost: --record: a file is missing\n
ValueOfAFlag: eval --keep=maybe 1 -> 2 || ^novahost: --keep takes no value
NobodyListens: --keep --play login:user-2 eval 1 -> 0 ^1\n$ || ^hint: ended before the play of login:user-2: the page listens to nothing\n$
Help: help -> 0 ^Runs page script[\s\S]*Commands:
OptionOfAnother: --play logout members -> 2 || ^novahost: --play is for run, eval, repl, open
HelpOfACommand: policy explain --help -> 0 ^Say whether(?![\s\S]*--play)[\s\S]*--profile FILE[\s\S]*Examples:[\s\S]*Exit codes:
HelpByItsCommand: help policy explain -> 0 ^Say whether
CompletedMember: --complete-words members Log.logI -> 0 ^Log\.logInfo\n$
CompletedServices: --complete-words run --without=skin,lo -> 0 ^--without=skin,logger\n$
CompletedSteps: --complete-words eval --play logout,c -> 0 ^logout,cloud:kill\nlogout,config:\n$
CompletedFile: --complete-words run --deny 1 exam -> 0 ^:files\n$
CompletedOptionalFile: --complete-words --trace = t -> 0 ^:files\n$
CompletedOptionOfTheScript: --complete-words run page.js --br -> 0 ^:files\n$
NoSuchScript: run no.js -> 2 || ^novahost: .*no\.js
NoSuchProfile: --profile no.json eval 1 -> 2 || ^novahost: --profile.*no\.json
NoSuchObject: members Nothing -> 2 || ^novahost: .*"Nothing"; .novahost members. lists all
SimilarObject: members Seting -> 2 || ^novahost: .*"Seting"; did you mean SettingsManager\.settings\?\n$
ObjectByItsLastPart: members Settings -> 0 ^NovaExtension\.SettingsManager\.Settings  \(handed out
MembersAsJson: members --json SettingsManager -> 0 ^\[\{"object":"NovaExtension.SettingsManager","mode":\d,"members":\[\{"name":"settings","kind":0,"mask":64,"result":13,"params":\[\{"type":32772,"name":null\}
NoMask: --deny zz eval 1 -> 2 || ^novahost: --deny: a mask is a number
MaskTooLarge: --deny 0x100000000 eval 1 -> 2 || ^novahost: --deny: a mask is a number
PlayedStep: --play logout,fly@5ms eval 1 -> 2 || ^novahost: --play: fly@5ms: a step is
PlayedUser: --play login:nobody eval 1 -> 2 || ^novahost: --play: login:nobody: the profile has no user "nobody"
PlayedTier: --play member:super eval 1 -> 2 || ^novahost: --play: member:super: a membership is "on" or "off"
DataIsAFile: --data /etc/passwd eval 1 -> 2 || ^novahost: --data.*/etc/passwd
LibraryIsNone: --library /etc/passwd eval 1 -> 2 || ^novahost: --library.*/etc/passwd
LibraryOfSomethingElse: --library OTHER_LIBRARY eval 1 -> 2 || ^novahost: --library .* has no GetNovaExtensionJsApiObj
NoSuchPage: open no.html -> 2 || ^novahost: no\.html: there is no such file
NoDisplay: open TOUR -> 2 || ^novahost: open: there is no X display
EmptyWindow: open TOUR --size 0x9 --screenshot p.png -> 2 || ^novahost: --size: a size is
TooLargeWindow: open TOUR --size 9000x9 --scale 2 --screenshot p.png -> 2 || ^novahost: --size: a window has at most 16384x16384
Tour: run --no-hints TOUR -> 0 9007199254740993[\s\S]*Format is illegal\. || ^$
TourOfAll: run TOUR --all https://localhost:1/ -> 0 ^(?![\s\S]*(not supported|threw))[\s\S]*Account\.logout || suite\.desktop: open https://localhost:1/
NothingIsNotBuilt: members --unsupported -> 0 ^$
)js")),
    rowName);

INSTANTIATE_TEST_SUITE_P(Document, CommandLine, testing::ValuesIn(rows(R"js(
ReloadInBrowser: --browser eval "location.reload(); new Promise(() => 0)" -> 1 || ^the page has gone\n$
WithoutListenersInBrowser: --browser eval "document.open(), 5" -> 0 ^5\n$
)js")),
    rowName);

INSTANTIATE_TEST_SUITE_P(WhoMayCall, CommandLine, testing::ValuesIn(rows(R"js(
Rules: policy --profile PROFILE -> 0 ^policy\[0\]  https://docs\.example\n  allow  Log\n  deny   Log\.logInfo\notherwise  .*\n$
RulesAsJson: --profile PROFILE policy --json -> 0 ^\[\{"origin":"https://docs.example","allow":\["Log"\],"deny":\["Log.logInfo"\],"permissions":\["usual"\]\}\]\n$
Allowed: policy explain https://docs.example NovaExtension.Log.logWarning --profile PROFILE -> 0 ^allowed: policy\[0\] for "https://docs\.example": allow\[0\] is "Log"\n$
DeniedByName: policy explain https://docs.example Log.logInfo --profile PROFILE -> 1 ^denied: policy\[0\] .*: deny\[0\] is "Log\.logInfo"\n$
DeniedAsJson: policy explain --json https://docs.example FileSystem.copy --profile PROFILE -> 1 "category":"Usual","allowed":false,"rule":0,
ByDefault: policy explain nova://app FileSystem.copy -> 0 ^allowed: no rule .* pages of the application
NoOrigin: policy explain null Event.dispatchEvent --profile PROFILE -> 1 ^denied: .*origin of its own
OriginIsAPage: policy explain https://docs.example/a Log.logInfo -> 2 || ^novahost: ORIGIN: .*has no path
MemberIsMisspelt: policy explain nova://app Filesystem.cpoy -> 2 || ^novahost: MEMBER: .*"Filesystem\.cpoy"; did you mean FileSystem\.copy\?
MemberIsAnObject: policy explain nova://app Log -> 2 || ^novahost: MEMBER:
RuleIsMisspelt: --profile TYPO eval 1 -> 2 || ^novahost: profile ".*typo\.json": policy\[0\]\.deny\[0\]: there is no "FileSystem\.cpoy"; did you mean FileSystem\.copy\?
)js")),
    rowName);

INSTANTIATE_TEST_SUITE_P(ArgumentsOfTheScript, CommandLine, testing::ValuesIn(inBoth(R"js(
Option: run --without logger SCRIPT a --without b -> 0 ^a,--without,b\n$
OptionWithEqualsSign: run --without=logger SCRIPT a -> 0 ^a\n$
OptionInFront: --without logger,browsers run SCRIPT run -> 0 ^run\n$
Flag: run --trace SCRIPT --trace -> 0 ^--trace\n$
Profile: run --profile=PROFILE --deny 1 SCRIPT x -> 0 ^x\n$
Help: run SCRIPT -h --help -> 0 ^-h,--help\n$
EndOfOptions: run -- SCRIPT -x -> 0 ^-x\n$
EndOfOptionsBehindTheFile: run SCRIPT -- x -> 0 ^--,x\n$
None: run SCRIPT -> 0 ^\n$
)js")),
    rowName);

TEST(Run, LosesNoValueInSilence)
{
    const QTemporaryDir place;
    ASSERT_TRUE(QDir(place.path()).mkpath(QStringLiteral("data/config-centre.json/file")));
    const Ended ended = novahost(wordsOf(
        QStringLiteral("--data DATA eval \"NovaExtension.ConfigCenter.setValue({key: 'c', value: 1})\""),
        place));
    EXPECT_EQ(ended.code, 1);
    EXPECT_TRUE(ended.errors.contains(QRegularExpression(QStringLiteral("novahost: .*1 change.*lost"))))
        << ended.errors.toStdString();
}

TEST(Run, SurvivesTheLimitOfItsFiles)
{
    const QTemporaryDir place;
    writeFile(place, "large", QByteArray(100'000, 'x').constData());
    QProcess process;
    process.setWorkingDirectory(place.path());
    process.start(QStringLiteral("/bin/sh"),
        { QStringLiteral("-c"), QStringLiteral("ulimit -f 64; exec \"$0\" \"$@\""), QStringLiteral(NOVAHOST),
            QStringLiteral("eval"),
            QStringLiteral("NovaExtension.FileSystem.copy({path: '%1/large', newPath: '%1/copy'}).data")
                .arg(place.path()) });
    const Ended ended = endOf(process);
    EXPECT_EQ(ended.out + ended.errors, QStringLiteral("false\n"));
    EXPECT_FALSE(QFile::exists(place.filePath(QStringLiteral("copy"))));
}

TEST(Run, KeepsItsStateBelowTheDataDirectory)
{
    const QTemporaryDir place;
    writeFile(place, "script.js",
        "const s = NovaExtension.SettingsManager.settings({format: 0});\n"
        "console.log(s.getValue({key: 'k', defaultValue: 'none'}).data);\n"
        "s.setValue({key: 'k', value: 'kept'});\n"
        "NovaExtension.Log.logInfo({moduleName: 'mod', logStr: 'two\\nlines'});\n"
        "NovaExtension.ConfigCenter.setValue({key: 'c', value: 1});\n"
        "setTimeout(() => null.boom, 5);\n");
    for (const char* expected : { "none\n", "kept\n" }) {
        const Ended ended = novahost(wordsOf(QStringLiteral("run --data DATA SCRIPT"), place));
        EXPECT_EQ(ended.out, QLatin1String(expected));
        EXPECT_EQ(ended.code, 1) << "an error in a timer counts";
        EXPECT_TRUE(
            ended.errors.contains(QRegularExpression(QStringLiteral("TypeError[\\s\\S]*script\\.js:6"))))
            << ended.errors.toStdString();
    }
    EXPECT_EQ(readFile(place, "data/logs/suite.log").count("mod"), 2);
    EXPECT_TRUE(readFile(place, "data/config-centre.json").contains("\"c\""));
    EXPECT_TRUE(readFile(place, "data/settings/Velmora/Office.conf").contains("Common\\plugins\\k=kept"));
}

} // namespace
