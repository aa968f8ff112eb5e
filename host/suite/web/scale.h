// The display scale, which may change while pages are shown.
#pragma once

namespace suite {
/// Physical pixels for each CSS pixel, 0.5 to 8: in place of the profile's, for all views and for what pages are told.
/// [GUI thread]
void setScale(double scale);
} // namespace suite
