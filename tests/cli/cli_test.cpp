// novahost as a person or a program starts it.
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

struct Ended {
    int code;
    QString out;
    QString errors;
};

Ended novahost(const QStringList& arguments, const QByteArray& input = {})
{
    QProcess process;
    process.start(QStringLiteral(NOVAHOST), arguments);
    process.write(input);
    process.closeWriteChannel();
    EXPECT_TRUE(process.waitForFinished(60000));
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    return { process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
        QString::fromUtf8(process.readAllStandardError()) };
}

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

constexpr char Settings[] = "NovaExtension.SettingsManager.settings({format: 0})";
constexpr char Listen[] = "NovaExtension.Event.addEventListener('e', () => 1)";
constexpr char Md5[] = "NovaExtension.FileSystem.getFileMd5('/etc/passwd')";
constexpr char Post[] = "NovaExtension.TelemetrySdk.postEvent({eventName: 'e', postContent: {a: 'b'}})";
constexpr char Trace[] = "NovaExtension.Profile.getBrowserTraceInfo()";
constexpr char Configure[] = "NovaExtension.ConfigCenter.setValue({key: 'k', value: 1})";
constexpr char Log[] = "NovaExtension.Log.logInfo({moduleName: 'm', logStr: 's'})";

INSTANTIATE_TEST_SUITE_P(Eval, CommandLine,
    testing::Values(Case { "Number", eval("6 * 7"), 0, "^42\n$", "^$" },
        Case { "Promise", eval("Promise.resolve({a: [1n, null]})"), 0, "^\\{\"a\":\\[1,null\\]\\}\n$", "^$" },
        Case { "NoJsonForm", eval("undefined"), 0, "^null\n$", "^$" },
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
        Case { "Unknown", without("coffee", "1"), 2, "^$", "--without.*coffee" }),
    [](const auto& info) { return info.param.name; });

INSTANTIATE_TEST_SUITE_P(Usage, CommandLine,
    testing::Values(Case { "NoCommand", {}, 2, "", "subcommand" },
        Case { "NoSuchScript", { QStringLiteral("run"), QStringLiteral("no.js") }, 2, "", "no\\.js" },
        Case { "NoSuchProfile", eval("1", { QStringLiteral("--profile"), QStringLiteral("no.json") }), 2, "",
            "--profile.*no\\.json" },
        Case { "NoSuchObject", { QStringLiteral("members"), QStringLiteral("Nothing") }, 1, "^$",
            "\"Nothing\"" },
        Case { "DataIsAFile", eval("1", { QStringLiteral("--data"), QStringLiteral("/etc/passwd") }), 2, "^$",
            "--data.*/etc/passwd" },
        Case { "LibraryIsNone", eval("1", { QStringLiteral("--library"), QStringLiteral("/etc/passwd") }), 2,
            "^$", "--library.*/etc/passwd" },
        Case { "Tour", { QStringLiteral("run"), QStringLiteral(TOUR) }, 0,
            "9007199254740993[\\s\\S]*not supported\\.", "^$" }),
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
        "const a = 20\nlet b = a + 1; b\n{x: a}\nawait Promise.resolve(b * 2)\nnull.x\nexit(3)\n");
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
