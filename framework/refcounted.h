// The whole reference count and interface query, in two small templates.
#pragma once

#include "kbase/unknown.h"

#include <atomic>

/// Adds the count to an interface: a new object has one reference, its maker's. [any thread]
template <typename Interface> class KJCKS_RefCountWarp : public Interface {
public:
    std::uint32_t AddRef() override { return m_references.fetch_add(1, std::memory_order_relaxed) + 1; }

    std::uint32_t Release() override
    {
        const std::uint32_t left = m_references.fetch_sub(1, std::memory_order_acq_rel) - 1;
        if (left == 0)
            delete this;
        return left;
    }

    KJCKS_RefCountWarp(const KJCKS_RefCountWarp&) = delete;
    KJCKS_RefCountWarp& operator=(const KJCKS_RefCountWarp&) = delete;
    // Some interfaces have a destructor already, others get theirs here.
    virtual ~KJCKS_RefCountWarp() = default; // NOLINT(modernize-use-override)

protected:
    KJCKS_RefCountWarp() = default;

private:
    std::atomic<std::uint32_t> m_references { 1 };
};

/// The identifiers besides IUnknown for which an object returns an interface. Specialised next to each implementation.
template <typename Interface> bool supportsInterface(const KIID& iid);

/// Adds the interface query.
template <typename Interface> class KJCUnknownWarp : public KJCKS_RefCountWarp<Interface> {
public:
    KResult QueryInterface(const KIID& iid, void** out) override
    {
        if (iid == IID_IUnknown || supportsInterface<Interface>(iid)) {
            *out = static_cast<Interface*>(this);
            this->AddRef();
            return KR_OK;
        }
        *out = nullptr;
        return KR_NO_INTERFACE;
    }
};
