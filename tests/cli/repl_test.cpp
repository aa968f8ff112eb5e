// The prompt of novahost, at a terminal and at the end of a pipe.
#include "tests/cli/novahost.h"
#include "tests/services/rows.h"

#include <QElapsedTimer>
#include <QRegularExpression>
#include <csignal>
#include <poll.h>
#include <pty.h>
#include <sys/stat.h>
#include <sys/wait.h>

namespace {

class Inputs : public testing::TestWithParam<Row> { };

// The last line that is printed, and a regular expression of the errors.
TEST_P(Inputs, AreUnderstood)
{
    const QTemporaryDir place;
    writeFile(place, "script.js", "const loaded = await 9;\nfunction twice(n) { return 2 * n }\n");
    const bool inBrowser = GetParam().name.ends_with("InBrowser");
    if (inBrowser)
        setUpBrowser();
    QString input = GetParam().given.trimmed();
    input.replace(QLatin1String(" ;; "), QLatin1String("\n"))
        .replace(QLatin1String("SCRIPT"), place.filePath(QStringLiteral("script.js")));
    const Ended ended =
        novahost(wordsOf(inBrowser ? QStringLiteral("repl --browser") : QStringLiteral("repl"), place),
            input.toUtf8());
    const QString last = ended.out.section(QLatin1Char('\n'), -2, -2);
    EXPECT_EQ(last, GetParam().expected.section(QLatin1String("||"), 0, 0).trimmed());
    const QString errors = GetParam().expected.section(QLatin1String("||"), 1).trimmed();
    EXPECT_TRUE(errors.isEmpty() ? ended.errors.isEmpty() : ended.errors.contains(QRegularExpression(errors)))
        << ended.errors.toStdString();
    EXPECT_EQ(ended.code, errors.isEmpty() ? 0 : 1);
}

constexpr char Table[] = R"js(
Redeclared: const a = 1 ;; let a = 2 ;; const [a] = [3] ;; class a { } ;; function a() { return 4 } ;; var a = a() + 1 ;; a -> 5
ConstantStays: const k = 1 ;; k = 2 ;; for (const k of [7]) { } ;; k -> 1 || k is a constant
FailedDeclaration: let t = null.x ;; t = 4 -> 4 || null
AwaitedDeclarations: const x = await 5, { y: [z = 1] } = await { y: [] }; let w = x + z ;; w -> 6
AwaitAmongStatements: for (var i of await [1, 2]) { var last = i } ;; [i, last].join() -> '2,2'
AwaitInText: 'await' -> 'await'
Object: { a: 1, b: { c: 2 } }; ;; _.b.c -> 2
Block: { let x = 1; x + 1 } -> 2
SeveralLines: function f(n) {
  return [n,
    `a
    b`].length
 } ;; f(1) -> 2
LastResult: Promise.resolve(42) ;; _ + 1 -> 43
LastError: null.x ;; _error.name -> 'TypeError' || null
OwnUnderscore: let _ = 5 ;; 6 ;; _ -> 5
Places: 7 ;; function ff(x) { null.q } ;; await 1; let z = ff(); -> undefined || null\.q }\n +\^\n[^^]*at ff \(repl2:1:23\)\n    at repl3:1:18$
PlaceOfARead: 7 ;; const P = NovaExtension.Product; P.language(); const { languge } = P; null.q -> 7 || no languge; did you mean language\? \(repl2:1:56\)
PlacesInAFile: .load SCRIPT ;; twice(1n) -> undefined || at twice \(/[^\n]*script\.js:2:(28|30)\)
File: .load SCRIPT ;; twice(loaded) -> 18
TypeOfExpression: const { FileSystem: fs } = NovaExtension, home = fs.homePath() ;; .type home.data -> string
TypeOfMember: .type filesystem.copy -> FileSystem.copy(options: CopyOptions): Answer<boolean>
UnknownCommand: 1 ;; .hlp -> 1 || did you mean \.help\?
NoScript: 1 ;; 1 +* 2 -> 1 || SyntaxError
UnfinishedAtTheEnd: 1 ;; f( -> 1 || SyntaxError
)js";

std::vector<Row> tableInBrowser()
{
    std::vector<Row> all = rows(Table);
    for (Row& row : all)
        row.name += "InBrowser";
    return all;
}

