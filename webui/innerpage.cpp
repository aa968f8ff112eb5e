#include "webui/innerpage.h"

#include "local/filedialogs.h"
#include "local/launch.h"
#include "suite/kviewpage.h"
#include "vexlite/webwidgets.h"
#include "webui/webwidgetkinds.h"
#include "webui/windowvalues.h"

#include <QApplication>

namespace jsapi {

namespace {

/// An identifier that no view has.
QString makeViewId()
{
    static int number = 0;
    QString viewId;
    do
        viewId = heapString("inner-page-%1").arg(++number);
    while (vexlite::GetWebWidget(viewId));
    return viewId;
}

} // namespace

Answer<QString> openInnerPage(const JSContextEnv& page, const QUrl& address, const InnerPageOptions& options)
{
    if (!isPermitted(page, KPagePermission::OpenAddress, address.toString(QUrl::FullyEncoded)))
        return NotPermitted;
    if (!mayLaunch(page))
        return TooManyLaunches;
    const QString viewId = makeViewId();
    if (!qobject_cast<QApplication*>(QCoreApplication::instance()) || !kviewpage::choose(viewId, address))
        return NoInnerPage;
    // Whoever watches the suite's windows may destroy it at any step.
    const QPointer<KJsApiWebWidget> window(new KJsApiTabWebWidget(viewId, nullptr));
    window->setAttribute(Qt::WA_DeleteOnClose);
    window->setProperty(KWebWidgetParamExtraProperty, options.paramExtra);
    const QString title = options.title.isEmpty() ? address.toDisplayString() : options.title;
    if (window)
        window->setWindowTitle(title.left(MaxTitle));
    if (window)
        window->resize(scaleSize(options.width, options.height));
    if (window)
        window->beforeShow();
    if (window)
        window->show();
    if (!window)
        return NoInnerPage;
    return viewId;
}

} // namespace jsapi
