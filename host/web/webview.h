// WebView: the browser view of one web widget.
#pragma once

#include "host/engine/webengine.h"
#include "host/web/webpage.h"

#include <QWebEngineView>

namespace engine::web {

/// When it goes its widget and page are hidden and closed at once; they are destroyed from the event loop, when nothing of the
/// browser is on the stack.
class WebView final : public View {
public:
    WebView(QWebEngineProfile* profile, Bridge::Host bridge, WebPage::Console console, ViewHost host);
    ~WebView() override;

    WebPage& page() { return *m_page; }
    /// May live a little longer than this.
    QWidget* browserView() { return m_view; }
    /// Called when the page has loaded, or failed to.
    std::function<void(bool ok)> loaded;

    QWidget* widget() override;
    QWidget* inputWidget() override { return m_view->focusProxy(); }
    void load(const QUrl& url) override;
    void setBackgroundColor(const QColor& color) override;
    void setScrollBars(bool horizontal, bool vertical) override;
    void takeFocus() override;
    void setScale(double scale) override;

private:
    class Holder;
    class Widget;

    ViewHost m_host;
    QWebEngineView* m_view;
    QPointer<Holder> m_holder;
    WebPage* m_page;
    bool m_hidesScrollBars = false;
    bool m_hasLoaded = false;
};

} // namespace engine::web
