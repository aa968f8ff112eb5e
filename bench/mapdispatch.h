// The rival of the framework's dispatch: the least that a call by number through an interface can cost.
#pragma once

#include "vexlite/jsextension.h"

#include <memory>

namespace bench {

/// One virtual call, one look-up in a map, one call of a function pointer.
class MapDispatch {
public:
    virtual ~MapDispatch() = default;
    virtual KResult invoke(const JSContextEnv& context, std::int32_t id, JSApiArguments& arguments,
        KJSVariant& result, KJSVariant& exception) = 0;
};

/// As many members as BenchExtension has.
inline constexpr std::int32_t MapDispatchEmpty = 6;
inline constexpr std::int32_t MapDispatchEnveloped = 7;
std::unique_ptr<MapDispatch> makeMapDispatch();

} // namespace bench
