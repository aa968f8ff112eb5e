// PageFunction: what the core must know of a script function besides how it is called.
#pragma once

#include "vexlite/jsonvalue.h"

namespace vexlite {

/// Every IJSFunction of an engine is one. [GUI thread]
class PageFunction : public IJSFunction {
public:
    /// What distinguishes functions: two wrappers return the same identity exactly when they wrap the same
    /// function of the same page. It stays as it is, and names no other function of that page, while either
    /// of them lives.
    virtual std::uintptr_t Identity() const = 0;
    /// The page it belongs to.
    virtual JSContextEnv Context() const = 0;
};

} // namespace vexlite
