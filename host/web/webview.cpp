#include "host/web/webview.h"

#include <QChildEvent>
#include <QDialog>
#include <QVBoxLayout>
#include <QWebEngineScriptCollection>
#include <QWebEngineSettings>

namespace engine::web {

namespace {

const QString ScrollBarsScript = QStringLiteral("scroll bars");

/// Destroys the view now, or as soon as the browser does not wait for anything.
void destroyLater(QWebEngineView* view)
{
    QTimer::singleShot(0, view, [view] {
        if (BrowserWaits::any()) {
            constexpr int AgainMs = 20;
            QTimer::singleShot(AgainMs, view, [view] { destroyLater(view); });
            return;
        }
        delete view;
    });
}

QWebEngineScript scrollBarsScript(bool horizontal, bool vertical)
{
    QWebEngineScript script;
    script.setName(ScrollBarsScript);
    script.setInjectionPoint(QWebEngineScript::DocumentReady);
    // Beside the page's own script, which must not find or stop it.
    script.setWorldId(QWebEngineScript::ApplicationWorld);
    // A made sheet: the page's content security policy may refuse elements with styles.
    script.setSourceCode(
        QStringLiteral("(() => {"
                       "self.scrollBars = self.scrollBars ?? new CSSStyleSheet();"
                       "scrollBars.replaceSync('%1%2');"
                       "if (!document.adoptedStyleSheets.includes(scrollBars))"
                       "document.adoptedStyleSheets = [...document.adoptedStyleSheets, scrollBars]; })()")
            .arg(horizontal ? QString() : QStringLiteral("::-webkit-scrollbar:horizontal{display:none}"),
                vertical ? QString() : QStringLiteral("::-webkit-scrollbar:vertical{display:none}")));
    return script;
}

} // namespace

/// Says when the widget for the mouse is another one: the browser makes one for each renderer.
class WebView::Widget final : public QWebEngineView {
public:
    explicit Widget(WebView& view)
        : m_owner(&view)
    {
    }
    void forgetOwner() { m_owner = nullptr; }

private:
    bool event(QEvent* event) override
    {
        const bool done = QWebEngineView::event(event);
        if (event->type() == QEvent::ChildPolished && m_owner && m_owner->m_host.inputWidgetChanged) {
            QTimer::singleShot(0, this, [this] {
                if (m_owner && m_owner->m_host.inputWidgetChanged)
                    m_owner->m_host.inputWidgetChanged();
            });
        }
        return done;
    }

    WebView* m_owner;
};

/// What the suite gets. It may be destroyed with its parent while the browser waits; the page ends with it, the view with its
/// owner.
class WebView::Holder final : public QWidget {
public:
    explicit Holder(QWebEngineView* view)
        : m_view(view)
    {
        auto* layout = new QVBoxLayout(this);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(view);
        setFocusProxy(view);
    }
    ~Holder() override { release(); }
    void release()
    {
        if (!m_view)
            return;
        static_cast<WebPage*>(m_view->page())->retire();
        setFocusProxy(nullptr);
        m_view->hide();
        m_view->setParent(nullptr);
        m_view = nullptr;
    }

private:
    QPointer<QWebEngineView> m_view;
};

WebView::WebView(QWebEngineProfile* profile, Bridge::Host bridge, WebPage::Console console, ViewHost host)
    : m_host(std::move(host))
    , m_view(new Widget(*this))
    , m_holder(new Holder(m_view))
    , m_page(nullptr)
{
    bridge.wakeTop = [this](const QString& origin) {
        // The page may be another one by now.
        if (m_page->isLive())
            m_page->runJavaScript(
                QStringLiteral("self.origin==='%1'&&self.__novaWake&&__novaWake()").arg(origin));
    };
    m_page = new WebPage(profile, std::move(bridge), std::move(console));
    m_page->setParent(m_view);
    m_view->setPage(m_page);
    m_view->setContextMenuPolicy(Qt::NoContextMenu);
    QObject::connect(m_page, &QWebEnginePage::titleChanged, m_view, [this](const QString& title) {
        if (m_host.titleChanged)
            m_host.titleChanged(title);
    });
    QObject::connect(m_page, &QWebEnginePage::windowCloseRequested, m_view, [this] {
        if (m_host.closeRequested)
            m_host.closeRequested();
    });
    QObject::connect(m_page, &QWebEnginePage::loadFinished, m_view, [this](bool ok) {
        if (loaded)
            loaded(ok);
        // So ends, too, what mayGoTo has refused.
        if (!ok && !m_hasLoaded && m_host.failed)
            m_host.failed();
        m_hasLoaded = m_hasLoaded || ok;
    });
    QObject::connect(m_page, &QWebEnginePage::renderProcessTerminated, m_view, [this] {
        if (m_host.failed)
            m_host.failed();
    });
    m_page->setGuard(m_host.mayGoTo);
}

WebView::~WebView()
{
    // Nothing of the page comes any more, though it may live a little longer.
    QObject::disconnect(m_page, nullptr, m_view, nullptr);
    static_cast<Widget*>(m_view)->forgetOwner();
    m_page->retire();
    // The browser waits for them.
    for (QDialog* dialog : m_view->findChildren<QDialog*>())
        dialog->reject();
    if (m_holder)
        m_holder->release();
    delete m_holder;
    destroyLater(m_view);
}

QWidget* WebView::widget()
{
    return m_holder;
}

void WebView::load(const QUrl& url)
{
    m_page->load(url);
}

void WebView::setBackgroundColor(const QColor& color)
{
    m_page->setBackgroundColor(color);
}

void WebView::setScrollBars(bool horizontal, bool vertical)
{
    const QWebEngineScript script = scrollBarsScript(horizontal, vertical);
    m_page->scripts().remove(m_page->scripts().findScript(ScrollBarsScript));
    // Another world of script takes half a megabyte of every view, so there is one only where a bar is hidden.
    if (horizontal && vertical && !std::exchange(m_hidesScrollBars, false))
        return;
    m_hidesScrollBars = !horizontal || !vertical;
    if (m_hidesScrollBars)
        m_page->scripts().insert(script);
    if (m_page->isLive())
        m_page->runJavaScript(script.sourceCode(), QWebEngineScript::ApplicationWorld);
}

void WebView::takeFocus()
{
    m_view->setFocus(Qt::OtherFocusReason);
}

void WebView::setScale(double scale)
{
    m_page->setZoomFactor(scale);
}

} // namespace engine::web
