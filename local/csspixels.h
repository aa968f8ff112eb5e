// Lengths of windows and screens: pages pass and get CSS pixels, the suite and Qt have physical ones. No result makes a
// window that the window system could not bear.
#pragma once

#include <QRect>
#include <QSize>
#include <cstdint>

namespace jsapi {

// Physical pixels.
constexpr int LargestWindow = 16'384;    ///< the window system has to keep its content
constexpr int LargestMaximum = 0xffffff; ///< what Qt takes for no limit at all
constexpr int FarthestPlace = 32'767;    ///< what the window system counts to

/// In physical pixels, at most `largest` each way.
QSize scaleSize(std::int32_t width, std::int32_t height, int largest = LargestWindow);
QRect scaleRect(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height);

/// A length in physical pixels in CSS pixels, truncated.
std::int32_t toCssPixels(int length);

} // namespace jsapi
