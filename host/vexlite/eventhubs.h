// EventHubs: every hub of the process, and what each page listens with.
//
// Native objects keep the pointer to their hub for as long as they live, which may be longer than the core
// does. So hubs belong to the process: without a core they stay, empty, and refuse listeners.
#pragma once

#include "host/vexlite/eventhub.h"

#include <map>
#include <unordered_set>

namespace vexlite {

class EventHubs final : public IJSEventHubFactory {
public:
    /// One level of nested dispatches, counted over all hubs.
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

        bool allowed() const;

    private:
        int& m_depth;
    };

    static EventHubs& ofProcess();

    IJSEventHub* ClassHub(std::int32_t typeId) override;
    IJSEventHub* InstanceHub(std::int32_t typeId, IJSExtentionObject* object) override;
    /// Also for a hub that is being dispatched: what is left of its listeners is called no more.
    void ReleaseInstanceHub(IJSEventHub* hub) override;

    void pageOpened(const JSContextEnv& context);
    /// Drops the page's listeners in every hub.
    void pageClosed(const JSContextEnv& context);
    bool isOpen(const JSContextEnv& context) const { return m_pages.count(context.contextId) != 0; }

    /// Counts one more listener of an open page in `hub`; false, counting nothing, when the page has its
    /// fill.
    bool listenerAdded(const JSContextEnv& context, EventHub* hub);
    void listenersRemoved(const JSContextEnv& context, int count);
    int listenerCount() const { return m_listeners; }

private:
    EventHubs() = default;

    struct Page {
        int listeners = 0;
        std::unordered_set<EventHub*> hubs; ///< all that it has listeners in, and some that it had them in
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
