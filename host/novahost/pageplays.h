// The plays that a page has begun with process.play; they end with it.
#pragma once

#include "host/suite/play.h"

#include <memory>

namespace novahost {

/// [GUI thread]
class PagePlays {
public:
    /// Plays steps from the event loop, one after another, each when its time has passed or, without a time,
    /// at once. Returns an empty text or what is wrong; then nothing is played.
    QString begin(const QString& steps);

private:
    std::vector<std::unique_ptr<suite::Play>> m_plays;
};

} // namespace novahost
