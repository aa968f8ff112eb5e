#include "host/novahost/script.h"

#include "host/novahost/inputparser.h"
#include "host/novahost/module.h"
#include "host/novahost/output.h"
#include "host/novahost/waiting.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QFile>
#include <QTimer>
#include <cstdio>
#include <functional>

namespace novahost {

namespace {

/// Runs the event loop for one page, until its script has ended and nothing keeps it, or something ends it.
class PageRun {
public:
    explicit PageRun(const ScriptRun& run)
        : m_run(run)
        , m_waiting(run.suite, run.play, run.options.keep)
        , m_page(run.suite.openPage(argv(run.options), host()))
    {
    }

    engine::Page& page() { return *m_page; }

    /// The script has ended: from now on the page goes on only as long as something keeps it.
    void endWhenDone(bool failed)
    {
        m_hasEnded = true;
        if (failed)
            endWithError();
    }

    /// Calls `begin` within the event loop, so that a dialog that the page opens at once ends with the loop.
    int wait(const std::function<void()>& begin)
    {
        QTimer::singleShot(0, &m_context, [&] {
            begin();
            // Whatever may change what is pending wakes the event loop.
            QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock,
                &m_context, [this] { look(); });
        });
        m_run.signals.setInterrupt([this] { interrupt(); }, false);
        const int code = QCoreApplication::exec();
        m_run.signals.setInterrupt({});
        if (m_run.signals.hasEnded() && !m_isInterrupted)
            reportUndone(QStringLiteral("the signal"));
        if (!m_exitCode)
            m_exitCode = code;
        close();
        m_page.reset();
        if (m_run.options.liveCounts)
            printLiveCounts("closed");
        return *m_exitCode;
    }

private:
    static QStringList argv(const Options& options)
    {
        return QStringList { QStringLiteral("novahost"), options.script } + options.arguments;
    }

    engine::PageHost host()
    {
        engine::PageHost host;
        host.console = printLine;
        host.exitRequested = [this](int code) {
            if (code < 0)
                end(m_hasErrors ? Failure : 0, QStringLiteral("exit()"));
            else
                end(code, QStringLiteral("exit(%1)").arg(code));
        };
        host.scriptFailed = [this](const engine::Outcome& error) {
            printError(error);
            endWithError();
        };
        // As in a browser, script goes on.
        host.uncaughtError = [this](const engine::Outcome& error) {
            printError(error);
            m_hasErrors = true;
        };
        host.interrupted = [this] {
            std::fflush(stdout); // a script that never returns to the event loop is heard, too
            return m_run.signals.poll();
        };
        host.overran = [this] {
            fail(Failure,
                QStringLiteral("script has run for %1 s without returning to the event loop (--time-limit)")
                    .arg(m_run.options.timeLimit));
            end(Failure, QStringLiteral("the time limit"));
        };
        return host;
    }

    void endWithError() { end(Failure, QStringLiteral("the script's error")); }

    /// Ends the event loop; nothing of the page runs any more. The first call decides the exit code.
    void end(int code, const QString& reason)
    {
        if (m_exitCode)
            return;
        reportUndone(reason);
        m_exitCode = code;
        close();
        QCoreApplication::exit(code);
    }

    void close()
    {
        if (m_run.options.liveCounts && !m_isClosed)
            printLiveCounts("open");
        m_isClosed = true;
        if (m_page)
            m_page->close();
    }

    void reportUndone(const QString& reason)
    {
        const QString undone = m_page && !m_exitCode ? m_waiting.undone(*m_page) : QString();
        if (!undone.isEmpty())
            printLine(QStringLiteral("novahost: left undone at %1: %2").arg(reason, undone), true);
    }

    /// Ends the run when nothing keeps the page, and nothing has come up meanwhile.
    void look()
    {
        const bool isIdle = this->isIdle();
        m_wasKept |= m_hasEnded && !isIdle;
        if (m_isSettling || !isIdle)
            return;
        m_isSettling = true;
        m_page->settle([this](int exitCode) {
            m_isSettling = false;
            if (this->isIdle())
                endIdle(exitCode);
        });
    }

    /// Whether nothing more can come.
    bool isIdle() const
    {
        if (m_exitCode || m_waiting.keeps(*m_page))
            return false;
        return m_hasEnded || (m_page->knowsAllPending() && !m_waiting.listens(*m_page));
    }

