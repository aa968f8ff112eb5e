// Roaming modes: whether the user's documents follow them to other machines by themselves.
#pragma once

#include "framework/converter.h"

namespace jsapi {

enum class RoamingMode { Auto, Manual };
template <>
inline constexpr std::array<Choice<RoamingMode>, 2> ChoicesOf<RoamingMode> { {
    { RoamingMode::Auto, "auto" },
    { RoamingMode::Manual, "manual" },
} };

} // namespace jsapi
