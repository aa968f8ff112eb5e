// What a signal leaves behind.
#include "tests/cli/novahost.h"

#include <QDir>
#include <QElapsedTimer>
#include <csignal>
#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
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

/// novahost on a terminal of its own.
class Terminal {
public:
    explicit Terminal(const QString& data)
    {
        const QByteArray directory = QFile::encodeName(data);
        const winsize wide { 24, 200, 0, 0 };
        m_process = forkpty(&m_terminal, nullptr, nullptr, &wide);
        if (m_process == 0) {
            setenv("TERM", "dumb", 1);
            execl(NOVAHOST, NOVAHOST, "repl", "--data", directory.constData(), nullptr);
            _exit(127);
        }
    }
    ~Terminal()
    {
        if (m_process > 0)
            kill(m_process, SIGKILL);
        close(m_terminal);
    }
    /// Whether the machine has terminals to give.
    bool isOpen() const { return m_process > 0; }

    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    void type(const char* keys) { ASSERT_EQ(write(m_terminal, keys, qstrlen(keys)), qstrlen(keys)); }

    /// What has been shown since the last call, up to `end`.
    QByteArray shownUntil(const char* end)
    {
        QByteArray shown;
        QElapsedTimer timer;
        for (timer.start(); !shown.contains(end) && timer.elapsed() < PatienceMs;) {
            pollfd wait { m_terminal, POLLIN, 0 };
            char bytes[1024];
            const ssize_t count = poll(&wait, 1, 100) > 0 ? read(m_terminal, bytes, sizeof bytes) : 0;
            if (count < 0)
                break;
            shown.append(bytes, static_cast<int>(count));
        }
        EXPECT_TRUE(shown.contains(end)) << end << " was not shown but " << shown.constData();
        return shown;
    }

    int exitCode()
    {
        int status = -1;
        waitpid(m_process, &status, 0);
        m_process = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

private:
    int m_terminal = -1;
    pid_t m_process = -1;
};

TEST(Repl, DropsTheLineOrTheAnswerAtAnInterrupt)
{
    const QTemporaryDir data;
    Terminal terminal(data.path());
    if (!terminal.isOpen())
        GTEST_SKIP() << "no terminal to be had here";
    terminal.shownUntil("nova> ");
    terminal.type("null.boom");
    terminal.shownUntil("boom");
    terminal.type("\x03");
    terminal.shownUntil("nova> ");
    terminal.type("6 * 7\n");
    const QByteArray answer = terminal.shownUntil("\nnova> ");
    EXPECT_TRUE(answer.endsWith("\n42\r\nnova> ")) << answer.constData();

    // The first promise settles while the second one is awaited.
    terminal.type("await new Promise(done => globalThis.settle = done)\n");
    terminal.shownUntil("= done)\r\n");
    terminal.type("\x03");
    terminal.shownUntil("nova> ");
    terminal.type(
        "await new Promise(done => { settle('la' + 'te'); setTimeout(() => done('in ' + 'time'), 50) })\n");
    const QByteArray second = terminal.shownUntil("\nnova> ");
    EXPECT_TRUE(second.endsWith("\r\nin time\r\nnova> ")) << second.constData();
    EXPECT_FALSE(second.contains("late")) << second.constData();

    terminal.type("exit(5)\n");
    EXPECT_EQ(terminal.exitCode(), 5);
    const QByteArray kept = readFile(data, "repl-history");
    EXPECT_TRUE(kept.contains("exit(5)")) << kept.constData();
    EXPECT_FALSE(kept.contains("boom"));
}

} // namespace
