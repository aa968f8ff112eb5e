// Counted<Interface, ids...>: reference counting and QueryInterface for the core's own objects.
#pragma once

#include "kbase/unknown.h"

#include <atomic>

namespace vexlite {

/// Implements IUnknown for a class with one interface, known by `Ids` and IID_IUnknown. A new object has one
/// reference, for its maker.
template <typename Interface, const KIID&... Ids> class Counted : public Interface {
public:
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;

    KResult QueryInterface(const KIID& iid, void** out) final
    {
        *out = nullptr;
        if (!(iid == IID_IUnknown) && !(... || (iid == Ids)))
            return KR_NO_INTERFACE;
        AddRef();
        *out = static_cast<Interface*>(this);
        return KR_OK;
    }

    std::uint32_t AddRef() final { return m_count.fetch_add(1, std::memory_order_relaxed) + 1; }

    std::uint32_t Release() final
    {
        const std::uint32_t left = m_count.fetch_sub(1, std::memory_order_acq_rel) - 1;
        if (!left)
            delete this;
        return left;
    }

protected:
    Counted() = default;
    virtual ~Counted() = default;

private:
    std::atomic<std::uint32_t> m_count { 1 };
};

} // namespace vexlite
