// KConfigWatches: the functions of pages that are called when a value of the remote configuration is another one.
#pragma once

#include "framework/arguments.h"
#include "framework/pagewatch.h"
#include "framework/servicefollower.h"
#include "suite/kremoteconfig.h"

#include <memory>

namespace jsapi {

/// Follows the service, whichever it is at the moment. Needs an application. [GUI thread]
class KConfigWatches final : public QObject {
    Q_OBJECT

public:
    /// Of one page; a further one is refused.
    static constexpr std::size_t MaximumPerPage = 1'000;

    /// What a watch looks at, and whom it informs.
    using Read = std::function<QVariant(const KRemoteConfig& config)>;
    /// Returns false when the page has gone.
    using Inform = std::function<bool(const QVariant& value, const QVariant& previous)>;

    KConfigWatches();

    /// Informs the page each time that what `read` returns is another value than the last one, of which `value` is the
    /// first; until the page goes. False when the page has too many watches.
    bool add(const JSContextEnv& page, const QVariant& value, Read read, Inform inform);

private:
    struct Watch {
        PageWatch page;
        Read read;
        Inform inform;
        QVariant value;
        bool hasEnded = false;
    };

    void removeEnded();
    void look();

    std::vector<std::shared_ptr<Watch>> m_watches;
    bool m_isLooking = false;
    bool m_hasChangedMeanwhile = false; ///< since the look under way began
    KServiceFollower<KRemoteConfig> m_service;

public Q_SLOTS:
    // For the service.
    void onConfigChanged();
};

} // namespace jsapi
