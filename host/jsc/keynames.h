// KeyNames: a cache of property names converted to QString.
#pragma once

#include "host/jsc/api.h"

#include <array>

namespace engine::jsc {

/// A table of fixed size, by the addresses of script strings: the engine returns the same strings for all
/// objects of the same shape. A string becomes a root when it is seen for the second time, since most names
/// in dictionaries occur only once. [GUI thread]
class KeyNames {
public:
    KeyNames() = default;
    KeyNames(const KeyNames&) = delete;
    KeyNames& operator=(const KeyNames&) = delete;

    /// `name` must be a string.
    QString textOf(JSContextRef ctx, JSValueRef name);
    /// Releases the roots.
    void clear(JSContextRef ctx);

private:
    struct Entry {
        JSValueRef name = nullptr;
        bool isKept = false; ///< is a root; if not, another string may be at this address by now
        QString text;
    };
    Entry& findEntry(JSValueRef name);

    std::array<Entry, 256> m_entries;
};

} // namespace engine::jsc
