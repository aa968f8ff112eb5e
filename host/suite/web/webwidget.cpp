#include "host/suite/web/webwidget.h"

#include "host/vexlite/webwidgets.h"
#include "suite/kdrawhelper.h"
#include "suite/klitestyle.h"
#include "suite/kviewpage.h"

#include <QDragEnterEvent>
#include <QLayout>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QUrl>
#include <QWindow>
#include <algorithm>
#include <utility>

namespace {

constexpr double CornerRadius = 8;

engine::ViewMaker& viewMaker()
{
    static engine::ViewMaker maker;
    return maker;
}

suite::PageChooser& pageChooser()
{
    static suite::PageChooser chooser;
    return chooser;
}

bool contain(const std::vector<QRect>& areas, const QPoint& place)
{
    return std::any_of(areas.begin(), areas.end(), [&](const QRect& area) { return area.contains(place); });
}

/// The local files that are dragged.
QStringList localPaths(const QMimeData* data)
{
    QStringList paths;
    for (const QUrl& url : data->urls()) {
        if (url.isLocalFile())
            paths << url.toLocalFile();
    }
    return paths;
}

} // namespace

void suite::setViewMaker(engine::ViewMaker maker)
{
    viewMaker() = std::move(maker);
}

std::unique_ptr<engine::View> suite::makeView(const QString& viewId, engine::ViewHost host)
{
    return viewMaker() ? viewMaker()(viewId, std::move(host)) : nullptr;
}

void suite::setPageChooser(PageChooser choose)
{
    pageChooser() = std::move(choose);
}

bool suite::choosePage(const QString& viewId, const QUrl& page)
{
    return pageChooser() && pageChooser()(viewId, page);
}

bool kviewpage::choose(const QString& viewId, const QUrl& url)
{
    return !vexlite::GetWebWidget(viewId) && suite::choosePage(viewId, url);
}

void suite::destroyWebWidgets()
{
    // One may own others.
    while (!vexlite::webWidgets().empty())
        delete vexlite::webWidgets().back();
}

QVariant suite::PageWidget::postWebviewEvent(const QVariant& value)
{
    QMetaObject::invokeMethod(this, "sigWebviewEvent", Qt::QueuedConnection, Q_ARG(QVariant, value));
    return value;
}

KJsApiWebWidgetPrivate::KJsApiWebWidgetPrivate(KJsApiWebWidget& widget, const QString& viewId)
    : m_widget(widget)
    , m_viewId(viewId)
{
    vexlite::addWebWidget(viewId, &widget);
    QMetaObject::invokeMethod(this, "makeView", Qt::QueuedConnection);
}

KJsApiWebWidgetPrivate::~KJsApiWebWidgetPrivate() = default;

void KJsApiWebWidgetPrivate::makeView()
{
    if (!viewMaker())
        return;
    engine::ViewHost host;
    host.inputWidgetChanged = [this] { watchInput(); };
    host.titleChanged = [this](const QString& title) { m_widget.window()->setWindowTitle(title); };
    host.closeRequested = [this] { m_widget.window()->close(); };
    m_view = viewMaker()(m_viewId, std::move(host));
    if (!m_view)
        return;
    m_widget.layout()->addWidget(m_view->widget());
    m_view->setScale(KLiteStyle::dpi());
    m_view->setBackgroundColor(background());
    m_view->setScrollBars(m_hasXScrollBar, m_hasYScrollBar);
    watchInput();
}

QWidget* KJsApiWebWidgetPrivate::inputWidget() const
{
    QWidget* input = m_view ? m_view->inputWidget() : nullptr;
    return input ? input : &m_widget;
}

void KJsApiWebWidgetPrivate::watchInput()
{
    QWidget* input = inputWidget();
    if (m_input == input)
        return;
    if (m_input)
        m_input->removeEventFilter(this);
    m_input = input;
    m_input->installEventFilter(this);
    m_isMoving = false;
}

bool KJsApiWebWidgetPrivate::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_sized && event->type() == QEvent::Resize)
        followSize(*event);
    else if (watched == m_sized && event->type() == QEvent::Show)
        fixSize();
    if (watched != m_input)
        return false;
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseMove:
    case QEvent::MouseButtonRelease:
        return filterMouse(static_cast<QMouseEvent*>(event));
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
        return filterDrag(event);
    default:
        return false;
    }
}

