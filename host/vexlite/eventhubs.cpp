#include "host/vexlite/eventhubs.h"

#include "host/vexlite/core.h"

namespace vexlite {

bool EventHubs::DispatchLevel::isAllowed() const
{
    return m_depth <= CoreLimits::nestedDispatches;
}

EventHubs& EventHubs::instance()
{
    // Never destroyed: modules that are unloaded at exit may still release their hubs.
    static EventHubs& hubs = *new EventHubs;
    return hubs;
}

IJSEventHub* EventHubs::ClassHub(std::int32_t typeId)
{
    std::unique_ptr<EventHub>& hub = m_classHubs[typeId];
    if (!hub)
        hub = std::make_unique<EventHub>(*this, typeId);
    return hub.get();
}

IJSEventHub* EventHubs::InstanceHub(std::int32_t typeId, IJSExtentionObject* object)
{
    const InstanceKey key(typeId, object);
    std::unique_ptr<EventHub>& hub = m_instanceHubs[key];
    if (!hub) {
        hub = std::make_unique<EventHub>(*this, typeId, object);
        m_instanceKeys.emplace(hub.get(), key);
    }
    return hub.get();
}

void EventHubs::ReleaseInstanceHub(IJSEventHub* hub)
{
    const auto known = m_instanceKeys.find(hub);
    if (known == m_instanceKeys.end())
        return;
    auto owner = m_instanceHubs.extract(known->second);
    m_instanceKeys.erase(known);
    for (auto& [contextId, page] : m_pages)
        page.hubs.erase(owner.mapped().get());
}

void EventHubs::addPage(const JSContextEnv& context)
{
    m_pages.emplace(context.contextId, Page {});
}

void EventHubs::dropPage(const JSContextEnv& context)
{
    // Removed first: destroying a function below may run code that would add listeners for the page.
    auto page = m_pages.extract(context.contextId);
    if (!page)
        return;
    m_listeners -= page.mapped().listeners;
    DroppedFunctions dropped;
    for (EventHub* hub : page.mapped().hubs)
        hub->dropPage(context, dropped);
}

bool EventHubs::countListener(const JSContextEnv& context, EventHub* hub)
{
    const auto page = m_pages.find(context.contextId);
    if (page == m_pages.end() || page->second.listeners >= CoreLimits::listenersPerPage)
        return false;
    ++page->second.listeners;
    ++m_listeners;
    page->second.hubs.insert(hub);
    return true;
}

void EventHubs::uncountListeners(const JSContextEnv& context, int count)
{
    const auto page = m_pages.find(context.contextId);
    if (page == m_pages.end())
        return;
    page->second.listeners -= count;
    m_listeners -= count;
}

} // namespace vexlite
