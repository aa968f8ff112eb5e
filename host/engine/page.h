// Page and ScriptEngine: the one small interface behind which a script engine sits.
#pragma once

#include "host/vexlite/core.h"

#include <QString>
#include <QStringList>
#include <functional>
#include <memory>

namespace engine {

/// How a piece of page script ended.
struct Outcome {
    bool ok = false;
    QString text;  ///< the answer for a person, or the error's message
    QString json;  ///< the answer as JSON; empty when it has no JSON form (undefined, functions)
    QString stack; ///< of an error
    int code = 0;  ///< the "code" that an error carries, or 0
    bool hasCode = false;
};

/// What a page tells its host. Called on the GUI thread.
struct PageHost {
    /// console.log, info and debug are not errors; console.warn and error are.
    std::function<void(const QString& line, bool isError)> console;
    /// exit(code) was called. No more script of the page runs once the call in progress has returned.
    std::function<void(int code)> exitRequested;
    /// An error that nobody caught: in a timer, a listener, a promise.
    std::function<void(const Outcome& error)> uncaughtError;
    /// process.play(steps) was called. Answers an empty text or what is wrong with the steps. Destroyed when
    /// the page closes, also from within what is played.
    std::function<QString(const QString& steps)> play;
};

struct PageOptions {
    QStringList arguments; ///< process.argv
    vexlite::BrowserFacts browser;
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
    /// Evaluates an expression, or a script whose declarations stay, and awaits its answer; `done` as above.
    virtual void evaluate(const QString& source, Done done) = 0;
    /// The names of the properties that the value of a dotted path has, inherited ones included; for
    /// completion. Runs no getter but those of the path itself under NovaExtension.
    virtual QStringList propertyNames(const QString& path) = 0;
    /// Drops listeners, promises, handles, functions and timers. Inside a call of the page it takes effect
    /// when the outermost call has returned.
    virtual void close() = 0;
};

class ScriptEngine {
public:
    virtual ~ScriptEngine() = default;
    virtual std::unique_ptr<Page> openPage(const PageOptions& options, PageHost host) = 0;
    /// Frees what script no longer reaches, so that live counts can be read. A page that is closed holds
    /// nothing even without this.
    virtual void collectGarbage() = 0;
};

/// JavaScriptCore in this process. The core must have started.
std::unique_ptr<ScriptEngine> makeJscEngine();

} // namespace engine
