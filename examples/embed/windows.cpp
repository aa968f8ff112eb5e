// The application's part for the windows of pages, in its smallest form: web widgets without a browser, no factory for
// their classes, one scale.
#include <suite/kjsapiwebwidget.h>
#include <suite/kjsapiwebwidgetfactory.h>
#include <suite/klitestyle.h>

class KJsApiWebWidgetPrivate {
public:
    QString viewId;
};

KJsApiWebWidget::KJsApiWebWidget(const QString& viewId, QWidget* parent, Qt::WindowFlags flags)
    : QWidget(parent, flags)
    , d(new KJsApiWebWidgetPrivate { viewId })
{
}

KJsApiWebWidget::~KJsApiWebWidget() = default;

QString KJsApiWebWidget::viewId() const
{
    return d->viewId;
}

bool KJsApiWebWidget::getEnableAutoHide() const
{
    return true;
}

bool KJsApiWebWidget::setWindowBackgroundColor(unsigned)
{
    return false;
}

void KJsApiWebWidget::beforeShow() { }
void KJsApiWebWidget::takeFocus() { }
void KJsApiWebWidget::pageReady() { }
void KJsApiWebWidget::setResizeable(bool) { }
void KJsApiWebWidget::setRoundFillColor(const QColor&) { }
void KJsApiWebWidget::setDisableScrollBar(bool) { }
void KJsApiWebWidget::setDisableXScrollBar(bool) { }
void KJsApiWebWidget::setDisableYScrollBar(bool) { }
void KJsApiWebWidget::addDragArea(const QRect&) { }
void KJsApiWebWidget::clearDragArea() { }
void KJsApiWebWidget::addBlackDragArea(const QRect&) { }
void KJsApiWebWidget::clearBlackDragArea() { }
void KJsApiWebWidget::enableDragEnter(bool) { }
void KJsApiWebWidget::initNativeAttributes() { }
void KJsApiWebWidget::onClose() { }

bool KJsApiWebWidget::event(QEvent* event)
{
    return QWidget::event(event);
}

KJsApiWebWidgetFactoryItemBase::KJsApiWebWidgetFactoryItemBase(const QString& className)
    : m_className(className)
{
}

KJsApiWebWidgetFactoryItemBase::~KJsApiWebWidgetFactoryItemBase() = default;

void KJsApiWebWidgetFactory::registerWidget(const QString&, KJsApiWebWidgetFactoryItemBase*) { }

void KJsApiWebWidgetFactory::unregisterWidget(const QString&, KJsApiWebWidgetFactoryItemBase*) { }

bool KJsApiWebWidgetFactory::isClassRegistered(const QString&)
{
    return false;
}

KJsApiWebWidget* KJsApiWebWidgetFactory::createWidget(const QString&, const QString&, QWidget*)
{
    return nullptr;
}

double KLiteStyle::dpi()
{
    return 1;
}

double KLiteStyle::dpiScaled(double length)
{
    return length;
}

QSize KLiteStyle::dpiScaledSize(int width, int height)
{
    return { width, height };
}

QRect KLiteStyle::dpiScaledRect(int x, int y, int width, int height)
{
    return { x, y, width, height };
}
