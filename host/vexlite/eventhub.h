// EventHub: the listeners of one class of objects, or of one object, by event.
#pragma once

#include "host/vexlite/listenerlist.h"
#include "vexlite/jscore.h"

#include <QHash>
#include <memory>

namespace vexlite {

class EventHubs;

class EventHub final : public IJSEventHub {
public:
    explicit EventHub(EventHubs& owner)
        : m_owner(owner)
    {
    }
    ~EventHub();

    KResult Add(const QString& event, const JSContextEnv& context, const KJSVariant& callback) override;
    KResult Remove(const QString& event, const JSContextEnv& context, const KJSVariant& callback) override;
    /// A listener may do anything meanwhile: change the hub, dispatch, close its page, end the object and so
    /// this hub. KR_REJECTED when dispatches are nested too deeply, KR_NOT_AVAILABLE when `target` is a page
    /// that has gone.
    KResult Dispatch(
        const QString& event, const JSContextEnv& target, const std::vector<KJSVariant>& payload) override;
    KResult Report(KJSVariant& result) override;

    /// Removes all listeners of a page that has gone already.
    void dropPage(const JSContextEnv& context, DroppedFunctions& dropped);

private:
    /// Shared with the dispatches under way, which outlive their entry here and even the hub.
    using Lists = QHash<QString, std::shared_ptr<ListenerList>>;

    EventHubs& m_owner;
    Lists m_lists; ///< none is empty
};

} // namespace vexlite
