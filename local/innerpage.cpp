#include "local/innerpage.h"

#include "framework/stayloaded.h"
#include "local/csspixels.h"
#include "local/filedialogs.h"
#include "local/launch.h"
#include "suite/kjsapiwebwidget.h"
#include "suite/kviewpage.h"
#include "vexlite/webwidgets.h"

#include <QApplication>
#include <QPointer>

namespace jsapi {

namespace {

/// The suite's web widget as it is. The suite owns it, and it has its code here.
class InnerPageWindow final : public KJsApiWebWidget {
public:
    explicit InnerPageWindow(const QString& viewId)
        : KJsApiWebWidget(viewId)
    {
        stayLoaded();
    }
};

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
    const QPointer<KJsApiWebWidget> window(new InnerPageWindow(viewId));
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
