// The objects that the library registers, in the order of their registration.
#pragma once

#include "framework/members.h"
#include "vexlite/registrymap.h"

#include <span>

namespace jsapi {

struct RegisteredObject {
    const char* name; ///< without "NovaExtension."
    ExtensionFactory factory;
    std::uint32_t instanceMode; ///< InstanceMode in framework/factory.h
    const MemberList& (*members)();
};

std::span<const RegisteredObject> registeredObjects();

} // namespace jsapi
