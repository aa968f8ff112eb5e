// Colours and gradients as CSS writes them.
#pragma once

#include "framework/fields.h"

#include <QColor>
#include <QGradient>
#include <optional>

namespace jsapi {

struct GradientStop {
    double position;
    QString color;
    static constexpr auto fields()
    {
        return std::tuple(property("position", &GradientStop::position, "0 to 1"),
            property("color", &GradientStop::color, "a colour of CSS: `rgba(red,green,blue,alpha)`"));
    }
};

struct SkinGradient {
    QString type;
    QString spread;
    QString coordinateMode;
    std::vector<GradientStop> stops;
    static constexpr auto fields()
    {
        using Self = SkinGradient;
        return std::tuple(property("type", &Self::type,
                              "`LinearGradient`, `RadialGradient`, `ConicalGradient`, or `NoGradient`"),
            property(
                "spread", &Self::spread, "beyond its ends: `PadSpread`, `ReflectSpread` or `RepeatSpread`"),
            property("coordinateMode", &Self::coordinateMode,
                "what it is stretched to: `LogicalMode`, `StretchToDeviceMode`, `ObjectBoundingMode` or `ObjectMode`"),
            property("stops", &Self::stops, "its colours, by their positions"));
    }
};

/// "rgba(0,120,215,0.5)".
QString toCssColor(const QColor& color);
SkinGradient toSkinGradient(const QGradient& gradient);

/// What a text is by its beginning, whatever its case.
enum class CssForm { Color, Gradient, Other };
CssForm classifyCss(const QString& text);

// Texts of the form; nothing for those that are not well-formed.
/// "#rgb", "#rgba", "#rrggbb", "#rrggbbaa", "rgb(...)", "rgba(...)", or the name of a colour.
std::optional<QColor> parseCssColor(const QString& text);
/// "linear-gradient(...)" with colours as above. Its direction has no place in a SkinGradient.
std::optional<SkinGradient> parseCssGradient(const QString& text);

} // namespace jsapi
