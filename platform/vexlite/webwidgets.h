// The web widgets of the process, by the identifiers of their views.
#pragma once

#include <QString>

class KJsApiWebWidget;

namespace vexlite {
/// The web widget that shows the view `viewId`, which is IVEXBrowser::BrowserId() of the pages in it; null when there is
/// none. Owned by the suite, which may destroy it whenever the caller lets others run. [GUI thread]
KJsApiWebWidget* GetWebWidget(const QString& viewId);
} // namespace vexlite
