#include "webui/webwidgetkinds.h"

#include "framework/values.h"

#include <QEvent>

namespace {

const KJsApiWebWidgetFactoryItem<KJsApiDialogWebWidget> DialogItem(heapString("KJsApiDialogWebWidget"));
const KJsApiWebWidgetFactoryItem<KJsApiPopupWebWidget> PopupItem(heapString("KJsApiPopupWebWidget"));
const KJsApiWebWidgetFactoryItem<TestWebWidget> TestItem(heapString("TestWebWidget"));

} // namespace

KJsApiDialogWebWidget::KJsApiDialogWebWidget(const QString& viewId, QWidget* parent)
    : KJsApiWebWidget(viewId, parent)
{
    setWindowFlag(Qt::FramelessWindowHint);
    setAttribute(Qt::WA_DontCreateNativeAncestors);
}

KJsApiPopupWebWidget::KJsApiPopupWebWidget(const QString& viewId, QWidget* parent)
    : KJsApiWebWidget(viewId, parent, Qt::Tool | Qt::FramelessWindowHint)
{
}

void KJsApiPopupWebWidget::initNativeAttributes()
{
    KJsApiWebWidget::initNativeAttributes();
    m_hidesItself = getEnableAutoHide();
}

bool KJsApiPopupWebWidget::event(QEvent* event)
{
    const QPointer<QWidget> self(this);
    if (event->type() == QEvent::WindowDeactivate && m_hidesItself && isVisible() && !underMouse())
        hide();
    return self && KJsApiWebWidget::event(event);
}

KJsApiTabWebWidget::KJsApiTabWebWidget(const QString& viewId, QWidget* companion)
    : KJsApiWebWidget(viewId)
    , m_companion(companion)
{
    stayLoaded();
}

void KJsApiTabWebWidget::onClose()
{
    const QPointer<QWidget> companion = m_companion;
    KJsApiWebWidget::onClose();
    if (companion)
        companion->close();
}

TestWebWidget::TestWebWidget(const QString& viewId, QWidget* parent)
    : KJsApiWebWidget(viewId, parent)
{
}
