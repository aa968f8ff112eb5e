// KeyNames: the texts of property names, so that a name that comes again is not converted again.
#pragma once

#include "host/jsc/api.h"

#include <array>

namespace engine::jsc {

/// A table of fixed size, by the addresses of script strings: the engine lists the same strings for all
/// objects of the same making. A string is kept as a root from the second time on that it is met, for most
/// names of dictionaries are met only once. [GUI thread]
class KeyNames {
public:
    KeyNames() = default;
    KeyNames(const KeyNames&) = delete;
    KeyNames& operator=(const KeyNames&) = delete;

    /// The text of `name`, a string.
    QString textOf(JSContextRef ctx, JSValueRef name);
    /// Gives the roots back.
    void clear(JSContextRef ctx);

private:
    struct Entry {
        JSValueRef name = nullptr;
        bool isKept = false; ///< else `name` may have been collected, and another be in its place
        QString text;
    };
    Entry& entryOf(JSValueRef name);

    std::array<Entry, 256> m_entries;
};

} // namespace engine::jsc
