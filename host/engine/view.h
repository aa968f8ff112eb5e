// View: what shows the page of a web widget. The widget knows nothing else of the browser engine behind it.
#pragma once

#include <QColor>
#include <QUrl>
#include <functional>
#include <memory>

class QWidget;

namespace engine {

/// What a view shows, and what it reports to its web widget. Called from the event loop, not after the view's destruction. All
/// may be unset. [GUI thread]
struct ViewHost {
    /// A page of the suite's own, in place of what is chosen for the view's identifier. Only where a browser engine runs.
    QUrl page;
    /// The widget that gets the mouse's events and those of dragging is another one now: see View::inputWidget().
    std::function<void()> inputWidgetChanged;
    std::function<void(const QString& title)> titleChanged;
    /// The page asks for its window to be closed, as with window.close().
    std::function<void()> closeRequested;
    /// The page can not be loaded, or its process has ended.
    std::function<void()> failed;
    /// Whether the page, or a frame of it, may go to an address; asked for the first one, too. The browser waits for it: the
    /// view must not be destroyed meanwhile.
    std::function<bool(const QUrl& url)> mayGoTo;
};

/// A browser view. It may be destroyed at any time, also while its page waits in a call. [GUI thread]
class View {
public:
    virtual ~View() = default;

    /// The widget that shows the page, owned by the view, which takes it out of its parent before it goes.
    virtual QWidget* widget() = 0;
    /// The widget inside that gets the mouse's and dragging events, for event filters; null while there is none. It may
    /// go at any time.
    virtual QWidget* inputWidget() = 0;
    virtual void load(const QUrl& url) = 0;
    /// The colour behind the page, seen where the page has none.
    virtual void setBackgroundColor(const QColor& color) = 0;
    /// Shows or hides the page's own scroll bars; for this page and those that follow it.
    virtual void setScrollBars(bool horizontal, bool vertical) = 0;
    /// Gives the keyboard focus to the page.
    virtual void takeFocus() = 0;
    /// Physical pixels for each CSS pixel.
    virtual void setScale(double scale) = 0;
};

/// Makes the view of the web widget with this identifier, which begins to load its page, if it has one. May return null:
/// the widget stays empty.
using ViewMaker = std::function<std::unique_ptr<View>(const QString& viewId, ViewHost host)>;

} // namespace engine
