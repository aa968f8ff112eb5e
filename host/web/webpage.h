// WebPage: a page of the browser, which hands the requests of its documents to the bridge.
#pragma once

#include "host/web/bridge.h"

#include <QWebEnginePage>

namespace engine::web {

/// While the browser waits for the return of one of our functions nothing of it may be destroyed. [GUI thread]
class BrowserWaits {
public:
    BrowserWaits() { ++s_depth; }
    ~BrowserWaits() { --s_depth; }
    BrowserWaits(const BrowserWaits&) = delete;
    BrowserWaits& operator=(const BrowserWaits&) = delete;
    static bool any() { return s_depth > 0; }

private:
    inline static int s_depth = 0;
};

class WebPage final : public QWebEnginePage {
public:
    using Console = std::function<void(const QString& line, bool isError)>;
    WebPage(QWebEngineProfile* profile, Bridge::Host host, Console console);

    Bridge& bridge() { return m_bridge; }
    /// Whether script can be run: into a dead renderer it would keep the page from ever running any.
    bool isLive() const { return m_isLive; }
    void setQuiet() { m_isQuiet = true; }
    /// Is asked for each address that the page goes to.
    void setGuard(std::function<bool(const QUrl& url)> mayGoTo) { m_mayGoTo = std::move(mayGoTo); }
    /// Has no answers for its documents any more.
    void retire();

private:
    /// Whether the page may show dialogs. One that goes could keep itself with them.
    bool mayShowDialog();
    bool javaScriptPrompt(
        const QUrl& origin, const QString& message, const QString& given, QString* result) override;
    void javaScriptAlert(const QUrl& origin, const QString& message) override;
    bool javaScriptConfirm(const QUrl& origin, const QString& message) override;
    void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel level, const QString& message, int line,
        const QString& source) override;
    bool acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) override;
    QStringList chooseFiles(
        FileSelectionMode mode, const QStringList& old, const QStringList& acceptedMimeTypes) override;

    Bridge m_bridge;
    Console m_console;
    std::function<bool(const QUrl&)> m_mayGoTo;
    static constexpr int MaximumDialogs = 20;
    int m_dialogs = 0; ///< since the page began to load
    bool m_isLive = false;
    bool m_isRetired = false;
    bool m_isQuiet = false; ///< the console's lines go elsewhere
};

/// "https://docs.example:8443" of an address: what the browser calls its origin. Empty for an address without one.
QString originOf(const QUrl& url);

} // namespace engine::web
