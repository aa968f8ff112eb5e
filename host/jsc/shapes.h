// Shapes: a cache of script functions that make objects with given keys.
#pragma once

#include "host/jsc/api.h"

#include <array>
#include <cstdint>
#include <memory>

namespace engine::jsc {

/// A table of fixed size, in which a list of keys replaces another in the same slot. A list gets its function
/// when it is seen for the second time, since most lists in dictionaries occur only once. [GUI thread]
class Shapes {
public:
    static constexpr int maximumKeys = 16;

    Shapes() = default;
    Shapes(const Shapes&) = delete;
    Shapes& operator=(const Shapes&) = delete;

    /// The function that takes the values in the order of the keys and returns the object. Null when there is
    /// none: the properties must be set one by one. `count` is at most maximumKeys. The keys are copied.
    JSObjectRef find(JSGlobalContextRef ctx, const QString* const* keys, int count);
    /// Releases the functions.
    void clear(JSGlobalContextRef ctx);

private:
    struct Shape {
        std::uint64_t hash = 0;
        int count = 0;
        JSObjectRef factory = nullptr;
        std::unique_ptr<QString[]>
            keys; ///< deep copies: the characters of a literal are gone when its module is unloaded

        bool is(const QString* const* wanted, int wantedCount) const;
    };
    static JSObjectRef makeFactory(JSGlobalContextRef ctx, const QString* const* keys, int count);

    std::array<Shape, 256> m_shapes;
};

} // namespace engine::jsc
