// Colours as CSS writes them.
#pragma once

#include <QColor>

namespace suite {

/// Reads "#rgb", "#rgba", "#rrggbb", "#rrggbbaa", "rgb(1, 2, 3)", "rgba(1, 2, 3, 0.5)" or a name; invalid for all else.
QColor readCssColor(const QString& text);
/// "rgba(1,2,3,0.5)".
QString formatCssColor(const QColor& color);

} // namespace suite
