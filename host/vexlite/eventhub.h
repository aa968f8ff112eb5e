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
    /// Of a class of objects; or of one of them, with `object`.
    explicit EventHub(EventHubs& owner, std::int64_t typeId, IJSExtentionObject* object = nullptr)
        : m_owner(owner)
        , m_typeId(typeId)
        , m_object(object)
    {
    }
    ~EventHub();

    KResult Add(const QString& event, const JSContextEnv& context, const KJSVariant& callback) override;
    KResult Remove(const QString& event, const JSContextEnv& context, const KJSVariant& callback) override;
    /// A listener may do anything: change the hub, dispatch, close its page, or destroy the object and with
    /// it this hub. KR_REJECTED when dispatches are nested too deeply, KR_NOT_AVAILABLE when `target` is
    /// closed.
    KResult Dispatch(
        const QString& event, const JSContextEnv& target, const std::vector<KJSVariant>& payload) override;
    KResult Report(KJSVariant& result) override;

    /// Removes all listeners of a closed page.
    void dropPage(const JSContextEnv& context, DroppedFunctions& dropped);

private:
    /// Shared with dispatches under way, which may outlive their entry and the hub.
    using Lists = QHash<QString, std::shared_ptr<ListenerList>>;

    EventHubs& m_owner;
    std::int64_t m_typeId;
    IJSExtentionObject* m_object;
    Lists m_lists; ///< no empty ones
};

} // namespace vexlite
