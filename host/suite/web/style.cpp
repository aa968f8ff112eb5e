#include "host/profile/profile.h"
#include "host/suite/web/scale.h"
#include "host/suite/web/webwidget.h"
#include "host/vexlite/webwidgets.h"
#include "suite/klitestyle.h"

#include <cmath>

namespace {

/// Rounds away from zero, so that a length divided by the scale and truncated is what it was. What is a pixel but for the
/// inexactness of numbers is that pixel.
int scaled(int length)
{
    constexpr double Inexactness = 1e-6;
    const double exact = KLiteStyle::dpiScaled(length);
    return static_cast<int>(exact < 0 ? std::floor(exact + Inexactness) : std::ceil(exact - Inexactness));
}

} // namespace

double KLiteStyle::dpi()
{
    return profile::current()->dpi.scale;
}

double KLiteStyle::dpiScaled(double length)
{
    return length * dpi();
}

QSize KLiteStyle::dpiScaledSize(int width, int height)
{
    return { scaled(width), scaled(height) };
}

QRect KLiteStyle::dpiScaledRect(int x, int y, int width, int height)
{
    return { QPoint(scaled(x), scaled(y)), dpiScaledSize(width, height) };
}

void suite::setScale(double scale)
{
    profile::setScale(scale);
    for (KJsApiWebWidget* widget : vexlite::webWidgets()) {
        if (engine::View* view = KJsApiWebWidgetPrivate::of(*widget).view())
            view->setScale(scale);
    }
}
