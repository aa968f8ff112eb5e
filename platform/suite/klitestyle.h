// The display scale in lengths: physical pixels for CSS pixels.
#pragma once

#include <QRect>

/// [GUI thread] for all.
class KLiteStyle {
public:
    /// Physical pixels for each CSS pixel, above 0.
    static double dpi();
    static double dpiScaled(double length);
    static QSize dpiScaledSize(int width, int height);
    static QRect dpiScaledRect(int x, int y, int width, int height);
};
