// Which web widget shows which view. The suite says it, whose class they are.
#pragma once

#include "vexlite/webwidgets.h"

#include <vector>

namespace vexlite {

// All [GUI thread].

/// Where several have one identifier the first counts, so that no page can take the place of another one's view.
void addWebWidget(const QString& viewId, KJsApiWebWidget* widget);
/// Does nothing for a widget that was not added.
void removeWebWidget(KJsApiWebWidget* widget);
/// All of them, in the order of their adding.
std::vector<KJsApiWebWidget*> webWidgets();

} // namespace vexlite
