// The dialog in which the user picks a colour for a page.
#pragma once

#include "local/colorrequest.h"

namespace jsapi {

struct ColorOptions {
    QString color;
    QString title;
    bool alpha = false;
    static constexpr auto fields()
    {
        using Self = ColorOptions;
        return strictly(
            std::tuple(optional("color", &Self::color, "the colour to begin with, `#rgb` or `#rrggbb`"),
                optional("title", &Self::title, "the title of the dialog, up to 100 characters"),
                optional("alpha", &Self::alpha, "let the user choose the opacity as well")));
    }
};

/// Shows the dialog. Returns whether it is shown; refuses with WrongParameters. [GUI thread]
Answer<bool> pickColor(const JSContextEnv& page, const ColorOptions& options, const ColorCallback& callback);

} // namespace jsapi
