#include "host/novahost/repl.h"

#include "host/novahost/description.h"
#include "host/novahost/linereader.h"
#include "host/novahost/output.h"
#include "host/profile/directories.h"

#include <QCoreApplication>
#include <QDir>
#include <QRegularExpression>
#include <QSocketNotifier>
#include <editline/readline.h>
#include <unistd.h>

namespace novahost {

namespace {

constexpr char Prompt[] = "nova> ";
constexpr int HistoryLength = 1000;

constexpr char Help[] = ".help NAME         what an object is for, and its members: .help FileSystem\n"
                        ".help NAME.MEMBER  what a member does, takes and returns: .help FileSystem.copy\n"
                        "exit()             ends; so does the end of input\n"
                        "Tab completes names, and shows the signature of a member behind its \"(\".";

/// What the line ".help [NAME]" prints; nothing for other lines.
QStringList helpFor(const QString& line)
{
    static const QRegularExpression form(QStringLiteral("^\\s*\\.help(?:\\s+([\\w.]+))?\\s*$"));
    const auto match = form.match(line);
    if (!match.hasMatch())
        return {};
    const QString name = match.captured(1);
    if (name.isEmpty())
        return { QString::fromLatin1(Help) };
    const Description& description = Description::builtIn();
    QStringList lines;
    for (const Json& object : description.objects()) {
        if (isNamed(Description::fullName(object), name, Qt::CaseInsensitive))
            lines += Description::overview(object);
    }
    if (const auto member = description.member(name))
        lines += Description::documentation(*member);
    return lines.isEmpty()
        ? QStringList { QString::fromLatin1("There is no %1; .help shows how to ask.").arg(name) }
        : lines;
}

/// The path that a text ends with, such as "FileSystem.co".
QString pathAtEndOf(const QString& text)
{
    int start = text.size();
    while (
        start > 0 && (text[start - 1].isLetterOrNumber() || QStringLiteral("._$").contains(text[start - 1])))
        --start;
    return text.mid(start);
}

/// The signature of the member that a page writes so; empty for anything else.
QString signatureOf(const QString& path)
{
    const auto member = Description::builtIn().member(path, Qt::CaseSensitive);
    return member ? Description::signature(*member) : QString();
}

/// One session: reads a line, evaluates it, prints, reads the next. Timers and listeners run meanwhile.
class Session {
public:
    Session(Suite& suite, const Options& options, Signals& signals)
        : m_page(suite.openPage(options.arguments, host()))
        , m_signals(signals)
        , m_interactive(isatty(STDIN_FILENO))
        , m_historyFile(QDir(profile::dataDirectory()).filePath(QStringLiteral("repl-history")).toLocal8Bit())
    {
        s_current = this;
    }

    int run()
    {
        const int code = m_interactive ? runOnTerminal() : runOnLines();
        m_page.reset();
        s_current = nullptr;
        return m_failed && !m_interactive && code == 0 ? 1 : code;
    }

private:
    int runOnTerminal()
    {
        using_history();
        stifle_history(HistoryLength);
        read_history(m_historyFile.constData());
        rl_catch_signals = 0;
        rl_attempted_completion_function = complete;
        rl_completion_append_character = '\0';
        m_keys.emplace(STDIN_FILENO, QSocketNotifier::Read);
        QObject::connect(&*m_keys, &QSocketNotifier::activated, [] { rl_callback_read_char(); });
        m_signals.setInterrupt([this] { startAfresh(); });
        prompt();
        const int code = QCoreApplication::exec();
        m_signals.setInterrupt({});
        rl_callback_handler_remove();
        write_history(m_historyFile.constData());
        return code;
    }

    int runOnLines()
    {
        m_lines.emplace([this](const QString& line) { evaluate(line); }, [] { QCoreApplication::exit(0); });
        m_lines->next();
        return QCoreApplication::exec();
    }

