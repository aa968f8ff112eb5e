#include "host/novahost/repl.h"

#include "host/novahost/description.h"
#include "host/novahost/inputparser.h"
#include "host/novahost/lineeditor.h"
#include "host/novahost/linereader.h"
#include "host/novahost/nearest.h"
#include "host/novahost/output.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QFile>
#include <QRegularExpression>
#include <QTimer>
#include <unistd.h>

namespace novahost {

namespace {

constexpr int PatienceMs = 1000; ///< with a page that is asked for names

/// One session: reads an input, evaluates it, prints, reads the next. Timers and listeners run meanwhile.
class Session {
public:
    Session(Suite& suite, const Options& options, Signals& signals)
        : m_page(suite.openPage(options.arguments, host()))
        , m_signals(signals)
        , m_interactive(isatty(STDIN_FILENO))
        , m_isInBrowser(options.browser)
    {
    }

    int run()
    {
        if (!m_page)
            return Failure;
        const int code = m_interactive ? runOnTerminal() : runOnLines();
        m_page.reset();
        return m_failed && !m_interactive && code == 0 ? 1 : code;
    }

private:
    struct Command {
        const char* name;
        const char* argument;
        const char* doc;
        void (Session::*perform)(const QString& argument);
    };
    static const Command Commands[];

    int runOnTerminal()
    {
        m_editor = std::make_unique<LineEditor>(editorHost());
        m_signals.setInterrupt([this] { startAfresh(); });
        printLine(QStringLiteral(
                      "novahost " NOVAHOST_VERSION ": .help lists what there is, Tab completes, Ctrl-D ends"),
            false);
        m_editor->start();
        const int code = QCoreApplication::exec();
        m_signals.setInterrupt({});
        m_editor.reset();
        return code;
    }

    int runOnLines()
    {
        m_lines.emplace(
            [this](const QString& line) {
                m_unfinished += line;
                if (isIncomplete(m_unfinished)) {
                    m_unfinished += QLatin1Char('\n');
                    return m_lines->next();
                }
                enter(std::exchange(m_unfinished, {}));
            },
            [this] {
                if (m_unfinished.isEmpty())
                    return QCoreApplication::exit(0);
                evaluate(std::exchange(m_unfinished, {}));
            });
        m_lines->next();
        return QCoreApplication::exec();
    }

    engine::PageHost host()
    {
        engine::PageHost host;
        host.console = [this](
                           const QString& line, bool isError) { print([&] { printLine(line, isError); }); };
        host.exitRequested = [](int code) { QCoreApplication::exit(std::max(code, 0)); };
        host.interrupted = [this] { return m_signals.poll(); };
        host.uncaughtError = [this](const engine::Outcome& error) {
            m_failed = true;
            print([&] { printError(error); });
        };
        return host;
    }

    LineEditor::Host editorHost()
    {
        LineEditor::Host host;
        host.isIncomplete = [this](const QString& text) { return isIncomplete(text); };
        host.entered = [this](const QString& input) { enter(input); };
        host.ended = [] { QCoreApplication::exit(0); };
        host.complete = [this](const QString& text) { return complete(text); };
        host.hint = [this](const QString& text) { return hint(text); };
        return host;
    }

    void print(const std::function<void()>& write) { m_editor ? m_editor->print(write) : write(); }

    /// Forgets what is typed, or the answer that is awaited.
    void startAfresh()
    {
        ++m_evaluation;
        if (!m_editor->isReading()) {
            printLine({}, false);
            if (m_isInBrowser && ++m_dropped == 2)
                printLine(QStringLiteral(
                              "hint: script of the page may still run, which this engine can not break off; "
                              "Ctrl-D ends"),
                    true);
        }
        m_editor->drop();
        m_editor->start();
    }

    void next()
    {
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [this] {
                if (m_lines)
                    m_lines->next();
                else if (m_editor && !m_editor->isReading())
                    m_editor->start();
            },
            Qt::QueuedConnection);
    }

