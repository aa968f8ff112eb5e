// The eyedropper: the user picks the colour of any pixel of any screen for a page.
#pragma once

#include "local/colorrequest.h"

namespace jsapi {

struct ScreenColorOptions {
    std::int32_t zoom = 8;
    static constexpr auto fields()
    {
        return strictly(std::tuple(optional("zoom", &ScreenColorOptions::zoom,
            "how many times larger the magnifier shows what is around the mouse, from 2 to 20")));
    }
};

/// Shows the eyedropper over all screens. Returns whether it is shown, which needs X11; refuses with WrongParameters. It has
/// the mouse and the keyboard to itself, and ends by itself when neither is used for a minute. [GUI thread]
Answer<bool> pickScreenColor(
    const JSContextEnv& page, const ScreenColorOptions& options, const ColorCallback& callback);

} // namespace jsapi
