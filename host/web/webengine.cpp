#include "host/engine/webengine.h"

#include "host/web/prelude.h"
#include "host/web/schemes.h"
#include "host/web/scriptpage.h"
#include "host/web/webview.h"

#include <QDateTime>
#include <QGuiApplication>
#include <QWebEngineProfile>
#include <QWebEngineScriptCollection>
#include <QWebEngineSettings>

namespace engine::web {

namespace {

QWebEngineScript preludeScript(const char* source)
{
    QWebEngineScript script;
    script.setName(QStringLiteral("nova-prelude"));
    script.setInjectionPoint(QWebEngineScript::DocumentCreation);
    script.setWorldId(QWebEngineScript::MainWorld);
    script.setRunsOnSubFrames(true);
    script.setSourceCode(QString::fromUtf8(source));
    return script;
}

/// Of this process: what the browser would say to its makers, and drawing where there is no display.
void setUpEnvironment()
{
    QByteArray flags = qgetenv("QTWEBENGINE_CHROMIUM_FLAGS");
    // Its own remarks are not the user's concern.
    flags += " --log-level=3 --disable-background-networking --disable-component-update --disable-sync"
             " --disable-domain-reliability";
    if (QGuiApplication::platformName() == QLatin1String("offscreen")) {
        flags += " --disable-gpu";
        if (qEnvironmentVariableIsEmpty("QT_QUICK_BACKEND"))
            qputenv("QT_QUICK_BACKEND", "software");
    }
    qputenv("QTWEBENGINE_CHROMIUM_FLAGS", flags);
}

class Engine final : public WebEngine {
public:
    explicit Engine(WebEngineHost host)
        : m_host(std::move(host))
        , m_profile(new QWebEngineProfile)
        , m_files(
              m_host.directory, [this](const QUrl& url, const QString& path) { reportMissing(url, path); })
        , m_images(m_host.skinImage)
        , m_bridges([this](const QString& frame) { return findBridge(frame); })
    {
        m_profile->installUrlSchemeHandler("nova", &m_files);
        m_profile->installUrlSchemeHandler("nova-bridge", &m_bridges);
        m_profile->installUrlSchemeHandler(SkinImageScheme, &m_images);
        QWebEngineSettings* settings = m_profile->settings();
        // Of files that do not say it.
        settings->setDefaultTextEncoding(QStringLiteral("utf-8"));
        // Else a click could start any program that is registered for a scheme.
        settings->setUnknownUrlSchemePolicy(QWebEngineSettings::DisallowUnknownUrlSchemes);
        settings->setAttribute(QWebEngineSettings::ShowScrollBars, true);
        settings->setAttribute(QWebEngineSettings::FocusOnNavigationEnabled, false);
    }

    ~Engine() override
    {
        // Whatever still waits for its end, before the profile that it uses.
        for (const QPointer<QWidget>& widget : m_widgets)
            delete widget;
    }

    std::unique_ptr<Page> openPage(const PageOptions& options, PageHost host) override
    {
        const QString viewId = options.browser.browserId;
        auto page =
            std::make_unique<ScriptPage>(options, std::move(host), [this, viewId](const ScriptPage& gone) {
                if (m_scripts.value(viewId) == &gone)
                    m_scripts.remove(viewId);
            });
        m_scripts[viewId] = page.get();
        return page;
    }

    void collectGarbage() override { }

    std::unique_ptr<View> makeView(const QString& viewId, ViewHost viewHost) override
    {
        const QUrl own = viewHost.page;
        const auto facts = std::make_shared<vexlite::BrowserFacts>(m_host.browser(viewId));
        VEXBrowserTimes& times = facts->times;
        Bridge::Host bridge;
        bridge.browser = [facts] { return *facts; };
        bridge.rights = m_host.rights;
        const bool isScript = own.isEmpty() && m_scripts.contains(viewId);
        bridge.opened = [this, viewId, facts, isScript](Frame& frame) {
            facts->times.loadReady = QDateTime::currentMSecsSinceEpoch();
            m_host.opened(viewId);
            ScriptPage* script = isScript ? m_scripts.value(viewId) : nullptr;
            if (script && frame.origin() == QLatin1String(ScriptOrigin))
                script->attach(frame);
        };
        auto view = std::make_unique<WebView>(
            m_profile.get(), std::move(bridge), m_host.console, std::move(viewHost));
        m_widgets.removeAll(nullptr);
        m_widgets.append(view->browserView());
        WebPage& page = view->page();
        page.scripts().insert(preludeScript(isScript ? scriptPrelude : documentPrelude));
        QObject::connect(&page, &QWebEnginePage::loadStarted, &page,
            [facts] { facts->times.loadStart = QDateTime::currentMSecsSinceEpoch(); });
        view->loaded = [this, viewId, facts, &page](bool ok) {
            facts->times.loadFinish = QDateTime::currentMSecsSinceEpoch();
            page.bridge().updateBrowser(*facts);
            m_host.loaded(viewId, ok);
        };
        times.creationFinish = QDateTime::currentMSecsSinceEpoch();
        m_pages.removeAll(nullptr);
        m_pages.append(&page);
        QUrl url = own;
        if (isScript)
            url = QLatin1String(ScriptOrigin) + QLatin1Char('/');
        else if (own.isEmpty())
            url = m_host.firstPage(viewId);
        if (isScript) {
            page.setQuiet();
            m_scripts[viewId]->setWorld(
                [page = QPointer<WebPage>(&page)](const QString& source, const auto& done) {
                    if (page && page->isLive())
                        page->runJavaScript(source, done);
                });
        }
        if (!url.isEmpty())
            view->load(url);
        return view;
    }

private:
    // As the browser's own console does; it does not say it of a module that another one imports.
    void reportMissing(const QUrl& url, const QString& path)
    {
        if (url.host() == QUrl(QLatin1String(ScriptOrigin)).host())
            m_host.console(
                QStringLiteral("Failed to load %1: there is no file %2").arg(url.toString(), path), true);
    }

    Bridge* findBridge(const QString& frame)
    {
        for (const QPointer<WebPage>& page : qAsConst(m_pages)) {
            if (page && page->bridge().has(frame))
                return &page->bridge();
        }
        return nullptr;
    }

    WebEngineHost m_host;
    std::unique_ptr<QWebEngineProfile> m_profile; ///< keeps nothing on disk
    FilesHandler m_files;
    SkinImagesHandler m_images;
    BridgeHandler m_bridges;
    QHash<QString, ScriptPage*> m_scripts; ///< by view
    QList<QPointer<WebPage>> m_pages;      ///< several may show views of the same identifier
    QList<QPointer<QWidget>> m_widgets;
};

} // namespace

} // namespace engine::web

extern "C" Q_DECL_EXPORT engine::WebEngine* NovaMakeWebEngine(engine::WebEngineHost host)
{
    engine::web::setUpEnvironment();
    engine::web::registerSchemes();
    return new engine::web::Engine(std::move(host));
}