bool KJsApiWebWidgetPrivate::isDragArea(const QPoint& place) const
{
    return contain(m_dragAreas, place) && !contain(m_blackDragAreas, place);
}

bool KJsApiWebWidgetPrivate::filterMouse(QMouseEvent* event)
{
    QWidget* window = m_widget.window();
    if (event->type() == QEvent::MouseButtonPress) {
        m_isMoving = false;
        const QPoint place = m_widget.mapFromGlobal(event->globalPos());
        if (event->button() != Qt::LeftButton || !isDragArea(place))
            return false;
        m_grabbed = event->globalPos() - window->pos();
        // The window system's own moving takes all events of the mouse until the end.
        m_isMoving = !window->windowHandle() || !window->windowHandle()->startSystemMove();
        return true;
    }
    if (!m_isMoving)
        return false;
    m_isMoving = event->buttons().testFlag(Qt::LeftButton);
    if (m_isMoving)
        window->move(event->globalPos() - m_grabbed);
    return true;
}

bool KJsApiWebWidgetPrivate::filterDrag(QEvent* event)
{
    auto* drop = static_cast<QDropEvent*>(event);
    const QStringList paths = localPaths(drop->mimeData());
    if (paths.isEmpty() && m_view)
        return false;
    if (paths.isEmpty() || !m_mayDragIn) {
        drop->ignore();
        return true;
    }
    if (event->type() == QEvent::DragEnter)
        QMetaObject::invokeMethod(&m_widget, "sigDragEnter", Qt::QueuedConnection, Q_ARG(QStringList, paths));
    drop->acceptProposedAction();
    return !m_view;
}

void KJsApiWebWidgetPrivate::setScrollBars(bool horizontal, bool vertical)
{
    m_hasXScrollBar = horizontal;
    m_hasYScrollBar = vertical;
    if (m_view)
        m_view->setScrollBars(horizontal, vertical);
}

void KJsApiWebWidgetPrivate::setBackground(const QColor& color)
{
    m_background = color;
    followTheme();
}

QColor KJsApiWebWidgetPrivate::background() const
{
    return m_background.isValid()
        ? m_background
        : KDrawHelper::getColorFromTheme(QStringLiteral("CommonPalette"), QStringLiteral("base"), Qt::white);
}

void KJsApiWebWidgetPrivate::followTheme()
{
    if (m_view)
        m_view->setBackgroundColor(background());
    m_widget.update();
}

void KJsApiWebWidgetPrivate::followSize(const QEvent& resize)
{
    if (!resize.spontaneous())
        m_wantedSize = m_sized->size();
    fixSize();
    // A window manager that had not heard of the new limits has refused: it is asked again, once.
    const bool isRefused = resize.spontaneous() && m_wantedSize.isValid() && m_wantedSize != m_sized->size();
    const QSize wanted = resize.spontaneous() ? std::exchange(m_wantedSize, QSize()) : QSize();
    if (isRefused && !(m_sized->windowState() & ~Qt::WindowActive))
        QMetaObject::invokeMethod(
            m_sized, [window = m_sized.data(), wanted] { window->resize(wanted); }, Qt::QueuedConnection);
}

void KJsApiWebWidgetPrivate::fixSize()
{
    QWindow* window = m_sized ? m_sized->windowHandle() : nullptr;
    if (!window)
        return;
    // Only what the window system is told: for setters of the size the widget's own limits hold.
    window->setMinimumSize(m_isResizeable ? m_sized->minimumSize() : m_sized->size());
    window->setMaximumSize(m_isResizeable ? m_sized->maximumSize() : m_sized->size());
    // Qt keeps the limits to itself until something else is sent to the window system.
    m_sized->update();
}

void KJsApiWebWidgetPrivate::paint()
{
    QPainter painter(&m_widget);
    painter.fillRect(m_widget.rect(), m_roundFill.isValid() ? m_roundFill : background());
    if (!m_roundFill.isValid())
        return;
    QPainterPath inside;
    inside.addRoundedRect(m_widget.rect(), CornerRadius, CornerRadius);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(inside, background());
}
