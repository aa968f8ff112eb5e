#include "exports/version.h"

#include "framework/export.h"

#include <cstdint>

VEXLITE_EXPORT std::uint32_t VexliteJsApiVersion()
{
    return VEXLITE_JSAPI_VERSION;
}
