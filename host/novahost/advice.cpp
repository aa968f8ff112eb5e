#include "host/novahost/advice.h"

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

} // namespace

QString adviceOn(const engine::Outcome& error)
{
    static const QRegularExpression missing(QStringLiteral("Can't find variable: ([\\w$]+)"));
    const QString name = missing.match(error.text).captured(1);
    if (isOfBrowser(name))
        return QStringLiteral(
            "hint: the bare script engine has no %1; novahost --browser run has all that a browser has")
            .arg(name);
    if (name == QLatin1String("require") || name == QLatin1String("module"))
        return QStringLiteral(
            "hint: there are no CommonJS modules; novahost --browser run imports ES modules");
    if (error.text.contains(QLatin1String("Could not import the module")))
        return QStringLiteral(
            "hint: the bare script engine has no modules; novahost --browser run imports them");
    if (error.text.contains(QLatin1String("Unexpected reserved word")))
        return QStringLiteral("hint: modules of this browser engine can not await at their top level");
    return {};
}

} // namespace novahost
