#include "host/vexlite/webwidgets.h"

#include <algorithm>

namespace vexlite {

namespace {

struct Shown {
    QString viewId;
    KJsApiWebWidget* widget;
};

std::vector<Shown>& shown()
{
    static std::vector<Shown> list;
    return list;
}

} // namespace

void addWebWidget(const QString& viewId, KJsApiWebWidget* widget)
{
    shown().push_back({ viewId, widget });
}

void removeWebWidget(KJsApiWebWidget* widget)
{
    std::erase_if(shown(), [&](const Shown& entry) { return entry.widget == widget; });
}

std::vector<KJsApiWebWidget*> webWidgets()
{
    std::vector<KJsApiWebWidget*> widgets;
    for (const Shown& entry : shown())
        widgets.push_back(entry.widget);
    return widgets;
}

KJsApiWebWidget* GetWebWidget(const QString& viewId)
{
    const auto found = std::find_if(
        shown().begin(), shown().end(), [&](const Shown& entry) { return entry.viewId == viewId; });
    return found == shown().end() ? nullptr : found->widget;
}

} // namespace vexlite
