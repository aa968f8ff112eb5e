// What pages pass about windows, in CSS pixels, and what the suite's windows get of it.
#pragma once

#include "framework/arguments.h"
#include "local/csspixels.h"

namespace jsapi {

/// A length that script must pass as a number.
struct WindowLength {
    double length = 0;
    /// In physical pixels, for the setters of widgets.
    operator int() const;
};
template <> struct Argument<WindowLength> : ArgumentValue<WindowLength> {
    using ScriptType = double;
    static constexpr std::array Refusals { &WrongParameters };
    bool read(ArgumentReader& reader);
};

/// A string that whatever script passes is converted to; empty where it does not convert.
struct ConvertedString {
    QString string;
};
template <> struct Argument<ConvertedString> : ArgumentValue<ConvertedString> {
    using ScriptType = QString;
    bool read(ArgumentReader& reader);
};

/// An integer that must be given.
template <typename Struct>
constexpr auto integer(const char* name, std::int32_t Struct::*member, const char* doc)
{
    return required(name, member, doc, WrongParameters, WrongParameters);
}

struct WindowPlace {
    std::int32_t x = 0;
    std::int32_t y = 0;
    static constexpr auto fields()
    {
        return std::tuple(
            integer("x", &WindowPlace::x, "from the left of the screen to the content of the window"),
            integer("y", &WindowPlace::y, "from the top of the screen to the content of the window"));
    }
    QPoint scaled() const { return scaleRect(x, y, 0, 0).topLeft(); }
};

struct WindowSize {
    std::int32_t w = 0;
    std::int32_t h = 0;
    static constexpr auto fields()
    {
        return std::tuple(integer("w", &WindowSize::w, "the width of its content, without a frame"),
            integer("h", &WindowSize::h, "the height of its content"));
    }
    operator QSize() const { return scaleSize(w, h); }
};

struct MinimumSize {
    std::int32_t minw = 0;
    std::int32_t minh = 0;
    static constexpr auto fields()
    {
        return std::tuple(integer("minw", &MinimumSize::minw, "the smallest width"),
            integer("minh", &MinimumSize::minh, "the smallest height"));
    }
    operator QSize() const { return scaleSize(minw, minh); }
};

struct MaximumSize {
    std::int32_t maxw = 0;
    std::int32_t maxh = 0;
    static constexpr auto fields()
    {
        return std::tuple(integer("maxw", &MaximumSize::maxw, "the largest width"),
            integer("maxh", &MaximumSize::maxh, "the largest height"));
    }
    operator QSize() const { return scaleSize(maxw, maxh, LargestMaximum); }
};

struct DragArea {
    std::int32_t x = 0;
    std::int32_t y = 0;
    std::int32_t w = 0;
    std::int32_t h = 0;
    static constexpr auto fields()
    {
        return std::tuple(integer("x", &DragArea::x, "from the left edge of the view"),
            integer("y", &DragArea::y, "from the top edge of the view"),
            integer("w", &DragArea::w, "the width of the area"),
            integer("h", &DragArea::h, "the height of the area"));
    }
    operator QRect() const { return scaleRect(x, y, w, h); }
};

/// Whether a window of the suite may have these flags: none of the kinds that stand for what others made.
constexpr bool isWindowOfSuite(Qt::WindowFlags flags)
{
    return (static_cast<unsigned>(flags) & Qt::WindowType_Mask & ~static_cast<unsigned>(Qt::SplashScreen))
        == 0;
}
/// Whether a page may set this attribute: not those in which Qt keeps its own state.
bool isSettableAttribute(std::int32_t attribute);

} // namespace jsapi
