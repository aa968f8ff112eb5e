// What a signal leaves behind.
#include "tests/cli/novahost.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <csignal>
#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr int PatienceMs = 60000;

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

QString writtenScript(const QTemporaryDir& place, const char* source)
{
    QFile script(place.filePath(QStringLiteral("script.js")));
    EXPECT_TRUE(script.open(QIODevice::WriteOnly));
    script.write(source);
    return script.fileName();
}

struct Case {
    const char* name;
    QStringList arguments; ///< SCRIPT and DATA stand for their paths
    int number;
};

void PrintTo(const Case& row, std::ostream* stream)
{
    *stream << row.name;
}

class Signal : public testing::TestWithParam<Case> { };

TEST_P(Signal, EndsInOrder)
{
    const QTemporaryDir place;
    const QTemporaryDir temporary;
    const QString data = place.filePath(QStringLiteral("data"));
    QStringList arguments = GetParam().arguments;
    arguments.replaceInStrings(QStringLiteral("DATA"), data);
    arguments.replaceInStrings(QStringLiteral("SCRIPT"),
        writtenScript(place,
            "NovaExtension.ConfigCenter.setValue({key: 'pending', value: 1});\n"
            "NovaExtension.Log.logInfo({moduleName: 'm', logStr: 's'});\n"
            "console.log('ready');\nawait new Promise(() => {});\n"));
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("TMPDIR"), temporary.path());
    environment.remove(QStringLiteral("XDG_RUNTIME_DIR"));
    process.setProcessEnvironment(environment);
    startReady(process, arguments, "console.log('ready')\n");
    const bool keepsData = arguments.contains(QStringLiteral("--data"));
    EXPECT_EQ(QDir(temporary.path()).entryList({ QStringLiteral("novasuite-*") }).size(), keepsData ? 0 : 1);
    sendSignal(process, GetParam().number);
    const Ended ended = endOf(process);
    EXPECT_EQ(ended.code, 128 + GetParam().number);
    EXPECT_EQ(ended.errors, QString());
    EXPECT_EQ(QDir(temporary.path()).entryList({ QStringLiteral("novasuite-*") }), QStringList());
    if (keepsData) {
        QFile centre(data + QStringLiteral("/config-centre.json"));
        ASSERT_TRUE(centre.open(QIODevice::ReadOnly));
        EXPECT_TRUE(centre.readAll().contains("pending"));
    }
}

QStringList words(const char* line)
{
    return QString::fromLatin1(line).split(QLatin1Char(' '));
}

INSTANTIATE_TEST_SUITE_P(Run, Signal,
    testing::Values(Case { "Terminate", words("run SCRIPT"), SIGTERM },
        Case { "Interrupt", words("run SCRIPT"), SIGINT }, Case { "HangUp", words("run SCRIPT"), SIGHUP },
        Case { "PendingWrites", words("run --data DATA SCRIPT"), SIGTERM },
        Case { "ReplOfLines", words("repl"), SIGTERM }),
    [](const auto& info) { return info.param.name; });

TEST(EndlessLoop, IsEndedByTheSecondSignal)
{
    const QTemporaryDir place;
    QProcess process;
    startReady(process,
        { QStringLiteral("run"), QStringLiteral("--data"), place.path(),
            writtenScript(place, "console.log('ready');\nfor (;;);\n") });
    sendSignal(process, SIGINT);
    EXPECT_FALSE(process.waitForFinished(300));
    sendSignal(process, SIGTERM);
    ASSERT_TRUE(process.waitForFinished(PatienceMs));
    EXPECT_EQ(process.exitStatus(), QProcess::CrashExit);
    EXPECT_EQ(process.exitCode(), SIGTERM);
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
    const QStringList keeping { QStringLiteral("--data"), place.filePath(QStringLiteral("data")) };
    QProcess process;
    startReady(process,
        keeping
            + QStringList { QStringLiteral("--play"), QStringLiteral("logout,login:user-2"),
                QStringLiteral("run"),
                writtenScript(place,
                    "const { Account } = NovaExtension;\nconst leave = new Promise((done) => {\n"
                    "    Account.addLogoutListener((e) => console.log(`${e.userId} left`));\n"
                    "    Account.addLoginListener((e) => done(`${e.userId} came`)); });\n"
                    "console.log('ready');\nconsole.log(await leave);\n") });
    sendSignal(process, SIGUSR2);
    ASSERT_TRUE(process.waitForReadyRead(PatienceMs));
    EXPECT_EQ(process.readAllStandardOutput(), "user-1 left\n");
    sendSignal(process, SIGUSR2);
    EXPECT_EQ(endOf(process).out, QStringLiteral("user-2 came\n"));
    EXPECT_EQ(novahost(keeping
                  + QStringList { QStringLiteral("eval"),
                      QStringLiteral("NovaExtension.Account.getUserId().data") })
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
        timer.start();
        while (!shown.contains(end) && timer.elapsed() < PatienceMs) {
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

    terminal.type("await new Promise(done => setTimeout(() => done('la' + 'te'), 500))\n");
    terminal.shownUntil("500))\r\n");
    terminal.type("\x03");
    terminal.shownUntil("nova> ");
    terminal.type("await new Promise(done => setTimeout(() => done('in ' + 'time'), 800))\n");
    const QByteArray second = terminal.shownUntil("\nnova> ");
    EXPECT_TRUE(second.endsWith("\r\nin time\r\nnova> ")) << second.constData();
    EXPECT_FALSE(second.contains("late")) << second.constData();

    terminal.type("exit(5)\n");
    EXPECT_EQ(terminal.exitCode(), 5);
    QFile history(data.filePath(QStringLiteral("repl-history")));
    ASSERT_TRUE(history.open(QIODevice::ReadOnly));
    const QByteArray kept = history.readAll();
    EXPECT_TRUE(kept.contains("exit(5)")) << kept.constData();
    EXPECT_FALSE(kept.contains("boom"));
}

} // namespace
