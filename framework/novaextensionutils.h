// What the library offers to other modules of the suite besides its entry.
#pragma once

#include "export.h"
#include "vexlite/jsextension.h"

#include <QString>

class KNovaExtensionUtils {
public:
    /// Writes a promise that is already rejected with `message`. Without a JS core or a promise
    /// service `result` stays as it is. Always returns 1. [GUI thread]
    VEXLITE_EXPORT static KResult setPromiseReject(
        const JSContextEnv& context, KJSVariant& result, const QString& message);
};

/// The function behind every member that is not built yet: fails with code 3 "not supported.". A suite
/// recognises such members by comparing their invoke function with it. [GUI thread]
extern "C" VEXLITE_EXPORT KResult NovaExtensionMemberNotSupported(IJSExtentionObject* self,
    const JSContextEnv& context, JSApiArguments& arguments, KJSVariant& result, KJSVariant& exception);
