// The suite's theme: its colours, gradients, hints and icons.
#pragma once

#include <QColor>
#include <QGradient>
#include <QIcon>

/// [GUI thread] for all; throws nothing. The values of a theme are in groups, of which "CommonPalette" and
/// "CommonThemePalette" are those of all windows.
class KDrawHelper {
public:
    /// The name of the skin whose theme it is; empty when the suite has none.
    static QString getCurrentSkinNameFromTheme();

    // The value `name` of a group; `fallback`, which may be invalid, where there is none of that kind.
    static QColor getColorFromTheme(const QString& group, const QString& name, const QColor& fallback);
    static QGradient getGradientFromTheme(
        const QString& group, const QString& name, const QGradient& fallback);
    static int getHintFromTheme(const QString& group, const QString& name, int fallback);

    /// An icon of the theme by its name; a null one when there is none.
    static QIcon loadIcon(const QString& name);
    /// What the skin-image scheme (kskinimageschemehandler.h) calls an icon in the colours of an area of the current theme,
    /// a group that need not exist. The name can stand in an address as it is. Empty when there is no such icon.
    static QString bindIconStyleColor(const QString& icon, const QString& themeArea);
};
