// The screens of the desktop as pages see them.
#pragma once

#include "framework/structs.h"

#include <vector>

class QScreen;
class KJsApiWebWidget;
struct JSContextEnv;

namespace jsapi {

struct ScreenGeometry {
    QString name;
    std::int32_t x;
    std::int32_t y;
    std::int32_t width;
    std::int32_t height;
    std::int32_t availableX;
    std::int32_t availableY;
    std::int32_t availableWidth;
    std::int32_t availableHeight;
    double scale;
    bool isPrimary;
    static constexpr auto fields()
    {
        using Self = ScreenGeometry;
        return std::tuple(property("name", &Self::name, "the name of its connector: `HDMI-1`"),
            property("x", &Self::x, "from the left of the desktop; may be negative"),
            property("y", &Self::y, "from the top of the desktop; may be negative"),
            property("width", &Self::width, ""), property("height", &Self::height, ""),
            property("availableX", &Self::availableX, "without the desktop's panels"),
            property("availableY", &Self::availableY, "without the desktop's panels"),
            property("availableWidth", &Self::availableWidth, "without the desktop's panels"),
            property("availableHeight", &Self::availableHeight, "without the desktop's panels"),
            property("scale", &Self::scale, "physical pixels for each CSS pixel"),
            property("isPrimary", &Self::isPrimary, "whether it is the one for the desktop's panel"));
    }
};

ScreenGeometry describeScreen(const QScreen& screen);

/// The web widget that shows a page, null when there is none. Borrowed until the caller lets others run. [GUI thread]
KJsApiWebWidget* webWidgetOf(const JSContextEnv& page);

} // namespace jsapi
