// What keeps a script's page, what is said of it, and what ends it all the same.
#include "tests/cli/novahost.h"

#include <QDir>
#include <QRegularExpression>
#include <QTcpServer>
#include <csignal>

namespace {

struct EndCase {
    const char* name;
    const char* line;         ///< of the command
    const char* script;       ///< prints "ready" when a signal is to come
    std::vector<int> numbers; ///< of the signals
    int code;
    const char* out;     ///< a regular expression; what follows "ready"
    const char* errors;  ///< the same
    bool isBare = false; ///< in the script engine alone
};

constexpr char Profile[] =
    R"({"policy": [{"origin": "nova://*", "allow": ["*"], "permissions": ["usual", "reachPrivateNetwork:127.0.0.0/8"]}]})";

const EndCase Cases[] = {
    { "Timers", "run SCRIPT",
        "setTimeout(() => setTimeout(() => console.log('second'), 20), 20);"
        " const i = setInterval(() => clearInterval(i), 5); clearTimeout(setTimeout(() => {}, 60000));",
        {}, 0, "^second\n$", "^$" },
    { "EvalGoesOn", "eval \"setTimeout(() => console.log('later'), 20), 5\"", "", {}, 0, "^5\nlater\n$",
        "^$" },
    { "Promise", "run SCRIPT",
        "NovaExtension.FileSystem.getFileMd5('/etc/passwd').then((text) => { setTimeout(() => console.log(text), 5); });",
        {}, 0, "^[0-9a-f]{32}\n$", "^$" },
    { "Errors", "run SCRIPT",
        "NovaExtension.Account.addLogoutListener(() => { throw new Error('heard'); });\n"
        "setTimeout(() => { throw new Error('timed'); }, 5); Promise.reject(new Error('rejected'));\n"
        "setTimeout(() => { process.play('logout'); setTimeout(() => console.log('end'), 50); }, 20);",
        {}, 1, "^end\n$", "rejected[\\s\\S]*timed[\\s\\S]*heard" },
    { "ExitCode", "run SCRIPT", "process.exitCode = 3; setTimeout(() => { process.exitCode = 9; }, 5);", {},
        9, "^$", "^$" },
    { "Listeners", "run SCRIPT",
        "NovaExtension.Event.addEventListener('\\x1b[2J', () => {}); NovaExtension.Hive.addDataWatch({ key: 'k' }, () => {});",
        {}, 0, "^$",
        "^hint: ended with watch of Hive\\.addDataWatch, listener of \\\\u001b\\[2J; --keep waits for events\n$" },
    { "OwnPlay", "run SCRIPT",
        "NovaExtension.Account.addLoginListener(({ userId }) => console.log(userId));"
        " process.play('logout,login:user-2@100ms');",
        {}, 0, "^user-2\n$", "^$" },
    { "PlayOfTheCommandLine", "--play logout@20ms,login:user-2@100ms run SCRIPT",
        "NovaExtension.Account.addLoginListener(({ userId }) => console.log(userId));", {}, 0, "^user-2\n$",
        "^$" },
    { "Body", "run SCRIPT",
        "setTimeout(() => console.log('ran'), 1); const began = Date.now(); while (Date.now() < began + 20); null.boom;",
        {}, 1, "^$", "TypeError[\\s\\S]*\nnovahost: left undone at the script's error: timer\n$" },
    { "Exit", "run SCRIPT", "setInterval(() => {}, 1000); setTimeout(() => {}, 60000); exit(4);", {}, 4, "^$",
        "^novahost: left undone at exit\\(4\\): timer \\(2\\)\n$" },
    { "NothingSettles", "run SCRIPT", "console.log('on'); await new Promise(() => {});", {}, 1, "^on\n$",
        "^novahost: the script awaits a promise that nothing is left to settle\n$", true },
    { "TimeLimit", "--time-limit 0.3 run SCRIPT", "for (;;) NovaExtension.Product.language();", {}, 1, "^$",
        "^novahost: script has run for 0\\.3 s [^\n]*\\(--time-limit\\)\n$" },
    { "InterruptedTwice", "--profile PROFILE --keep run SCRIPT",
        "const url = 'http://127.0.0.1:PORT/'; const { Network, Account } = NovaExtension; setTimeout(() => {}, 60000);\n"
        "Network.fetch({ url }); Network.fetch({ url }); Network.httpRequest({ url }, () => {});\n"
        "Account.addLoginListener(() => {}); console.log('ready');",
        { SIGINT, SIGINT }, 128 + SIGINT, "^$",
        "^novahost: waiting for timer, promise of Network\\.fetch \\(2\\) since [0-9.]+ s, function given to "
        "Network\\.httpRequest since [0-9.]+ s, listener of event\\.account\\.login; Ctrl-C again ends\n$" },
    { "TerminatedWhileATimerIsPending", "run SCRIPT", "setTimeout(() => {}, 60000); console.log('ready');",
        { SIGTERM }, 128 + SIGTERM, "^$", "^novahost: left undone at the signal: timer\n$" },
    { "LoopInterruptedTwice", "run SCRIPT", "console.log('ready'); for (;;);", { SIGINT, SIGINT },
        128 + SIGINT, "^$", "^novahost: waiting for [^\n]*; Ctrl-C again ends\n$" },
    { "LoopTerminated", "run SCRIPT", "console.log('ready'); setTimeout(() => { for (;;); }, 0);",
        { SIGTERM }, 128 + SIGTERM, "^$", "" },
    { "TimeLimitOfAwaits", "--time-limit 0.3 run SCRIPT",
        "(async () => { for (;;) await null; })(); for (;;) await null;", {}, 1, "^$",
        "^novahost: script has run for 0\\.3 s [^\n]*\\(--time-limit\\)\n$" },
    { "LoopOfAwaitsTerminated", "run SCRIPT", "console.log('ready'); for (;;) await null;", { SIGTERM },
        128 + SIGTERM, "^$", "^$" },
};

void expectEnd(const EndCase& expected, bool inBrowser)
{
    const QTemporaryDir place;
    const QTemporaryDir temporary;
    QTcpServer silent; // the system accepts, and nobody sends anything
    silent.listen(QHostAddress::LocalHost);
    writeFile(place, "profile.json", Profile);
    writeFile(place, "script.js",
        QByteArray(expected.script).replace("PORT", QByteArray::number(silent.serverPort())).constData());
    QStringList words = wordsOf(QLatin1String(expected.line), place);
    if (inBrowser)
        words.prepend(QStringLiteral("--browser"));
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("TMPDIR"), temporary.path());
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(NOVAHOST), words);
    if (!expected.numbers.empty()) {
        ASSERT_TRUE(process.waitForReadyRead(PatienceMs)) << process.readAllStandardError().toStdString();
        ASSERT_EQ(process.readAllStandardOutput(), "ready\n");
    }
    for (std::size_t i = 0; i < expected.numbers.size(); ++i) {
        // The second one when the first has been heard.
        if (i > 0) {
            process.setReadChannel(QProcess::StandardError);
            ASSERT_TRUE(process.waitForReadyRead(PatienceMs));
        }
        kill(static_cast<pid_t>(process.processId()), expected.numbers[i]);
    }
    ASSERT_TRUE(process.waitForFinished(PatienceMs));
    const bool isKilled = process.exitStatus() == QProcess::CrashExit;
    EXPECT_EQ(process.exitCode() + (isKilled ? 128 : 0), expected.code);
    for (const auto& [text, pattern] : { std::pair(process.readAllStandardOutput(), expected.out),
             std::pair(process.readAllStandardError(), expected.errors) })
        EXPECT_TRUE(QString::fromUtf8(text).contains(QRegularExpression(QLatin1String(pattern))))
            << text.constData() << "\nis not " << pattern;
    EXPECT_EQ(QDir(temporary.path()).entryList({ QStringLiteral("novasuite-*") }), QStringList());
}

TEST(Ends, AsItShould)
{
    for (const EndCase& one : Cases) {
        SCOPED_TRACE(one.name);
        expectEnd(one, false);
    }
}

TEST(Ends, AsItShouldInBrowser)
{
    setUpBrowser();
    for (const EndCase& one : Cases) {
        SCOPED_TRACE(one.name);
        if (!one.isBare)
            expectEnd(one, true);
    }
}

} // namespace
