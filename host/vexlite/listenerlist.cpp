#include "host/vexlite/listenerlist.h"

#include <functional>

namespace vexlite {

std::size_t ListenerList::KeyHash::operator()(const Key& key) const noexcept
{
    constexpr std::size_t spread = 0x9e3779b97f4a7c15u;
    return (std::hash<std::int64_t>()(key.context.contextId) * spread)
        ^ std::hash<std::uintptr_t>()(key.identity);
}

Ref<PageFunction> ListenerList::Reading::at(std::size_t position, const JSContextEnv& target) const
{
    const Entry& entry = m_list.m_entries[position];
    return target == JSContextEnv::everyContext() || target == entry.context ? entry.function
                                                                             : Ref<PageFunction>();
}

bool ListenerList::has(const JSContextEnv& context, const PageFunction& function) const
{
    return m_positions.count({ context, function.Identity() }) != 0;
}

void ListenerList::add(const JSContextEnv& context, Ref<PageFunction> function)
{
    m_positions.emplace(Key { context, function->Identity() }, m_entries.size());
    m_entries.push_back({ context, std::move(function) });
}

bool ListenerList::remove(
    const JSContextEnv& context, const PageFunction& function, DroppedFunctions& dropped)
{
    const auto found = m_positions.find({ context, function.Identity() });
    if (found == m_positions.end())
        return false;
    dropped.push_back(std::exchange(m_entries[found->second].function, {}));
    m_positions.erase(found);
    closeGaps();
    return true;
}

int ListenerList::removePage(const JSContextEnv& context, DroppedFunctions& dropped)
{
    int removed = 0;
    for (Entry& entry : m_entries) {
        if (!entry.function || !(entry.context == context))
            continue;
        m_positions.erase({ context, entry.function->Identity() });
        dropped.push_back(std::exchange(entry.function, {}));
        ++removed;
    }
    closeGaps();
    return removed;
}

void ListenerList::closeGaps()
{
    if (m_readings || m_entries.size() <= 2 * m_positions.size())
        return;
    std::erase_if(m_entries, [](const Entry& entry) { return !entry.function; });
    for (std::size_t position = 0; position < m_entries.size(); ++position)
        m_positions[{ m_entries[position].context, m_entries[position].function->Identity() }] = position;
}

} // namespace vexlite
