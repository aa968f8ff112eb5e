// The procedures that have messages of their own, and "larkIpcCall": one table by name.
#pragma once

#include "host/cloudd/core.h"

namespace cloudd {

struct Procedure {
    std::string_view name;
    /// Reads the argument message, and replies once: a Refusal becomes a result with its state.
    void (*run)(Core& core, Session& session, const void* argument, Service::Reply reply);
};

/// Null when there is none of that name.
const Procedure* findProcedure(std::string_view name);

} // namespace cloudd