    /// The name of the command that a line is; null for other lines.
    static QString commandIn(const QString& line, QString* argument = nullptr)
    {
        static const QRegularExpression form(QStringLiteral("^\\s*\\.([a-z]+)(?:\\s+(.*\\S))?\\s*$"));
        const auto match = form.match(line);
        if (argument)
            *argument = match.captured(2);
        return match.captured(1);
    }

    bool isIncomplete(const QString& text)
    {
        return commandIn(text).isEmpty() && m_parser.read(text).isIncomplete;
    }

    void enter(const QString& input)
    {
        QString argument;
        const QString name = std::exchange(m_isText, false) ? QString() : commandIn(input, &argument);
        if (name.isEmpty())
            return evaluate(input);
        QStringList names;
        for (const Command* command = Commands; command->name; ++command) {
            names.append(QLatin1String(command->name));
            if (name == names.last())
                return (this->*command->perform)(argument);
        }
        m_failed = true;
        printLine(QString::fromLatin1("There is no .%1; %2")
                      .arg(name, advise(names, name, "did you mean .%1?", ".help lists all")),
            true);
        next();
    }

    /// `file`: where the text comes from, if from one.
    void evaluate(const QString& text, const QString& file = {})
    {
        if (text.trimmed().isEmpty())
            return next();
        InputParser::Input input = m_parser.read(text);
        input.script.name = file;
        if (!input.error.isEmpty()) {
            m_failed = true;
            printLine(input.error, true);
            return next();
        }
        m_page->evaluate(input.script,
            [this, name = text.trimmed(), evaluation = ++m_evaluation](const engine::Outcome& outcome) {
                m_dropped = 0;
                if (evaluation != m_evaluation)
                    return;
                if (outcome.isDeclared)
                    m_parser.commit();
                show(outcome, name);
                next();
            });
    }

    void show(const engine::Outcome& outcome, const QString& name)
    {
        if (!outcome.ok) {
            m_failed = true;
            return printError(outcome);
        }
        printLine(outcome.text, false);
        // A member by its name.
        const QString signature =
            outcome.text.startsWith(QLatin1String("[Function")) ? m_parser.typeOf(name) : QString();
        if (!signature.isEmpty())
            printLine(signature, false);
    }

    // --- Commands ---

    void help(const QString& name)
    {
        QStringList lines;
        const Description& description = Description::builtIn();
        for (const Json& object : description.objects()) {
            if (!name.isEmpty() && isNamed(Description::fullName(object), name, Qt::CaseInsensitive))
                lines += Description::overview(object);
        }
        if (const auto member = description.member(name))
            lines += Description::documentation(*member);
        if (name.isEmpty()) {
            for (const Command* command = Commands; command->name; ++command) {
                const QString form = QString::fromLatin1(".%1 %2").arg(
                    QLatin1String(command->name), QLatin1String(command->argument));
                lines.append(form.leftJustified(18) + QLatin1String(command->doc));
            }
            lines.append(QStringLiteral(
                "\n_ is the last result, _error the last error. Tab completes names, options and values.\n"
                "Ctrl-C drops the input or the answer that is awaited; Alt-Enter begins another line."));
        }
        printLine(lines.isEmpty()
                ? QString::fromLatin1("There is no %1; %2").arg(name, description.advice(name))
                : lines.join(QLatin1Char('\n')),
            false);
        next();
    }

    void type(const QString& expression)
    {
        QString type = m_parser.typeOf(expression);
        if (const auto member = Description::builtIn().member(expression); type.isEmpty() && member)
            type = Description::signature(*member);
        printLine(type.isEmpty()
                ? QStringLiteral("unknown: only what comes from NovaExtension has a declared type")
                : type,
            false);
        next();
    }

    void load(const QString& name)
    {
        QFile file(name);
        if (file.open(QIODevice::ReadOnly)) {
            QString text = QString::fromUtf8(file.readAll());
            if (text.startsWith(QLatin1String("#!")))
                text.replace(0, 2, QStringLiteral("//"));
            return evaluate(text, name);
        }
        m_failed = true;
        printLine(QString::fromLatin1(".load %1: %2").arg(name, file.errorString()), true);
        next();
    }

