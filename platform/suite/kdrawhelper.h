// Colours of the suite's theme.
#pragma once

#include <QColor>

/// [GUI thread]
class KDrawHelper {
public:
    /// The colour `name` of a group, "CommonPalette" or "CommonThemePalette"; `fallback`, which may be invalid, where there
    /// is none.
    static QColor getColorFromTheme(const QString& group, const QString& name, const QColor& fallback);
};
