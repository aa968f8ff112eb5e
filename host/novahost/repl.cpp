#include "host/novahost/repl.h"

#include "host/novahost/script.h"
#include "host/profile/directories.h"

#include <QCoreApplication>
#include <QDir>
#include <QSocketNotifier>
#include <QTextStream>
#include <editline/readline.h>
#include <unistd.h>

namespace novahost {

namespace {

constexpr char Prompt[] = "nova> ";
constexpr int HistoryLength = 1000;

/// One session: reads a line, evaluates it, prints, reads the next. Timers and listeners run meanwhile.
class Session {
public:
    Session(Suite& suite, const Options& options)
        : m_page(suite.openPage(options.arguments, host()))
        , m_interactive(isatty(STDIN_FILENO))
        , m_input(STDIN_FILENO, QSocketNotifier::Read)
        , m_historyFile(QDir(profile::dataDirectory()).filePath(QStringLiteral("repl-history")).toLocal8Bit())
    {
        s_current = this;
    }

    int run()
    {
        if (m_interactive) {
            using_history();
            stifle_history(HistoryLength);
            read_history(m_historyFile.constData());
            rl_attempted_completion_function = complete;
            rl_completion_append_character = '\0';
            QObject::connect(&m_input, &QSocketNotifier::activated, [] { rl_callback_read_char(); });
            prompt();
        } else {
            m_input.setEnabled(false);
            QMetaObject::invokeMethod(
                QCoreApplication::instance(), [this] { readPlainLine(); }, Qt::QueuedConnection);
        }
        const int code = QCoreApplication::exec();
        if (m_interactive) {
            rl_callback_handler_remove();
            write_history(m_historyFile.constData());
        }
        m_page.reset();
        s_current = nullptr;
        return m_failed && !m_interactive && code == 0 ? 1 : code;
    }

private:
    engine::PageHost host()
    {
        engine::PageHost host;
        host.console = printLine;
        host.exitRequested = [](int code) { QCoreApplication::exit(code); };
        host.uncaughtError = [this](const engine::Outcome& error) {
            m_failed = true;
            printError(error);
        };
        return host;
    }

    void prompt()
    {
        m_input.setEnabled(true);
        rl_callback_handler_install(Prompt, [](char* line) {
            rl_callback_handler_remove();
            s_current->m_input.setEnabled(false);
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

    void readPlainLine()
    {
        if (m_lines.atEnd())
            QCoreApplication::exit(0);
        else
            evaluate(m_lines.readLine());
    }

    void next() { m_interactive ? prompt() : readPlainLine(); }

    void evaluate(const QString& line)
    {
        if (line.trimmed().isEmpty()) {
            QMetaObject::invokeMethod(
                QCoreApplication::instance(), [this] { next(); }, Qt::QueuedConnection);
            return;
        }
        m_page->evaluate(line, [this](const engine::Outcome& outcome) {
            if (outcome.ok) {
                printLine(outcome.text, false);
            } else {
                m_failed = true;
                printError(outcome);
            }
            next();
        });
    }

    /// Completes the dotted path before the cursor.
    static char** complete(const char*, int, int)
    {
        const QString typed = QString::fromLocal8Bit(rl_line_buffer).left(rl_point);
        int start = typed.size();
        while (start > 0
            && (typed[start - 1].isLetterOrNumber() || QStringLiteral("._$").contains(typed[start - 1])))
            --start;
        const QString path = typed.mid(start);
        const int dot = path.lastIndexOf(QLatin1Char('.'));
        s_matches.clear();
        for (const QString& name : s_current->m_page->propertyNames(dot < 0 ? QString() : path.left(dot))) {
            if (name.startsWith(path.mid(dot + 1)))
                s_matches.append(path.left(dot + 1) + name);
        }
        rl_attempted_completion_over = 1;
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
    bool m_interactive;
    bool m_failed = false;
    QSocketNotifier m_input;
    QTextStream m_lines { stdin };
    QByteArray m_historyFile;
};

} // namespace

int runRepl(Suite& suite, const Options& options)
{
    return Session(suite, options).run();
}

} // namespace novahost