INSTANTIATE_TEST_SUITE_P(Repl, Inputs, testing::ValuesIn(rows(Table)), rowName);
INSTANTIATE_TEST_SUITE_P(ReplOf, Inputs, testing::ValuesIn(tableInBrowser()), rowName);

/// novahost on a terminal of its own.
class Terminal {
public:
    explicit Terminal(const QString& state)
    {
        const QByteArray directory = QFile::encodeName(state);
        const winsize wide { 24, 200, 0, 0 };
        m_process = forkpty(&m_terminal, nullptr, nullptr, &wide);
        if (m_process == 0) {
            setenv("TERM", "dumb", 1);
            setenv("XDG_STATE_HOME", directory.constData(), 1);
            execl(NOVAHOST, NOVAHOST, "repl", nullptr);
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

struct Typed {
    const char* keys;
    const char* shown; ///< behind them
};

TEST(Repl, CompletesAndEditsAtATerminal)
{
    const QTemporaryDir state;
    Terminal terminal(state.path());
    if (!terminal.isOpen())
        GTEST_SKIP() << "no terminal to be had here";
    terminal.shownUntil("nova> ");
    for (const Typed& typed : std::initializer_list<Typed> {
             { "const { Log: log } = NovaExtension, list = [{ within: 7 }]\n", "nova> " },
             { "log.logI\t", "logInfo" },
             { "(\t", "Log.logInfo(options: LogRecord): Answer<undefined>\r\nnova> log.logInfo(" },
             { "{ mo\t", "moduleName: " },
             { "'m', \t", "logStr: " },
             { "'s' }).d\t\n", ".data\r\nundefined\r\n" },
             { "list[0].w\t\n", "within\r\n7\r\n" },
             { "NovaExtension.Tools.showConfirmDlg({ type: 'qu\t", "'question'" },
             { "\x03", "nova> " },
             { "\x7f\x1b[D\t", "NovaExtension" },
             { "(() => { const other = 8; return oth\t })()\n", "other })()\r\n8\r\n" },
             { ".ed\t", "itor" },
             { "\n", "drops it.\r\n" },
             { "[1,\n2]\n", "2]\r\n" },
             { "\x04", "[ 1, 2 ]\r\n" },
             { "list.length = [\n", "... " },
             { "5].length\n", "\n1\r\n" },
             { "\x1b[200~const q = [1,\n  2]\nq.length\n\x1b[201~",
                 "nova> const q = [1,\r\n...   2]\r\n... q.length" },
             { "\n", "\n2\r\nnova> " },
             { "setTimeout(() => console.log('ti' + 'ck'), 50); let typed = 5\n", "tick\r\nnova> " },
             { "typed + 1\n", "\n6\r\nnova> " },
         }) {
        SCOPED_TRACE(typed.keys);
        terminal.type(typed.keys);
        terminal.shownUntil(typed.shown);
    }
    terminal.type(".exit\n");
    EXPECT_EQ(terminal.exitCode(), 0);

    // What was pasted is one input for later sessions.
    struct stat history { };
    ASSERT_EQ(stat(QFile::encodeName(state.filePath(QStringLiteral("novahost/repl-history"))).constData(),
                  &history),
        0);
    EXPECT_EQ(history.st_mode & 0777, 0600U);
    Terminal next(state.path());
    next.shownUntil("nova> ");
    next.type("\x1b[A\x1b[A\x1b[A\x1b[A\n");
    next.shownUntil("\n2\r\nnova> ");
}

TEST(Repl, DropsTheLineOrTheAnswerAtAnInterrupt)
{
    const QTemporaryDir state;
    Terminal terminal(state.path());
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
    EXPECT_TRUE(second.endsWith("\r\n'in time'\r\nnova> ")) << second.constData();
    EXPECT_FALSE(second.contains("late")) << second.constData();

    terminal.type("exit(5)\n");
    EXPECT_EQ(terminal.exitCode(), 5);
    const QByteArray kept = readFile(state, "novahost/repl-history");
    EXPECT_TRUE(kept.contains("exit(5)")) << kept.constData();
    EXPECT_FALSE(kept.contains("boom"));
}

} // namespace
