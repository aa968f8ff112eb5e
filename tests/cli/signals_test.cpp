// What a signal leaves behind.
#include "tests/cli/novahost.h"

#include <QDir>
#include <csignal>
#include <unistd.h>

namespace {

void sendSignal(const QProcess& process, int number)
{
    kill(static_cast<pid_t>(process.processId()), number);
}

/// Starts it, with something for its standard input, and returns when it has printed "ready".
void startReady(QProcess& process, const QStringList& arguments, const char* input = "")
{
    process.start(QStringLiteral(NOVAHOST), arguments);
    process.write(input);
    ASSERT_TRUE(process.waitForReadyRead(PatienceMs)) << process.readAllStandardError().toStdString();
    ASSERT_TRUE(process.readAllStandardOutput().startsWith("ready"));
}

TEST(Signals, EndARunInOrder)
{
    for (const auto& [line, number] : { std::pair("run SCRIPT", SIGTERM), std::pair("run SCRIPT", SIGHUP),
             std::pair("run --data DATA SCRIPT", SIGTERM), std::pair("repl", SIGTERM),
             std::pair("repl", SIGINT) }) {
        SCOPED_TRACE(std::string(line) + ", signal " + std::to_string(number));
        const QTemporaryDir place;
        const QTemporaryDir temporary;
        writeFile(place, "script.js",
            "NovaExtension.ConfigCenter.setValue({key: 'pending', value: 1});\n"
            "NovaExtension.Log.logInfo({moduleName: 'm', logStr: 's'});\n"
            "NovaExtension.Account.addLoginListener(() => {});\n"
            "console.log('ready');\nawait new Promise(() => {});\n");
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("TMPDIR"), temporary.path());
        environment.remove(QStringLiteral("XDG_RUNTIME_DIR"));
        process.setProcessEnvironment(environment);
        startReady(process, wordsOf(QLatin1String(line), place), "console.log('ready')\n");
        const bool keepsData = QFile::exists(place.filePath(QStringLiteral("data")));
        const auto suites = [&] {
            return QDir(temporary.path()).entryList({ QStringLiteral("novasuite-*") });
        };
        EXPECT_EQ(suites().isEmpty(), keepsData);
        sendSignal(process, number);
        const Ended ended = endOf(process);
        EXPECT_EQ(ended.code, 128 + number);
        EXPECT_EQ(ended.errors, QString());
        EXPECT_EQ(suites(), QStringList());
        EXPECT_EQ(readFile(place, "data/config-centre.json").contains("pending"), keepsData);
    }
}

TEST(Start, LeavesIgnoredSignalsIgnored)
{
    QProcess process;
    process.start(QStringLiteral("/bin/sh"),
        { QStringLiteral("-c"), QStringLiteral("trap '' HUP; exec \"$0\" repl"), QStringLiteral(NOVAHOST) });
    process.write("console.log('ready')\n");
    ASSERT_TRUE(process.waitForReadyRead(PatienceMs));
    sendSignal(process, SIGHUP);
    process.write("exit(7)\n");
    EXPECT_EQ(endOf(process).code, 7);
}

TEST(Play, GoesOnAtEachSignalAndLastsBeyondTheProcess)
{
    const QTemporaryDir place;
    writeFile(place, "script.js",
        "const { Account } = NovaExtension;\nconst leave = new Promise((done) => {\n"
        "    Account.addLogoutListener((e) => console.log(`${e.userId} left`));\n"
        "    Account.addLoginListener((e) => done(`${e.userId} came`)); });\n"
        "console.log('ready');\nconsole.log(await leave);\n");
    QProcess process;
    startReady(process, wordsOf(QStringLiteral("--data DATA --play logout,login:user-2 run SCRIPT"), place));
    sendSignal(process, SIGUSR2);
    ASSERT_TRUE(process.waitForReadyRead(PatienceMs));
    EXPECT_EQ(process.readAllStandardOutput(), "user-1 left\n");
    sendSignal(process, SIGUSR2);
    EXPECT_EQ(endOf(process).out, QStringLiteral("user-2 came\n"));
    EXPECT_EQ(
        novahost(wordsOf(QStringLiteral("--data DATA eval NovaExtension.Account.getUserId().data"), place))
            .out,
        QStringLiteral("\"user-2\"\n"));
}

} // namespace
