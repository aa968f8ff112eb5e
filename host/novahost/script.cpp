#include "host/novahost/script.h"

#include "host/novahost/inputparser.h"
#include "host/novahost/module.h"
#include "host/novahost/output.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QTimer>
#include <functional>

namespace novahost {

namespace {

/// Runs the event loop for one page. The first event that ends it decides the exit code.
class PageRun {
public:
    PageRun(Suite& suite, const Options& options)
        : m_options(options)
        , m_page(suite.openPage(argv(options), host()))
    {
    }

    engine::Page& page() { return *m_page; }

    void end(int code)
    {
        if (!m_exitCode)
            m_exitCode = code;
        QCoreApplication::exit(*m_exitCode);
    }

    /// Calls `begin` within the event loop, so that a dialog that the page opens at once ends with the loop.
    int wait(const std::function<void()>& begin)
    {
        const QObject context;
        QTimer::singleShot(0, &context, begin);
        end(QCoreApplication::exec());
        if (m_options.liveCounts)
            printLiveCounts("open");
        m_page.reset();
        if (m_options.liveCounts)
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
        host.exitRequested = [this](int code) { end(code); };
        host.uncaughtError = [this](const engine::Outcome& error) {
            printError(error);
            end(Failure);
        };
        return host;
    }

    const Options& m_options;
    std::optional<int> m_exitCode;
    std::unique_ptr<engine::Page> m_page;
};

/// Most expressions are evaluated as they are; the parser takes a while to load.
engine::PageScript scriptOf(const QString& expression)
{
    if (!expression.contains(QLatin1String("await")) && !expression.trimmed().startsWith(QLatin1Char('{')))
        return { expression, {}, false, expression };
    const InputParser::Input input = InputParser().read(expression);
    return { input.error.isEmpty() ? input.script.source : expression, input.script.declarations, false,
        expression };
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

int runScript(Suite& suite, const Options& options)
{
    const bool isInput = options.script == QLatin1String("-");
    QFile file(options.script);
    if (isInput ? !file.open(stdin, QIODevice::ReadOnly) : !file.open(QIODevice::ReadOnly))
        return fail(UsageError, QString::fromLatin1("%1: %2").arg(options.script, file.errorString()));
    const QString name = isInput ? QStringLiteral("[stdin]") : options.script;
    const QString source = QString::fromUtf8(file.readAll());
    const bool module = isModule(name, source);
    if (module && (isInput || !options.browser))
        return fail(UsageError,
            isInput ? QStringLiteral("a module must be a file; standard input can not be imported")
                    : QStringLiteral(
                        "%1 is a module, and the bare script engine has none; novahost --browser run %1 "
                        "runs it")
                          .arg(options.script));
    PageRun run(suite, options);
    return run.wait([&] {
        const auto done = [&](const engine::Outcome& outcome) {
            if (!outcome.ok)
                printError(outcome);
            run.end(outcome.ok ? 0 : Failure);
        };
        if (module)
            run.page().importModule(QFileInfo(options.script).fileName(), done);
        else
            run.page().run(source, name, done);
    });
}

int evalExpression(Suite& suite, const Options& options)
{
    PageRun run(suite, options);
    return run.wait([&] {
        run.page().evaluate(
            scriptOf(options.script), [&](const engine::Outcome& outcome) { run.end(printResult(outcome)); });
    });
}

} // namespace novahost
