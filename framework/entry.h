// The library's one entry for the suite.
#pragma once

#include "export.h"
#include "vexlite/registrymap.h"

/// Stores the factories of the 28 objects in the suite's map under their short names, over whatever stood
/// there under these names. A null map does nothing. [GUI thread]
extern "C" VEXLITE_EXPORT void GetNovaExtensionJsApiObj(ExtensionFactoryMap* factories);
