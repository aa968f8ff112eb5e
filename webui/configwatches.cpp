#include "webui/configwatches.h"

#include <algorithm>

namespace jsapi {

KConfigWatches::KConfigWatches()
    : m_service(&KRemoteConfig::instance, [this](KRemoteConfig& service) {
        // What has changed since the service before was followed is not known.
        QMetaObject::invokeMethod(this, "onConfigChanged", Qt::QueuedConnection);
        return KServiceFollower<KRemoteConfig>::Connections { connect(
            &service, SIGNAL(sigConfigChanged()), this, SLOT(onConfigChanged())) };
    })
{
}

bool KConfigWatches::add(const JSContextEnv& page, const QVariant& value, Read read, Inform inform)
{
    m_service.follow();
    removeEnded();
    const auto ofPage = std::count_if(
        m_watches.begin(), m_watches.end(), [&](const auto& watch) { return watch->page.page() == page; });
    if (static_cast<std::size_t>(ofPage) >= MaximumPerPage)
        return false;
    m_watches.push_back(
        std::make_shared<Watch>(Watch { PageWatch(page), std::move(read), std::move(inform), value, false }));
    return true;
}

void KConfigWatches::removeEnded()
{
    std::erase_if(m_watches, [](const auto& watch) { return watch->hasEnded || watch->page.isGone(); });
}

void KConfigWatches::onConfigChanged()
{
    m_hasChangedMeanwhile = true;
    // A function may wait in a dialog, in which the configuration changes again.
    if (std::exchange(m_isLooking, true))
        return;
    while (std::exchange(m_hasChangedMeanwhile, false))
        look();
    m_isLooking = false;
}

void KConfigWatches::look()
{
    removeEnded();
    // Functions may add watches, end the service, or have pages closed.
    const auto watches = m_watches;
    for (const std::shared_ptr<Watch>& watch : watches) {
        m_service.follow();
        const KRemoteConfig* config = m_service.service();
        if (!config || watch->page.isGone())
            continue;
        QVariant value = watch->read(*config);
        if (value == watch->value)
            continue;
        const QVariant previous = std::exchange(watch->value, std::move(value));
        watch->hasEnded = !watch->inform(watch->value, previous);
    }
}

} // namespace jsapi