    void endIdle(int exitCode)
    {
        if (!m_hasEnded)
            fail(Failure, QStringLiteral("the script awaits a promise that nothing is left to settle"));
        // Who waits for events that way sees no others than those before the script's end.
        const QString others = m_wasKept || !m_hasEnded ? QString() : m_waiting.others(*m_page);
        if (!others.isEmpty() && !m_run.options.noHints)
            printLine((m_waiting.listens(*m_page)
                              ? QStringLiteral("hint: ended with %1; --keep waits for events")
                              : QStringLiteral("hint: ended before the %1: the page listens to nothing"))
                          .arg(others),
                true);
        if (exitCode < 0)
            exitCode = fail(Failure, QStringLiteral("process.exitCode must be an integer from 0 to 255"));
        m_exitCode = exitCode == 0 && (m_hasErrors || !m_hasEnded) ? Failure : exitCode;
        QCoreApplication::exit(*m_exitCode);
    }

    /// At the first Ctrl-C.
    void interrupt()
    {
        const QString pending = m_waiting.all(*m_page);
        printLine(QStringLiteral("novahost: waiting for %1; Ctrl-C again ends")
                      .arg(pending.isEmpty() ? QStringLiteral("an await of the script") : pending),
            true);
        m_isInterrupted = true;
        m_run.signals.setInterrupt({});
    }

    const ScriptRun m_run;
    const Waiting m_waiting;
    std::optional<int> m_exitCode;
    bool m_hasEnded = false; ///< the script, without an error
    bool m_wasKept = false;  ///< something was pending after that
    bool m_hasErrors = false;
    bool m_isSettling = false;
    bool m_isClosed = false;
    bool m_isInterrupted = false; ///< what is pending has been said
    QObject m_context;
    std::unique_ptr<engine::Page> m_page;
};

/// Most expressions are evaluated as they are; the parser takes a while to load.
engine::PageScript scriptOf(const QString& expression)
{
    if (!expression.contains(QLatin1String("await")) && !expression.trimmed().startsWith(QLatin1Char('{')))
        return { expression, {}, false, expression };
    InputParser::Input input = InputParser().read(expression);
    if (!input.error.isEmpty())
        return { expression, {}, false, expression };
    input.script.isKept = false;
    return input.script;
}

int printResult(const engine::Outcome& outcome)
{
    if (!outcome.ok) {
        printError(outcome);
        return Failure;
    }
    const bool isUndefined = outcome.json.isEmpty() && outcome.text == QLatin1String("undefined");
    if (outcome.json.isEmpty() && !isUndefined)
        return fail(Failure, QStringLiteral("the answer has no JSON form"));
    printLine(isUndefined ? QStringLiteral("null") : outcome.json, false);
    return 0;
}

} // namespace

int runScript(const ScriptRun& given)
{
    const bool isInput = given.options.script == QLatin1String("-");
    QFile file(given.options.script);
    if (isInput ? !file.open(stdin, QIODevice::ReadOnly) : !file.open(QIODevice::ReadOnly))
        return fail(UsageError, QString::fromLatin1("%1: %2").arg(given.options.script, file.errorString()));
    const QString name = isInput ? QStringLiteral("[stdin]") : given.options.script;
    const QString source = QString::fromUtf8(file.readAll());
    const bool module = isModule(name, source);
    if (module && (isInput || !given.options.browser))
        return fail(UsageError,
            isInput ? QStringLiteral("a module must be a file; standard input can not be imported")
                    : QStringLiteral(
                        "%1 is a module, and the bare script engine has none; novahost --browser run %1 "
                        "runs it")
                          .arg(given.options.script));
    PageRun run(given);
    return run.wait([&] {
        const auto done = [&](const engine::Outcome& outcome) {
            if (!outcome.ok)
                printError(outcome); // the page has gone
            run.endWhenDone(!outcome.ok);
        };
        if (module)
            run.page().importModule(name, source, done);
        else
            run.page().run(source, name, done);
    });
}

int evalExpression(const ScriptRun& given)
{
    PageRun run(given);
    return run.wait([&] {
        run.page().evaluate(scriptOf(given.options.script),
            [&](const engine::Outcome& outcome) { run.endWhenDone(printResult(outcome) != 0); });
    });
}

} // namespace novahost
