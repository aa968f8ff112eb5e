// EventHubs: all hubs of the process, and the listeners of each page.
//
// Native objects keep a pointer to their hub and may outlive the core, so hubs belong to the process. Without
// a core they are empty and refuse listeners.
#pragma once

#include "host/vexlite/eventhub.h"

#include <map>
#include <unordered_set>

namespace vexlite {

class EventHubs final : public IJSEventHubFactory {
public:
    /// Counts nested dispatches of all hubs.
    class DispatchLevel {
    public:
        explicit DispatchLevel(EventHubs& hubs)
            : m_depth(hubs.m_depth)
        {
            ++m_depth;
        }
        ~DispatchLevel() { --m_depth; }
        DispatchLevel(const DispatchLevel&) = delete;
        DispatchLevel& operator=(const DispatchLevel&) = delete;

        bool isAllowed() const;

    private:
        int& m_depth;
    };

    static EventHubs& instance();

    IJSEventHub* ClassHub(std::int32_t typeId) override;
    IJSEventHub* InstanceHub(std::int32_t typeId, IJSExtentionObject* object) override;
    /// May be called during a dispatch of the hub, whose remaining listeners are not called then.
    void ReleaseInstanceHub(IJSEventHub* hub) override;

    void addPage(const JSContextEnv& context);
    /// Drops the page's listeners in every hub.
    void dropPage(const JSContextEnv& context);
    bool isOpen(const JSContextEnv& context) const { return m_pages.count(context.contextId) != 0; }

    /// Counts one more listener of an open page in `hub`; false when the page has reached its limit.
    bool countListener(const JSContextEnv& context, EventHub* hub);
    void uncountListeners(const JSContextEnv& context, int count);
    int listenerCount() const { return m_listeners; }

private:
    EventHubs() = default;

    struct Page {
        int listeners = 0;
        std::unordered_set<EventHub*> hubs; ///< all in which it has listeners, or once had
    };
    using InstanceKey = std::pair<std::int32_t, IJSExtentionObject*>;

    std::map<std::int32_t, std::unique_ptr<EventHub>> m_classHubs;
    std::map<InstanceKey, std::unique_ptr<EventHub>> m_instanceHubs;
    std::unordered_map<IJSEventHub*, InstanceKey> m_instanceKeys;
    std::unordered_map<std::int64_t, Page> m_pages; ///< by context id
    int m_listeners = 0;
    int m_depth = 0;
};

} // namespace vexlite
