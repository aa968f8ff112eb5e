// Page and ScriptEngine: the interface that a script engine implements.
#pragma once

#include "host/engine/pending.h"
#include "host/vexlite/core.h"

#include <QString>
#include <QStringList>
#include <functional>
#include <memory>

namespace engine {

/// The origin of scripts that the tool runs.
inline constexpr char ScriptOrigin[] = "nova://script";

/// How a piece of page script ended.
struct Outcome {
    bool ok = false;
    QString text;  ///< the result as shown to the user, or the error's message
    QString json;  ///< the result as JSON; empty when it has no JSON form (undefined, functions)
    QString stack; ///< of an error: the page's frames, "    at name (file:line:column)"
    int code = 0;  ///< the "code" that an error carries, or 0
    bool hasCode = false;
    /// An error as shown to the user, with its source, causes and what has thrown it; may be empty.
    QString report;
    bool isDeclared = true; ///< whether the declarations of the script stay
};

/// What a page evaluates.
struct PageScript {
    QString source = {}; ///< an expression, or statements, whose value is awaited
    /// Run first, as a script of its own: what it declares stays. Each function in it has the place that it has in `typed`.
    QString declarations = {};
    bool isKept = false; ///< the page gets the value as its global `_`, or the error as `_error`
    QString typed = {};  ///< what errors show of the source: that which the user has typed
    /// Where the source has pieces of that: "FROM TO LENGTH;...", offsets in both; empty: all together.
    QString pieces = {};
    QString name = {}; ///< what errors call it; empty: PageOptions::inputName, with a number
};

/// Callbacks of a page into its host. [GUI thread]
struct PageHost {
    /// Output of the console; that of console.warn and error is an error.
    std::function<void(const QString& line, bool isError)> console;
    /// exit(code) was called; -1: without a code, and the page has set none. After the current call has returned no more script of the page runs.
    std::function<void(int code)> exitRequested;
    /// A script has returned to the event loop for the first time. Only called by an engine whose script runs in another process.
    std::function<void()> began;
    /// What run(), importModule() or evaluate() was to run has failed, which ends the page as exit() does: at once, and
    /// `done` is not called. Without this callback `done` is called with the outcome, and the page goes on.
    std::function<void(const Outcome& error)> scriptFailed;
    /// An uncaught error, in a timer, a listener or a promise.
    std::function<void(const Outcome& error)> uncaughtError;
    /// process.play(steps) was called. Returns the error, or an empty string. Destroyed when the page closes,
    /// possibly during a step.
    std::function<QString(const QString& steps)> play;
    /// Called ten times a second while script runs without returning to the event loop; true ends the script at once.
    /// Not called by an engine whose script runs in another process.
    std::function<bool()> interrupted;
    /// Script has run longer than PageOptions::timeLimitMs and was ended; the page is to be closed.
    std::function<void()> overran;
};

struct PageOptions {
    QStringList arguments; ///< process.argv
    int timeLimitMs =
        0; ///< how long script may run before it returns to the event loop; 0: as long as it likes
    vexlite::BrowserFacts browser;
    QString inputName = QStringLiteral("repl"); ///< what stacks call what is evaluated, with a number
    bool colors = false;                        ///< whether output of the console, and results, have colours
    bool errorColors = false;                   ///< the same for errors
};

/// One page with its global object: `NovaExtension`, `console`, timers, `process`, `exit`. [GUI thread]
/// Destroying it closes it.
class Page {
public:
    using Done = std::function<void(const Outcome&)>;
    virtual ~Page() = default;

    virtual JSContextEnv context() const = 0;
    /// Runs `source` as the body of an async function; `done` is called once when it has settled, never from
    /// inside this call, and not at all when the page closes first.
    virtual void run(const QString& source, const QString& fileName, Done done) = 0;
    /// Imports a module, a file of the folder that the page is served as nova://script/; `done` as above. Errors show
    /// `fileName` and lines of `source`, which is its text. False when the engine has no modules.
    virtual bool importModule(const QString& fileName, const QString& source, Done done) = 0;
    /// Evaluates a script and awaits the result; `done` as above.
    virtual void evaluate(const PageScript& script, Done done) = 0;
    /// For completion: the names of the properties, own and inherited, of the value that is reached from the global object by
    /// these names. Runs no getters but those of NovaExtension on the way. `found` is called once, with none where the page
    /// does not reply; possibly from inside this call, and not at all when the page closes first.
    virtual void propertyNames(
        const QStringList& path, std::function<void(const QStringList& names)> found) = 0;
    /// What the page has begun and that has not ended.
    virtual PendingList pending() const = 0;
    /// Whether script runs, or timers or promises of members are pending: what pending() says, faster.
    virtual bool isBusy() const = 0;
    /// Whether nothing but pending() can have script run: a browser has requests and events of its own.
    virtual bool knowsAllPending() const = 0;
    /// Calls `done` from the event loop, with process.exitCode or else 0, -1 for a wrong one, when the page has done all that it
    /// could do by now; not at all when it closes first.
    virtual void settle(std::function<void(int exitCode)> done) = 0;
    /// Drops listeners, promises, handles, functions and timers. Within a call of the page it takes effect
    /// when the outermost call has returned.
    virtual void close() = 0;
};

class ScriptEngine {
public:
    virtual ~ScriptEngine() = default;
    virtual std::unique_ptr<Page> openPage(const PageOptions& options, PageHost host) = 0;
    /// Collects garbage now, so that live counts are exact, where the engine can. A closed page holds nothing in any case.
    virtual void collectGarbage() = 0;
};

/// JavaScriptCore in this process. The core must have started.
std::unique_ptr<ScriptEngine> makeJscEngine();

} // namespace engine
