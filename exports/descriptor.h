// An open file or directory. Needs nothing of a suite, nor Qt. [any thread]
#pragma once

#include <unistd.h>
#include <utility>

namespace jsapi {

/// An open file or directory, closed with the object; or none.
class Descriptor {
public:
    Descriptor() = default;
    /// Takes the descriptor over; a negative number is none.
    explicit Descriptor(int number) noexcept
        : m_number(number)
    {
    }
    Descriptor(Descriptor&& other) noexcept
        : m_number(other.release())
    {
    }
    Descriptor& operator=(Descriptor&& other) noexcept
    {
        std::swap(m_number, other.m_number);
        return *this;
    }
    ~Descriptor()
    {
        if (m_number >= 0)
            close(m_number);
    }

    explicit operator bool() const noexcept { return m_number >= 0; }
    int number() const noexcept { return m_number; }
    /// Gives the descriptor to the caller.
    int release() noexcept { return std::exchange(m_number, -1); }

private:
    int m_number = -1;
};

} // namespace jsapi
