#include "host/suite/web/webshell.h"

#include "host/suite/web/shellsignals.h"
#include "host/suite/web/webwidget.h"
#include "suite/kjsapiwebwidgetfactory.h"

#include <QCoreApplication>
#include <QPointer>
#include <QVBoxLayout>

namespace suite {

namespace {

template <typename Change> void changeParents(Change change)
{
    static const QByteArray property = QByteArray(KWebWidgetParentsProperty) + "MainWindow";
    QVariantList windows = qApp->property(property).toList();
    change(windows);
    qApp->setProperty(property, windows);
}

} // namespace

WebShell::WebShell(const QString& title, const QString& viewId)
{
    setWindowTitle(title);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(new PageWidget(viewId, this));
    changeParents([&](QVariantList& windows) { windows << QVariant::fromValue<QWidget*>(this); });
}

WebShell::~WebShell()
{
    changeParents([&](QVariantList& windows) { windows.removeAll(QVariant::fromValue<QWidget*>(this)); });
}

KJsApiWebWidget* WebShell::webWidget() const
{
    return findChild<KJsApiWebWidget*>(QString(), Qt::FindDirectChildrenOnly);
}

bool WebShell::event(QEvent* event)
{
    const QPointer<WebShell> self(this);
    const bool handled = QWidget::event(event);
    if (!self)
        return handled;
    emitShellSignal(*this, *event);
    if (event->type() == QEvent::Close && event->isAccepted() && event->spontaneous())
        QMetaObject::invokeMethod(this, "closedByUser", Qt::QueuedConnection);
    return handled;
}

} // namespace suite
