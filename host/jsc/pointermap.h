// PointerMap: a fast hash table from pointers to pointers, for look-ups in every call.
#pragma once

#include <cstdint>
#include <vector>

namespace engine::jsc {

/// Open addressing; neither keys nor values are owned, and a value is never null.
template <typename Key, typename Value> class PointerMap {
public:
    /// Null for an unknown key.
    Value* find(Key* key) const noexcept
    {
        if (m_slots.empty())
            return nullptr;
        for (std::size_t i = home(key);; i = next(i)) {
            if (m_slots[i].key == key)
                return m_slots[i].value;
            if (!m_slots[i].key)
                return nullptr;
        }
    }

    void insert(Key* key, Value* value)
    {
        if ((m_count + 1) * 2 > m_slots.size())
            grow();
        std::size_t i = home(key);
        while (m_slots[i].key && m_slots[i].key != key)
            i = next(i);
        m_count += !m_slots[i].key;
        m_slots[i] = { key, value };
    }

    /// Does nothing for an unknown key.
    void erase(Key* key) noexcept
    {
        if (!find(key))
            return;
        std::size_t hole = home(key);
        while (m_slots[hole].key != key)
            hole = next(hole);
        // Later entries of the chain move up to fill the hole.
        for (std::size_t i = next(hole); m_slots[i].key; i = next(i)) {
            const std::size_t distance = (i - home(m_slots[i].key)) & (m_slots.size() - 1);
            if (distance >= ((i - hole) & (m_slots.size() - 1))) {
                m_slots[hole] = m_slots[i];
                hole = i;
            }
        }
        m_slots[hole] = {};
        --m_count;
    }

private:
    struct Slot {
        Key* key = nullptr;
        Value* value = nullptr;
    };

    std::size_t home(Key* key) const noexcept
    {
        const auto bits = reinterpret_cast<std::uintptr_t>(key);
        return (bits * 0x9E3779B97F4A7C15u >> 20) & (m_slots.size() - 1);
    }
    std::size_t next(std::size_t i) const noexcept { return (i + 1) & (m_slots.size() - 1); }
    void grow()
    {
        std::vector<Slot> old(m_slots.empty() ? 64 : m_slots.size() * 2);
        old.swap(m_slots);
        m_count = 0;
        for (const Slot& slot : old) {
            if (slot.key)
                insert(slot.key, slot.value);
        }
    }

    std::vector<Slot> m_slots;
    std::size_t m_count = 0;
};

} // namespace engine::jsc