    engine::PageHost host()
    {
        engine::PageHost host;
        host.console = printLine;
        host.exitRequested = [](int code) { QCoreApplication::exit(code); };
        host.interrupted = [this] { return m_signals.poll(); };
        host.uncaughtError = [this](const engine::Outcome& error) {
            m_failed = true;
            printError(error);
        };
        return host;
    }

    void prompt()
    {
        m_keys->setEnabled(true);
        rl_callback_handler_install(Prompt, [](char* line) {
            rl_callback_handler_remove();
            s_current->m_keys->setEnabled(false);
            if (!line) {
                printLine({}, false);
                QCoreApplication::exit(0);
                return;
            }
            if (*line)
                add_history(line);
            s_current->evaluate(QString::fromLocal8Bit(line));
            std::free(line);
        });
    }

    /// Forgets what is typed, or the answer that is awaited.
    void startAfresh()
    {
        ++m_evaluation;
        rl_callback_handler_remove();
        printLine({}, false);
        prompt();
    }

    void next() { m_interactive ? prompt() : m_lines->next(); }

    void evaluate(const QString& line)
    {
        const QStringList help = helpFor(line);
        if (!help.isEmpty())
            printLine(help.join(QLatin1Char('\n')), false);
        if (!help.isEmpty() || line.trimmed().isEmpty()) {
            QMetaObject::invokeMethod(
                QCoreApplication::instance(), [this] { next(); }, Qt::QueuedConnection);
            return;
        }
        m_page->evaluate(
            line, [this, name = line.trimmed(), evaluation = ++m_evaluation](const engine::Outcome& outcome) {
                if (evaluation != m_evaluation)
                    return;
                if (outcome.ok) {
                    printLine(outcome.text, false);
                    // A member by its name.
                    const QString signature = signatureOf(name);
                    if (!signature.isEmpty() && outcome.text.startsWith(QLatin1String("[Function")))
                        printLine(signature, false);
                } else {
                    m_failed = true;
                    printError(outcome);
                }
                next();
            });
    }

    /// Completes the dotted path before the cursor, or shows the signature of the member that is being
    /// called.
    static char** complete(const char*, int, int)
    {
        const QString typed = QString::fromLocal8Bit(rl_line_buffer).left(rl_point);
        rl_attempted_completion_over = 1;
        if (typed.endsWith(QLatin1Char('('))) {
            const QString signature = signatureOf(pathAtEndOf(typed.chopped(1)));
            if (!signature.isEmpty()) {
                printLine(QLatin1Char('\n') + signature, false);
                rl_forced_update_display();
            }
            return nullptr;
        }
        const QString path = pathAtEndOf(typed);
        const int dot = path.lastIndexOf(QLatin1Char('.'));
        s_matches.clear();
        for (const QString& name : s_current->m_page->propertyNames(dot < 0 ? QString() : path.left(dot))) {
            if (name.startsWith(path.mid(dot + 1)))
                s_matches.append(path.left(dot + 1) + name);
        }
        return s_matches.isEmpty() ? nullptr
                                   : rl_completion_matches(path.toLocal8Bit().constData(), nextMatch);
    }

    static char* nextMatch(const char*, int index)
    {
        return index < s_matches.size() ? strdup(s_matches[index].toLocal8Bit().constData()) : nullptr;
    }

    // The line editor calls back without a context.
    static inline Session* s_current = nullptr;
    static inline QStringList s_matches;

    std::unique_ptr<engine::Page> m_page;
    Signals& m_signals;
    bool m_interactive;
    bool m_failed = false;
    int m_evaluation = 0; ///< the one whose answer is awaited
    std::optional<QSocketNotifier> m_keys;
    std::optional<LineReader> m_lines;
    QByteArray m_historyFile;
};

} // namespace

int runRepl(Suite& suite, const Options& options, Signals& signals)
{
    return Session(suite, options, signals).run();
}

} // namespace novahost
