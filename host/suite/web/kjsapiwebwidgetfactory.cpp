#include "suite/kjsapiwebwidgetfactory.h"

#include "suite/kjsapiwebwidget.h"
#include "vexlite/webwidgets.h"

#include <QMap>

namespace {

QMap<QString, KJsApiWebWidgetFactoryItemBase*>& items()
{
    static QMap<QString, KJsApiWebWidgetFactoryItemBase*> map;
    return map;
}

} // namespace

KJsApiWebWidgetFactoryItemBase::KJsApiWebWidgetFactoryItemBase(const QString& className)
    : m_className(className)
{
}

KJsApiWebWidgetFactoryItemBase::~KJsApiWebWidgetFactoryItemBase() = default;

void KJsApiWebWidgetFactory::registerWidget(const QString& className, KJsApiWebWidgetFactoryItemBase* item)
{
    items()[className] = item;
}

void KJsApiWebWidgetFactory::unregisterWidget(const QString& className, KJsApiWebWidgetFactoryItemBase* item)
{
    if (items().value(className) == item)
        items().remove(className);
}

bool KJsApiWebWidgetFactory::isClassRegistered(const QString& className)
{
    return items().contains(className);
}

KJsApiWebWidget* KJsApiWebWidgetFactory::createWidget(
    const QString& className, const QString& viewId, QWidget* parent)
{
    KJsApiWebWidgetFactoryItemBase* item = items().value(className);
    if (!item || vexlite::GetWebWidget(viewId))
        return nullptr;
    KJsApiWebWidget* widget = item->create(viewId, parent);
    if (widget && !widget->isWindow())
        widget->setWindowFlags(widget->windowFlags() | (parent ? Qt::Dialog : Qt::Window));
    return widget;
}
