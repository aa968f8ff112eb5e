// Ref<T>: owns one reference to a counted interface.
#pragma once

#include "kbase/unknown.h"

#include <utility>

namespace vexlite {

template <typename T> class Ref {
public:
    Ref() noexcept = default;
    /// Takes ownership of one reference.
    static Ref adopt(T* object) noexcept
    {
        Ref ref;
        ref.m_object = object;
        return ref;
    }
    /// Adds a reference.
    static Ref share(T* object) noexcept
    {
        if (object)
            object->AddRef();
        return adopt(object);
    }
    Ref(const Ref& other) noexcept
        : Ref(share(other.m_object))
    {
    }
    Ref(Ref&& other) noexcept
        : m_object(std::exchange(other.m_object, nullptr))
    {
    }
    Ref& operator=(Ref other) noexcept
    {
        std::swap(m_object, other.m_object);
        return *this;
    }
    ~Ref()
    {
        if (m_object)
            m_object->Release();
    }

    T* get() const noexcept { return m_object; }
    T* operator->() const noexcept { return m_object; }
    explicit operator bool() const noexcept { return m_object; }
    /// Transfers the reference to the caller.
    T* release() noexcept { return std::exchange(m_object, nullptr); }

private:
    T* m_object = nullptr;
};

} // namespace vexlite
