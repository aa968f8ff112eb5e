// What the library exports, as another module of the suite may declare it.
#pragma once

#include "vexlite/jsextension.h"
#include "vexlite/registrymap.h"

#include <QString>

extern "C" void GetNovaExtensionJsApiObj(ExtensionFactoryMap* factories);

class KNovaExtensionUtils {
public:
    static KResult setPromiseReject(const JSContextEnv& context, KJSVariant& result, const QString& message);
};
