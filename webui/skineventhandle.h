// KSkinEventHandle: the library's one connection to the suite's skin service.
#pragma once

#include "framework/events.h"
#include "framework/servicefollower.h"
#include "suite/kskin.h"

namespace jsapi {

struct SkinChange {
    QString name;
    QString previousName;
    static constexpr auto fields()
    {
        return std::tuple(property("name", &SkinChange::name, "the skin that is used now"),
            property("previousName", &SkinChange::previousName,
                "the one before; the same when the values of the skin have changed"));
    }
};

inline constexpr Event<SkinChange> SkinChangeEvent { "skinchangeevent",
    "The theme has other values: another skin is used, or the skin itself has changed." };

/// The skin service; null when the suite has none.
KSkin* findSkinService();

/// Follows the service, whichever it is at the moment, and informs listeners. Owned by the Skin object, whose hub its events
/// go through. Needs an application. [GUI thread]
class KSkinEventHandle final : public QObject {
    Q_OBJECT

public:
    /// `forget` is called before listeners are, when values of the theme that are kept may be others now.
    KSkinEventHandle(IKJSExtentionApiEvent& skin, std::function<void()> forget);

    /// Looks which service there is now, and connects to it. Calls no listener.
    void follow() { m_service.follow(); }
    /// Whether there is a service, which says when the theme has other values.
    bool isFollowing() const { return m_service.service(); }

private:
    using Service = KServiceFollower<KSkin>;

    Service::Connections connectTo(KSkin& service);
    void announceLater();

    IKJSExtentionApiEvent& m_skin;
    std::function<void()> m_forget;
    QString m_known; ///< the skin as listeners know it
    bool m_isAnnouncing = false;
    bool m_hasChangedMeanwhile = false; ///< since the announcement under way began
    Service m_service;

public Q_SLOTS:
    // For the service.
    void onSkinChanged();
};

} // namespace jsapi
