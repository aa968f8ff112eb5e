// The requests of the cloud SDK: by a key, with strings, and JSON in the reply.
#pragma once

#include "host/cloudd/core.h"

#include "cloud/schema/orbitapi_types.h"

namespace cloudd {

/// Throws nothing: a request that fails has its state in the reply. It is for the current user, unless its extraParam has
/// another "userId" who is signed in.
orbitapi::OrbitApiResult callOrbitApi(
    Core& core, const Session& session, const orbitapi::CommonRequestArg& request);

} // namespace cloudd
