// Shapes: script functions that make an object of given keys in one go, kept by their keys.
#pragma once

#include "host/jsc/api.h"

#include <array>
#include <cstdint>
#include <memory>

namespace engine::jsc {

/// A table of fixed size: a list of keys takes the place of another that falls on the same slot. A list gets
/// its function when it is met for the second time, for most lists of a dictionary are met only once. [GUI
/// thread]
class Shapes {
public:
    static constexpr int maximumKeys = 16;

    Shapes() = default;
    Shapes(const Shapes&) = delete;
    Shapes& operator=(const Shapes&) = delete;

    /// The function that takes the values in the order of their keys and answers the object, or null: set the
    /// properties one by one then. `count` is at most maximumKeys. The keys are copied.
    JSObjectRef find(JSGlobalContextRef ctx, const QString* const* keys, int count);
    /// Gives the functions back.
    void clear(JSGlobalContextRef ctx);

private:
    struct Shape {
        std::uint64_t hash = 0;
        int count = 0;
        JSObjectRef factory = nullptr;
        std::unique_ptr<QString[]> keys; ///< deep copies: a module's own text goes with the module

        bool is(const QString* const* wanted, int wantedCount) const;
    };
    static JSObjectRef makeFactory(JSGlobalContextRef ctx, const QString* const* keys, int count);

    std::array<Shape, 256> m_shapes;
};

} // namespace engine::jsc