    void editor(const QString&)
    {
        if (!m_editor)
            return next();
        m_isText = true;
        m_editor->startText();
        // Behind that: what is typed from now on, Ctrl-D too, is the text's.
        printLine(QStringLiteral("// Ctrl-D runs the text, Ctrl-C drops it."), false);
    }

    void exit(const QString&) { QCoreApplication::exit(0); }

    // --- Completion ---

    /// The names of properties that can be written behind a dot.
    QStringList propertyNames(const QStringList& path, const QString& typed)
    {
        QEventLoop loop;
        const auto found = std::make_shared<std::optional<QStringList>>();
        m_page->propertyNames(path, [found, alive = QPointer<QEventLoop>(&loop)](const QStringList& names) {
            *found = names;
            if (alive)
                alive->quit();
        });
        if (!*found) {
            QTimer::singleShot(PatienceMs, &loop, &QEventLoop::quit);
            loop.exec();
        }
        static const QRegularExpression identifier(QStringLiteral("^[\\p{L}_$][\\p{L}\\p{N}_$]*$"));
        QStringList names;
        for (const QString& name : found->value_or(QStringList())) {
            const bool isHidden =
                name.startsWith(QLatin1String("__")) && !typed.startsWith(QLatin1String("__"));
            if (identifier.match(name).hasMatch() && !isHidden)
                names.append(name);
        }
        return names;
    }

    LineEditor::Host::Completion complete(const QString& text)
    {
        LineEditor::Host::Completion completion;
        static const QRegularExpression command(QStringLiteral("^\\s*\\.([a-z]*)$")),
            argument(QStringLiteral("^\\s*\\.(?:help|type)\\s+([\\w.]*)$"));
        if (const auto match = command.match(text); match.hasMatch()) {
            completion.from = match.capturedStart(1);
            for (const Command* one = Commands; one->name; ++one)
                completion.names.append(QLatin1String(one->name));
            return completion;
        }
        if (const auto match = argument.match(text); match.hasMatch()) {
            completion.from = match.capturedStart(1);
            completion.names = Description::builtIn().names();
            return completion;
        }
        const InputParser::Suggestions found = m_parser.suggest(text);
        completion.from = found.from;
        completion.names = found.names;
        if (found.path)
            completion.names += propertyNames(*found.path, text.mid(found.from));
        completion.note = hint(text);
        return completion;
    }

    /// The signature of the member that is being called.
    QString hint(const QString& text)
    {
        if (!text.contains(QLatin1Char('(')))
            return {};
        const QString name = m_parser.suggest(text).member;
        const auto member =
            Description::builtIn().member(QLatin1String("NovaExtension.") + name, Qt::CaseSensitive);
        return name.isEmpty() || !member ? QString() : Description::signature(*member);
    }

    std::unique_ptr<engine::Page> m_page;
    Signals& m_signals;
    InputParser m_parser;
    bool m_interactive;
    bool m_failed = false;
    bool m_isText = false; ///< the input comes from the editor
    int m_evaluation = 0;  ///< the one whose answer is awaited
    bool m_isInBrowser;
    int m_dropped = 0; ///< answers that were awaited when Ctrl-C came, since the page has answered
    std::unique_ptr<LineEditor> m_editor;
    std::optional<LineReader> m_lines;
    QString m_unfinished;
};

const Session::Command Session::Commands[] = {
    { "help", "[NAME]", "what an object or a member does: .help FileSystem, .help FileSystem.copy",
        &Session::help },
    { "type", "EXPRESSION", "its declared type, or a member's signature: .type FileSystem.homePath().data",
        &Session::type },
    { "load", "FILE", "runs a file as one input", &Session::load },
    { "editor", "", "takes a text of several lines", &Session::editor },
    { "exit", "", "ends; so do exit(CODE) and Ctrl-D", &Session::exit },
    { nullptr, nullptr, nullptr, nullptr },
};

} // namespace

int runRepl(Suite& suite, const Options& options, Signals& signals)
{
    return Session(suite, options, signals).run();
}

} // namespace novahost
