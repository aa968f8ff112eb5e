#include "host/novahost/advice.h"

#include "host/novahost/description.h"
#include "host/novahost/nearest.h"

#include <QHash>
#include <QRegularExpression>
#include <QSet>

namespace novahost {

namespace {

/// What browsers have and the language does not, nor the bare engine.
bool isOfBrowser(const QString& name)
{
    static const QSet<QString> names {
        QStringLiteral("Blob"),
        QStringLiteral("BroadcastChannel"),
        QStringLiteral("DOMParser"),
        QStringLiteral("File"),
        QStringLiteral("FileReader"),
        QStringLiteral("FormData"),
        QStringLiteral("HTMLElement"),
        QStringLiteral("Headers"),
        QStringLiteral("Image"),
        QStringLiteral("MessageChannel"),
        QStringLiteral("MutationObserver"),
        QStringLiteral("ReadableStream"),
        QStringLiteral("Request"),
        QStringLiteral("Response"),
        QStringLiteral("WebSocket"),
        QStringLiteral("Worker"),
        QStringLiteral("XMLHttpRequest"),
        QStringLiteral("alert"),
        QStringLiteral("cancelAnimationFrame"),
        QStringLiteral("customElements"),
        QStringLiteral("document"),
        QStringLiteral("fetch"),
        QStringLiteral("history"),
        QStringLiteral("indexedDB"),
        QStringLiteral("localStorage"),
        QStringLiteral("location"),
        QStringLiteral("navigator"),
        QStringLiteral("requestAnimationFrame"),
        QStringLiteral("self"),
        QStringLiteral("sessionStorage"),
        QStringLiteral("window"),
    };
    return names.contains(name);
}

/// Of what Node has and pages have not: what to use.
QString insteadOf(const QString& name)
{
    static const QHash<QString, QString> names {
        { QStringLiteral("Buffer"),
            QStringLiteral(
                "there is no Buffer; Uint8Array holds bytes, TextEncoder and TextDecoder convert text") },
        { QStringLiteral("setImmediate"),
            QStringLiteral("there is no setImmediate; setTimeout(f) calls f from the event loop") },
        { QStringLiteral("global"), QStringLiteral("the global object is globalThis") },
        { QStringLiteral("__filename"), QStringLiteral("process.argv[1] is the file") },
        { QStringLiteral("__dirname"), QStringLiteral("process.argv[1] is the file") },
        { QStringLiteral("require"),
            QStringLiteral("there are no CommonJS modules; novahost --browser run imports ES modules") },
        { QStringLiteral("module"),
            QStringLiteral("there are no CommonJS modules; novahost --browser run imports ES modules") },
    };
    return names.value(name);
}

/// Of a global that there is not, in the words of the bare engine or of the browser's.
QString adviceOnMissing(const QString& name, bool isBare)
{
    if (isBare && isOfBrowser(name))
        return QStringLiteral(
            "the bare script engine has no %1; novahost --browser run has all that a browser has")
            .arg(name);
    QStringList objects { QStringLiteral("NovaExtension") };
    for (const Json& object : Description::builtIn().objects())
        objects.append(Description::fullName(object));
    const QString instead = insteadOf(name);
    const QString meant = instead.isEmpty() ? nearestSpelling(objects, name) : QString();
    return meant.isEmpty() ? instead : QStringLiteral("did you mean %1?").arg(meant);
}

/// Of process, which has less than Node's.
QString adviceOnProcess(const engine::Outcome& error)
{
    if (error.text.contains(QLatin1String("process.exit is not a function")))
        return QStringLiteral("exit(CODE) ends the script; process.exitCode only sets its exit code");
    // The browser's message names only what was read of it.
    const bool isOfUndefined = error.text.contains(QLatin1String("undefined"))
        && (error.text + error.report).contains(QLatin1String("process.env"));
    return isOfUndefined ? QStringLiteral("there is no process.env; process.argv has the script's arguments")
                         : QString();
}

QString adviceText(const engine::Outcome& error)
{
    static const QRegularExpression missing(
        QStringLiteral("Can't find variable: ([\\w$]+)|ReferenceError: ([\\w$]+) is not defined"));
    if (const auto match = missing.match(error.text); match.hasMatch())
        return adviceOnMissing(match.captured(match.lastCapturedIndex()), match.lastCapturedIndex() == 1);
    if (error.text.contains(QLatin1String("a Promise can not be passed")))
        return QStringLiteral("an `await` is forgotten");
    if (error.text.contains(QLatin1String("Illegal invocation")))
        return QStringLiteral(
            "a member was called without its object; write FileSystem.exists(...), or bind it");
    if (error.text.contains(QLatin1String("Could not import the module")))
        return QStringLiteral("the bare script engine has no modules; novahost --browser run imports them");
    if (error.text.contains(QLatin1String("Unexpected reserved word")))
        return QStringLiteral("modules of this browser engine can not await at their top level");
    return adviceOnProcess(error);
}

} // namespace

QString adviceOn(const engine::Outcome& error)
{
    const QString advice = adviceText(error);
    return advice.isEmpty() ? QString() : QLatin1String("hint: ") + advice;
}

} // namespace novahost
