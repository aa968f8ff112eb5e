// The plays that a page started with process.play; they end with the page.
#pragma once

#include "host/suite/play.h"

#include <memory>

namespace novahost {

/// [GUI thread]
class PagePlays {
public:
    /// Plays steps from the event loop, in order; a step without a time follows at once. Returns the error,
    /// after which nothing is played, or an empty string.
    QString begin(const QString& steps);
    /// The steps of all plays that are left.
    QStringList left() const;

private:
    std::vector<std::unique_ptr<suite::Play>> m_plays;
};

} // namespace novahost
