#include "host/web/webpage.h"

#include <QGuiApplication>

namespace engine::web {

namespace {

const QString BridgeMessage = QStringLiteral("nova");

} // namespace

QString originOf(const QUrl& url)
{
    if (url.scheme().isEmpty() || url.host().isEmpty() || url.scheme() == QLatin1String("file"))
        return {};
    QString origin = url.scheme() + QStringLiteral("://") + url.host(QUrl::FullyEncoded);
    if (url.port() >= 0)
        origin += QLatin1Char(':') + QString::number(url.port());
    return origin;
}

WebPage::WebPage(QWebEngineProfile* profile, Bridge::Host host, Console console)
    : QWebEnginePage(profile)
    , m_bridge([&] {
        auto opened = std::move(host.opened);
        host.opened = [this, opened = std::move(opened)](Frame& frame) {
            m_isLive = true;
            opened(frame);
        };
        host.topOrigin = [this] {
            const QUrl top = url();
            return originOf(top.scheme() == QLatin1String("blob") ? QUrl(top.path()) : top);
        };
        return std::move(host);
    }())
    , m_console(std::move(console))
{
    connect(this, &QWebEnginePage::loadStarted, this, [this] { m_dialogs = 0; });
    connect(this, &QWebEnginePage::renderProcessTerminated, this, [this] {
        m_isLive = false;
        m_bridge.closeAll();
        m_console(
            QStringLiteral("The process of the page %1 has ended; reload it.").arg(url().toString()), true);
    });
}

void WebPage::retire()
{
    m_isRetired = m_isQuiet = true;
    m_isLive = false;
    m_bridge.closeAll();
}

// Nobody sees a dialog that is drawn into memory, so nobody could end it.
// All pages stand still while a dialog of the browser's own is open, which any frame can show.
bool WebPage::mayShowDialog()
{
    if (m_isRetired || QGuiApplication::platformName() == QLatin1String("offscreen")
        || m_dialogs > MaximumDialogs)
        return false;
    if (++m_dialogs <= MaximumDialogs)
        return true;
    m_console(QStringLiteral("The page %1 has shown %2 dialogs; it shows no more until it is loaded again.")
                  .arg(url().toString())
                  .arg(MaximumDialogs),
        true);
    return false;
}

bool WebPage::javaScriptPrompt(
    const QUrl& origin, const QString& message, const QString& given, QString* result)
{
    const BrowserWaits waits;
    if (m_isRetired)
        return false;
    if (message == BridgeMessage) {
        *result = m_bridge.request(originOf(origin), given);
        return !result->isEmpty();
    }
    return mayShowDialog() && QWebEnginePage::javaScriptPrompt(origin, message, given, result);
}

void WebPage::javaScriptAlert(const QUrl& origin, const QString& message)
{
    const BrowserWaits waits;
    if (mayShowDialog())
        QWebEnginePage::javaScriptAlert(origin, message);
}

bool WebPage::javaScriptConfirm(const QUrl& origin, const QString& message)
{
    const BrowserWaits waits;
    return mayShowDialog() && QWebEnginePage::javaScriptConfirm(origin, message);
}

QStringList WebPage::chooseFiles(
    FileSelectionMode mode, const QStringList& old, const QStringList& acceptedMimeTypes)
{
    const BrowserWaits waits;
    return mayShowDialog() ? QWebEnginePage::chooseFiles(mode, old, acceptedMimeTypes) : QStringList();
}

bool WebPage::acceptNavigationRequest(const QUrl& url, NavigationType, bool)
{
    const BrowserWaits waits;
    // A file that is dropped on a page would take its place.
    return url.scheme() != QLatin1String("file") && (!m_mayGoTo || m_isRetired || m_mayGoTo(url));
}

void WebPage::javaScriptConsoleMessage(
    JavaScriptConsoleMessageLevel level, const QString& message, int line, const QString& source)
{
    // The prelude asks in every document, also where the browser does not let it, and waits for dialogs.
    constexpr const char* OfThePrelude[] = { "Ignored call to 'prompt()'", "Blocked prompt(",
        "Synchronous XMLHttpRequest on the main thread is deprecated" };
    const bool isKnown = std::any_of(std::begin(OfThePrelude), std::end(OfThePrelude),
        [&](const char* text) { return message.startsWith(QLatin1String(text)); });
    const bool isOwn = source.startsWith(QLatin1String("nova-prelude"));
    // What no script hears of.
    const bool isOfModule = message.startsWith(QLatin1String("Failed to load module script"));
    if ((m_isQuiet && !isOfModule) || (isOwn && isKnown))
        return;
    const QString where = line > 0 ? QStringLiteral("%1:%2").arg(source).arg(line) : source;
    const QString place = source.isEmpty() || isOwn ? QString() : QStringLiteral(" (%1)").arg(where);
    m_console(message + place, level != InfoMessageLevel);
}

} // namespace engine::web
