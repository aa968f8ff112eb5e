#include "suite/kjsapiwebwidget.h"

#include "host/profile/profile.h"
#include "host/suite/web/shellsignals.h"
#include "host/suite/web/webwidget.h"
#include "host/vexlite/webwidgets.h"

#include <QVBoxLayout>
#include <utility>

KJsApiWebWidget::KJsApiWebWidget(const QString& viewId, QWidget* parent, Qt::WindowFlags flags)
    : QWidget(parent, flags)
    , d(std::make_unique<KJsApiWebWidgetPrivate>(*this, viewId))
{
    setAcceptDrops(true);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    d->watchInput();
}

KJsApiWebWidget::~KJsApiWebWidget()
{
    // What the view still does, and whoever looks for the widget, finds it whole or not at all.
    vexlite::removeWebWidget(this);
    d->m_view.reset();
}

QString KJsApiWebWidget::viewId() const
{
    return d->m_viewId;
}

bool KJsApiWebWidget::getEnableAutoHide() const
{
    return profile::current()->windows.autoHide;
}

void KJsApiWebWidget::beforeShow()
{
    if (!isWindow() && window()->isHidden())
        window()->show();
}

void KJsApiWebWidget::takeFocus()
{
    if (d->m_view)
        d->m_view->takeFocus();
    else
        setFocus();
}

void KJsApiWebWidget::pageReady()
{
    if (!std::exchange(d->m_isPageReady, true))
        Q_EMIT d->pageBecameReady();
}

void KJsApiWebWidget::setResizeable(bool resizeable)
{
    if (d->m_sized)
        d->m_sized->removeEventFilter(d.get());
    d->m_isResizeable = resizeable;
    d->m_sized = window();
    d->fixSize();
    if (resizeable)
        d->m_sized = nullptr;
    else
        d->m_sized->installEventFilter(d.get());
}

bool KJsApiWebWidget::setWindowBackgroundColor(unsigned argb)
{
    d->setBackground(QColor::fromRgba(argb));
    return true;
}

void KJsApiWebWidget::setRoundFillColor(const QColor& color)
{
    d->m_roundFill = color;
    update();
}

void KJsApiWebWidget::setDisableScrollBar(bool disable)
{
    d->setScrollBars(!disable, !disable);
}

void KJsApiWebWidget::setDisableXScrollBar(bool disable)
{
    d->setScrollBars(!disable, d->m_hasYScrollBar);
}

void KJsApiWebWidget::setDisableYScrollBar(bool disable)
{
    d->setScrollBars(d->m_hasXScrollBar, !disable);
}

void KJsApiWebWidget::addDragArea(const QRect& area)
{
    d->m_dragAreas.push_back(area);
}

void KJsApiWebWidget::clearDragArea()
{
    d->m_dragAreas.clear();
}

void KJsApiWebWidget::addBlackDragArea(const QRect& area)
{
    d->m_blackDragAreas.push_back(area);
}

void KJsApiWebWidget::clearBlackDragArea()
{
    d->m_blackDragAreas.clear();
}

void KJsApiWebWidget::enableDragEnter(bool enable)
{
    d->m_mayDragIn = enable;
}

bool KJsApiWebWidget::event(QEvent* event)
{
    const QPointer<KJsApiWebWidget> self(this);
    if (event->type() == QEvent::WinIdChange && isWindow() && internalWinId())
        initNativeAttributes();
    else if (event->type() == QEvent::Paint)
        d->paint();
    const bool handled = self && QWidget::event(event);
    if (self && event->type() == QEvent::Close && event->isAccepted())
        onClose();
    if (self && isWindow())
        suite::emitShellSignal(*this, *event);
    return handled;
}

void KJsApiWebWidget::initNativeAttributes() { }

void KJsApiWebWidget::onClose() { }
