// The procedures that have messages of their own, and "larkIpcCall".
#pragma once

#include "host/cloudd/core.h"

namespace cloudd {

struct Procedure {
    std::string_view name;
    /// Reads the argument message and replies once; an Error becomes a result with its state.
    void (*run)(Core& core, Session& session, const void* argument, Service::Reply reply);
};

/// Null for an unknown name.
const Procedure* findProcedure(std::string_view name);

} // namespace cloudd
