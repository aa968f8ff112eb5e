// What a web widget has inside, for the suite itself: its view, and what pages have set.
#pragma once

#include "host/engine/view.h"
#include "suite/kjsapiwebwidget.h"

#include <QColor>
#include <QPointer>
#include <vector>

class QEvent;
class QMouseEvent;

namespace suite {

/// Has all web widgets made from now on show a view of that maker. Without one they are empty. [GUI thread]
void setViewMaker(engine::ViewMaker maker);
/// A view that belongs to no web widget, so that no page finds it. Null without a maker, or when that makes none.
std::unique_ptr<engine::View> makeView(const QString& viewId, engine::ViewHost host);
/// Has a view that is made later show a page, where `choose` can have it done: while a browser engine runs.
using PageChooser = std::function<bool(const QString& viewId, const QUrl& page)>;
void setPageChooser(PageChooser choose);
bool choosePage(const QString& viewId, const QUrl& page);
/// Destroys all web widgets, for the end of the suite. [GUI thread]
void destroyWebWidgets();

/// The web widget of a page that the suite itself opens.
class PageWidget final : public KJsApiWebWidget {
    Q_OBJECT

public:
    using KJsApiWebWidget::KJsApiWebWidget;

    /// For pages, by invokeGeneralMethod: emits sigWebviewEvent with the value, from the event loop, and returns the value.
    Q_INVOKABLE QVariant postWebviewEvent(const QVariant& value);
};

} // namespace suite

/// Lives as long as its widget. [GUI thread]
class KJsApiWebWidgetPrivate final : public QObject {
    Q_OBJECT

public:
    KJsApiWebWidgetPrivate(KJsApiWebWidget& widget, const QString& viewId);
    ~KJsApiWebWidgetPrivate() override;
    static KJsApiWebWidgetPrivate& of(KJsApiWebWidget& widget) { return *widget.d; }

    /// Null before the event loop has run, and where there is no engine.
    engine::View* view() const { return m_view.get(); }
    /// The theme is another one: repaints what has its colours.
    void followTheme();
    /// Whether the page has said that it has finished loading.
    bool isPageReady() const { return m_isPageReady; }

Q_SIGNALS:
    void pageBecameReady();

private:
    friend class KJsApiWebWidget;

    bool eventFilter(QObject* watched, QEvent* event) override;
    Q_INVOKABLE void makeView();
    void watchInput();
    /// Where the view gets its input; the web widget itself without one.
    QWidget* inputWidget() const;
    bool filterMouse(QMouseEvent* event);
    bool filterDrag(QEvent* event);
    bool isDragArea(const QPoint& place) const;
    void setScrollBars(bool horizontal, bool vertical);
    void setBackground(const QColor& color);
    QColor background() const;
    /// Keeps the user from changing the window's size, or no longer.
    void fixSize();
    /// Of a window whose size is fixed: another size is fixed from now on.
    void followSize(const QEvent& resize);
    void paint();

    KJsApiWebWidget& m_widget;
    const QString m_viewId;
    std::unique_ptr<engine::View> m_view;
    QPointer<QWidget> m_input; ///< is filtered
    QPointer<QWidget> m_sized; ///< the window whose size is fixed
    std::vector<QRect> m_dragAreas;
    std::vector<QRect> m_blackDragAreas;
    QPoint m_grabbed;   ///< where in the window the mouse holds it
    QSize m_wantedSize; ///< what was last set, until the window system has confirmed or refused it
    bool m_isMoving = false;
    bool m_mayDragIn = false;
    bool m_isPageReady = false;
    bool m_isResizeable = true;
    bool m_hasXScrollBar = true;
    bool m_hasYScrollBar = true;
    QColor m_background; ///< invalid: that of the theme
    QColor m_roundFill;  ///< invalid: the corners are not round
};
