// What rows say to readers only. The library keeps nothing of it; the tool that prints the reference is
// compiled with VEXLITE_DESCRIBE, and then it is all there (framework/describe.h).
#pragma once

#ifdef VEXLITE_DESCRIBE
#include "framework/describe.h"
#else

#include "framework/failure.h"

#include <initializer_list>

namespace jsapi {

struct ParameterDocumentation {
    constexpr ParameterDocumentation() = default;
    constexpr ParameterDocumentation(const char*, const char*) { }
};

struct FieldDocumentation {
    constexpr FieldDocumentation(const char*) { } // NOLINT(*-explicit-*)
};

struct MemberDocumentation {
    template <auto Handler> static MemberDocumentation of(const char*, std::initializer_list<const Failure*>)
    {
        return {};
    }
    static MemberDocumentation ofUnbuilt(const char*) { return {}; }
    template <auto Remove> void describeListeners(const char*) { }
    template <auto Remove> void describeListenersWhen(const char*) { }
    void describeRemover() { }
};

struct ListDocumentation {
    explicit ListDocumentation(const char*) { }
    template <typename... Events> void addEvents(const Events&...) { }
};

} // namespace jsapi

#endif
