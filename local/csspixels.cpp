#include "local/csspixels.h"

#include "suite/klitestyle.h"

namespace jsapi {

QSize scaleSize(std::int32_t width, std::int32_t height, int largest)
{
    const QSize scaled = KLiteStyle::dpiScaledSize(qBound(0, width, largest), qBound(0, height, largest));
    return scaled.boundedTo({ largest, largest });
}

QRect scaleRect(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height)
{
    const auto bounded = [](int place) { return qBound(-FarthestPlace, place, FarthestPlace); };
    const QRect scaled = KLiteStyle::dpiScaledRect(
        bounded(x), bounded(y), qBound(0, width, LargestWindow), qBound(0, height, LargestWindow));
    return { QPoint(bounded(scaled.x()), bounded(scaled.y())),
        scaled.size().boundedTo({ LargestWindow, LargestWindow }) };
}

std::int32_t toCssPixels(int length)
{
    // Whatever the suite says: neither a division by zero nor more than an integer holds.
    constexpr double SmallestScale = 0.01;
    const double pixels = length / qMax(SmallestScale, KLiteStyle::dpi());
    return static_cast<std::int32_t>(qBound(-2e9, pixels, 2e9));
}

} // namespace jsapi
