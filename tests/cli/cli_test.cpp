// novahost as a person or a program starts it.
#include "tests/cli/novahost.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTemporaryDir>

namespace {

struct Case {
    const char* name;
    QStringList arguments;
    int code;
    const char* out; ///< regular expressions that must match somewhere
    const char* errors;
};

void PrintTo(const Case& row, std::ostream* stream)
{
    *stream << row.name;
}

class CommandLine : public testing::TestWithParam<Case> { };

TEST_P(CommandLine, AnswersAsItShould)
{
    const Ended ended = novahost(GetParam().arguments);
    EXPECT_EQ(ended.code, GetParam().code) << ended.errors.toStdString();
    EXPECT_TRUE(ended.out.contains(QRegularExpression(QLatin1String(GetParam().out))))
        << ended.out.toStdString();
    EXPECT_TRUE(ended.errors.contains(QRegularExpression(QLatin1String(GetParam().errors))))
        << ended.errors.toStdString();
}

QStringList eval(const char* expression, const QStringList& options = {})
{
    return options + QStringList { QStringLiteral("eval"), QString::fromUtf8(expression) };
}

QStringList without(const char* service, const char* expression)
{
    return eval(expression, { QStringLiteral("--without"), QLatin1String(service) });
}

constexpr char NoJsonForm[] = "^novahost: the answer has no JSON form\n$";
constexpr char Settings[] = "NovaExtension.SettingsManager.settings({format: 0})";
constexpr char Listen[] = "NovaExtension.Event.addEventListener('e', () => 1)";
constexpr char Md5[] = "NovaExtension.FileSystem.getFileMd5('/etc/passwd')";
constexpr char Post[] = "NovaExtension.TelemetrySdk.postEvent({eventName: 'e', postContent: {a: 'b'}})";
constexpr char Trace[] = "NovaExtension.Profile.getBrowserTraceInfo()";
constexpr char Configure[] = "NovaExtension.ConfigCenter.setValue({key: 'k', value: 1})";
constexpr char Account[] =
    "const A = NovaExtension.Account;\n"
    "const said = (m, ...a) => { try { return A[m](...a); } catch (e) { return e.code + e.msg; } };\n"
    "[...new Set(['isLoggedIn', 'getUserId', 'getUserInfo', 'getMemberInfo', 'getCompanyInfo',\n"
    "    'getAccountListInfo', 'isNovaMember', 'isFolioMember', 'isSuperMember', 'isCompanyMember',\n"
    "    'isMultiAccount'].map(m => said(m))), said('login', {}), said('logout'), said('upgradeMember')]";
constexpr char Log[] = "NovaExtension.Log.logInfo({moduleName: 'm', logStr: 's'})";

INSTANTIATE_TEST_SUITE_P(Eval, CommandLine,
    testing::Values(Case { "Number", eval("6 * 7"), 0, "^42\n$", "^$" },
        Case { "Promise", eval("Promise.resolve({a: [1n, null]})"), 0, "^\\{\"a\":\\[1,null\\]\\}\n$", "^$" },
        Case { "Undefined", eval("undefined"), 0, "^null\n$", "^$" },
        Case { "NullInJson", eval("NaN"), 0, "^null\n$", "^$" },
        Case { "TextUndefined", eval("'undefined'"), 0, "^\"undefined\"\n$", "^$" },
        Case { "Function", eval("() => 1"), 1, "^$", NoJsonForm },
        Case { "Symbol", eval("Symbol('undefined')"), 1, "^$", NoJsonForm },
        Case { "Cycle", eval("const a = {}; a.a = a; a"), 1, "^$", NoJsonForm },
        Case { "Throws", eval("null.x"), 1, "^$", "TypeError" },
        Case { "Refusal", eval("NovaExtension.Log.logInfo()"), 1, "^$",
            "missing required parameters\\.[\\s\\S]*code: 1" },
        Case { "SyntaxError", eval("1 +"), 1, "^$", "SyntaxError" },
        Case { "Exit", eval("exit(7)"), 7, "^$", "^$" },
        Case { "Traced", eval(Log, { QStringLiteral("--trace") }), 0, "success",
            "NovaExtension\\.Log\\.logInfo .* us  ok" },
        Case { "TracedFailure", eval("NovaExtension.Log.logInfo()", { QStringLiteral("--trace") }), 1, "^$",
            "failed: missing required parameters\\." },
        Case { "Denied",
            eval("typeof NovaExtension.Log.logInfo", { QStringLiteral("--deny"), QStringLiteral("0x40") }), 0,
            "^\"undefined\"\n$", "^$" },
        Case { "NotDenied",
            eval("typeof NovaExtension.Log.logInfo", { QStringLiteral("--deny"), QStringLiteral("0x80") }), 0,
            "^\"function\"\n$", "^$" }),
    [](const auto& info) { return info.param.name; });

INSTANTIATE_TEST_SUITE_P(Without, CommandLine,
    testing::Values(Case { "JsCore", without("jsCore", Log), 1, "", "Log.*80000008[\\s\\S]*code: 3" },
        Case {
            "PromiseService", without("promiseService", Md5), 1, "", "PromiseServiceNull[\\s\\S]*code: 3" },
        Case { "AnswerChannel", without("answerChannel", Md5), 1, "", "PromiseServiceNull[\\s\\S]*code: 3" },
        Case { "Logger", without("logger", Log), 0, "success", "^$" },
        Case { "AccountSdk", without("accountSdk", Account), 0,
            "^\\[(\"3Accountsdk is not initialized\\.\",?){4}\\]\n$", "^$" },
        Case { "CurrentAccount", without("currentAccount", Account), 0,
            "^\\[\"3Current account is not initialized\\.\",(\"1missing required parameters\\.\",?){3}\\]\n$",
            "^$" },
        Case { "AccountEvents", without("eventHubs", "NovaExtension.Account.addLoginListener(() => 1)"), 1,
            "", "Event service error\\.[\\s\\S]*code: 3" },
        Case { "EventHubs", without("eventHubs", Listen), 1, "", "Event service error\\.[\\s\\S]*code: 3" },
        Case {
            "ObjectFactory", without("objectFactory", Settings), 1, "", "empty handle\\.[\\s\\S]*code: 3" },
        Case { "Browsers", without("browsers", Trace), 1, "",
            "Browser is not in browser group\\.[\\s\\S]*code: 1" },
        Case { "BrowserGroups", without("browserGroups", Trace), 1, "",
            "Browser is not in browser group\\.[\\s\\S]*code: 1" },
        Case { "DataCollection", without("dataCollection", Post), 1, "", "kdcinfo error[\\s\\S]*code: 3" },
        Case { "ConfigCentre", without("configCentre", Configure), 0, "\"data\":false", "^$" },
        Case { "TraceHook", eval(Log, { QStringLiteral("--trace"), QStringLiteral("--without=traceHook") }),
            0, "success", "^$" },
        Case { "Several", without("eventHubs,dataCollection", Post), 1, "", "kdcinfo error" },
        Case { "Repeated",
            eval(Post,
                { QStringLiteral("--without"), QStringLiteral("dataCollection"), QStringLiteral("--without"),
                    QStringLiteral("eventHubs") }),
            1, "", "kdcinfo error" },
        Case { "Unknown", without("coffee", "1"), 2, "^$", "^novahost: --without.*coffee" }),
    [](const auto& info) { return info.param.name; });

INSTANTIATE_TEST_SUITE_P(Usage, CommandLine,
    testing::Values(Case { "NoCommand", {}, 2, "", "^novahost: .*subcommand" },
        Case { "NoSuchScript", { QStringLiteral("run"), QStringLiteral("no.js") }, 2, "",
            "^novahost: .*no\\.js" },
        Case { "NoSuchProfile", eval("1", { QStringLiteral("--profile"), QStringLiteral("no.json") }), 2, "",
            "^novahost: --profile.*no\\.json" },
        Case { "NoSuchObject", { QStringLiteral("members"), QStringLiteral("Nothing") }, 2, "^$",
            "^novahost: .*\"Nothing\"; .novahost members. lists all" },
        Case { "SimilarObjects", { QStringLiteral("members"), QStringLiteral("Setting") }, 2, "^$",
            "^novahost: .*\"Setting\"; there is .*SettingsManager, .*SettingsManager\\.Settings\n$" },
        Case { "ObjectByItsLastPart", { QStringLiteral("members"), QStringLiteral("Settings") }, 0,
            "^NovaExtension\\.SettingsManager\\.Settings  \\(handed out", "^$" },
        Case { "NoMask", eval("1", { QStringLiteral("--deny"), QStringLiteral("zz") }), 2, "^$",
            "^novahost: --deny: a mask is a number" },
        Case { "PlayedStep", eval("1", { QStringLiteral("--play"), QStringLiteral("logout,fly@5ms") }), 2,
            "^$", "^novahost: --play: fly@5ms: a step is " },
        Case { "PlayedUser", eval("1", { QStringLiteral("--play"), QStringLiteral("login:nobody") }), 2, "^$",
            "^novahost: --play: login:nobody: the profile has no user \"nobody\"" },
        Case { "PlayedTier", eval("1", { QStringLiteral("--play"), QStringLiteral("member:super") }), 2, "^$",
            "^novahost: --play: member:super: a membership is \"on\" or \"off\"" },
        Case { "MaskTooLarge", eval("1", { QStringLiteral("--deny"), QStringLiteral("0x100000000") }), 2,
            "^$", "^novahost: --deny: a mask is a number" },
        Case { "DataIsAFile", eval("1", { QStringLiteral("--data"), QStringLiteral("/etc/passwd") }), 2, "^$",
            "^novahost: --data.*/etc/passwd" },
        Case { "LibraryIsNone", eval("1", { QStringLiteral("--library"), QStringLiteral("/etc/passwd") }), 2,
            "^$", "^novahost: --library.*/etc/passwd" },
        Case { "LibraryOfSomethingElse",
            eval("1", { QStringLiteral("--library"), QStringLiteral(OTHER_LIBRARY) }), 2, "^$",
            "^novahost: --library .* has no GetNovaExtensionJsApiObj" },
        Case { "Tour", { QStringLiteral("run"), QStringLiteral(TOUR) }, 0,
            "9007199254740993[\\s\\S]*not supported\\.", "^$" }),
    [](const auto& info) { return info.param.name; });

struct ArgumentsCase {
    const char* name;
    const char* options; ///< separated by spaces; SCRIPT and PROFILE stand for files
    const char* seen;
};

class ScriptArguments : public testing::TestWithParam<ArgumentsCase> { };

TEST_P(ScriptArguments, AreTheWordsBehindTheFile)
{
    const QTemporaryDir place;
    QFile script(place.filePath(QStringLiteral("s.js")));
    ASSERT_TRUE(script.open(QIODevice::WriteOnly));
    script.write("console.log(process.argv.slice(2).join());\n");
    script.close();
    QFile profile(place.filePath(QStringLiteral("p.json")));
    ASSERT_TRUE(profile.open(QIODevice::WriteOnly) && profile.write("{}") == 2);
    profile.close();
    QStringList words = QString::fromLatin1(GetParam().options).split(QLatin1Char(' '));
    words.replaceInStrings(QStringLiteral("PROFILE"), profile.fileName());
    words.replaceInStrings(QStringLiteral("SCRIPT"), script.fileName());
    const Ended ended = novahost(words);
    EXPECT_EQ(ended.code, 0) << ended.errors.toStdString();
    EXPECT_EQ(ended.out.trimmed(), QLatin1String(GetParam().seen));
}

INSTANTIATE_TEST_SUITE_P(Run, ScriptArguments,
    testing::Values(ArgumentsCase { "Option", "run --without logger SCRIPT a --without b", "a,--without,b" },
        ArgumentsCase { "OptionWithEqualsSign", "run --without=logger SCRIPT a", "a" },
        ArgumentsCase { "OptionInFront", "--without logger,browsers run SCRIPT run", "run" },
        ArgumentsCase { "Flag", "run --trace SCRIPT --trace", "--trace" },
        ArgumentsCase { "Profile", "run --profile=PROFILE --deny 1 SCRIPT x", "x" },
        ArgumentsCase { "Help", "run SCRIPT -h --help", "-h,--help" },
        ArgumentsCase { "EndOfOptions", "run -- SCRIPT -x", "-x" },
        ArgumentsCase { "EndOfOptionsBehindTheFile", "run SCRIPT -- x", "--,x" },
        ArgumentsCase { "None", "run SCRIPT", "" }),
    [](const auto& info) { return info.param.name; });

TEST(Members, ListAllObjectsInTheirOrder)
{
    const Ended ended = novahost({ QStringLiteral("members"), QStringLiteral("--json") });
    const QJsonArray objects = QJsonDocument::fromJson(ended.out.toUtf8()).array();
    ASSERT_EQ(objects.size(), 35);
    EXPECT_EQ(objects[0].toObject()[QStringLiteral("object")], QStringLiteral("NovaExtension.Hive"));
    EXPECT_EQ(objects[27].toObject()[QStringLiteral("object")], QStringLiteral("NovaExtension.KContract"));
    EXPECT_EQ(objects[28].toObject()[QStringLiteral("mode")], 0);
    const QJsonObject settings = objects[15].toObject()[QStringLiteral("members")].toArray()[0].toObject();
    EXPECT_EQ(QJsonDocument(settings).toJson(QJsonDocument::Compact),
        QByteArray("{\"kind\":0,\"mask\":64,\"name\":\"settings\",\"params\":[{\"name\":null,\"type\":32772}]"
                   ",\"result\":13}"));
}

TEST(Repl, KeepsDeclarationsAndAwaits)
{
    const Ended ended = novahost({ QStringLiteral("repl") },
        "const a = 20\nlet b = a + 1; b\n{x: a}\nawait Promise.resolve(b * 2)\nnull.x\n\nexit(3)");
    EXPECT_EQ(ended.code, 3);
    EXPECT_TRUE(ended.out.contains(QRegularExpression(QStringLiteral("21\n.*x.*20.*\n42\n"))))
        << ended.out.toStdString();
    EXPECT_TRUE(ended.errors.contains(QStringLiteral("TypeError")));
}

TEST(Run, KeepsItsStateBelowTheDataDirectory)
{
    const QTemporaryDir data;
    QFile script(data.filePath(QStringLiteral("s.js")));
    ASSERT_TRUE(script.open(QIODevice::WriteOnly));
    script.write(
        "const s = NovaExtension.SettingsManager.settings({format: 0});\n"
        "console.log(process.argv.slice(2).join(), s.getValue({key: 'k', defaultValue: 'none'}).data);\n"
        "s.setValue({key: 'k', value: 'kept'});\n"
        "NovaExtension.Log.logInfo({moduleName: 'mod', logStr: 'two\\nlines'});\n"
        "NovaExtension.ConfigCenter.setValue({key: 'c', value: 1});\n"
        "setTimeout(() => null.boom, 5);\nawait new Promise(() => {});\n");
    script.close();
    for (const char* expected : { "--x,1 none\n", "--x,1 kept\n" }) {
        const Ended ended = novahost({ QStringLiteral("run"), QStringLiteral("--data"), data.path(),
            script.fileName(), QStringLiteral("--x"), QStringLiteral("1") });
        EXPECT_EQ(ended.out, QLatin1String(expected));
        EXPECT_EQ(ended.code, 1) << "an error in a timer ends the run";
        EXPECT_TRUE(ended.errors.contains(QRegularExpression(QStringLiteral("TypeError[\\s\\S]*s\\.js:6"))))
            << ended.errors.toStdString();
    }
    const auto content = [&](const char* file) {
        QFile state(data.filePath(QLatin1String(file)));
        return state.open(QIODevice::ReadOnly) ? state.readAll() : QByteArray();
    };
    EXPECT_EQ(content("logs/suite.log").count("mod"), 2);
    EXPECT_TRUE(content("config-centre.json").contains("\"c\""));
    EXPECT_TRUE(content("settings/Velmora/Office.conf").contains("Common\\plugins\\k=kept"));
}

} // namespace
