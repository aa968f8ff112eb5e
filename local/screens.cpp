#include "local/screens.h"

#include "framework/pagewatch.h"
#include "local/csspixels.h"
#include "suite/klitestyle.h"
#include "vexlite/webwidgets.h"

#include <QGuiApplication>
#include <QScreen>

namespace jsapi {

ScreenGeometry describeScreen(const QScreen& screen)
{
    const QRect all = screen.geometry();
    const QRect available = screen.availableGeometry();
    return { screen.name(), toCssPixels(all.x()), toCssPixels(all.y()), toCssPixels(all.width()),
        toCssPixels(all.height()), toCssPixels(available.x()), toCssPixels(available.y()),
        toCssPixels(available.width()), toCssPixels(available.height()), KLiteStyle::dpi(),
        &screen == QGuiApplication::primaryScreen() };
}

KJsApiWebWidget* webWidgetOf(const JSContextEnv& page)
{
    const IVEXBrowser* browser = browserOf(page);
    return browser ? vexlite::GetWebWidget(browser->BrowserId()) : nullptr;
}

} // namespace jsapi
