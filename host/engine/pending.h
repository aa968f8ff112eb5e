// Pending: what a page has begun and that has not ended.
#pragma once

#include <QString>
#include <chrono>
#include <vector>

namespace engine {

struct Pending {
    enum class Kind {
        Script,   ///< runs; or is in a call of `member`, which shows a dialog
        Timer,    ///< of setTimeout or setInterval
        Promise,  ///< that `member` has returned
        Function, ///< that `member` has got and keeps
        Listener, ///< the same, for `event`
    };
    using Clock = std::chrono::steady_clock;

    Kind kind;
    QString member {}; ///< "Network.fetch"; empty when it was no member
    QString event {};
    Clock::time_point since = Clock::now();
    int count = 1;
};

using PendingList = std::vector<Pending>;

/// "NovaExtension.Network" and "fetch" as "Network.fetch".
inline QString memberName(const QString& tag, const QString& member)
{
    return tag.section(QLatin1Char('.'), 1) + QLatin1Char('.') + member;
}

} // namespace engine
