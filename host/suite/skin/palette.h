// The skin in the suite's own windows.
#pragma once

#include "host/suite/skin/skinfiles.h"

#include <QPalette>

namespace suite {

QPalette makePalette(const Skin& skin);
/// Repaints all windows of this process in the colours of a skin; nothing in a process without windows. [GUI thread]
void showInWindows(const Skin& skin);

} // namespace suite
