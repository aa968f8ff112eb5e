// ListenerList: the listeners of one event of one hub, in the order in which they were added.
//
// It may be changed while it is read: a Reading keeps its positions, and removed ones become empty. Adding
// and removing a listener takes constant time.
#pragma once

#include "host/vexlite/pagefunction.h"
#include "host/vexlite/ref.h"

#include <unordered_map>
#include <vector>

namespace vexlite {

/// Removed functions. They are released once the list is consistent again, since releasing the last reference
/// may run code that uses the list.
using DroppedFunctions = std::vector<Ref<PageFunction>>;

class ListenerList {
public:
    /// Keeps the positions of the list while it lives.
    class Reading {
    public:
        explicit Reading(ListenerList& list)
            : m_list(list)
            , m_end(list.m_entries.size())
        {
            ++m_list.m_readings;
        }
        ~Reading()
        {
            --m_list.m_readings;
            m_list.closeGaps();
        }
        Reading(const Reading&) = delete;
        Reading& operator=(const Reading&) = delete;

        std::size_t end() const { return m_end; }
        /// The function at a position; null when it was removed or is no listener of `target`.
        Ref<PageFunction> at(std::size_t position, const JSContextEnv& target) const;

    private:
        ListenerList& m_list;
        std::size_t m_end;
    };

    bool has(const JSContextEnv& context, const PageFunction& function) const;
    /// The function must not be in the list.
    void add(const JSContextEnv& context, Ref<PageFunction> function);
    /// False when it was not in the list.
    bool remove(const JSContextEnv& context, const PageFunction& function, DroppedFunctions& dropped);
    /// Removes all listeners of a page and returns their number.
    int removePage(const JSContextEnv& context, DroppedFunctions& dropped);

    int count() const { return static_cast<int>(m_positions.size()); }

    /// Removes all listeners and calls `removed` with the context of each.
    template <typename Removed> void clear(Removed removed, DroppedFunctions& dropped)
    {
        m_positions.clear();
        for (Entry& entry : m_entries) {
            if (!entry.function)
                continue;
            removed(entry.context);
            dropped.push_back(std::exchange(entry.function, {}));
        }
        closeGaps();
    }

private:
    struct Entry {
        JSContextEnv context;
        Ref<PageFunction> function; ///< null for a removed listener
    };
    struct Key {
        JSContextEnv context;
        std::uintptr_t identity;
        friend bool operator==(const Key&, const Key&) = default;
    };
    struct KeyHash {
        std::size_t operator()(const Key& key) const noexcept;
    };

    void closeGaps();

    std::vector<Entry> m_entries;
    std::unordered_map<Key, std::size_t, KeyHash> m_positions;
    int m_readings = 0;
};

} // namespace vexlite
