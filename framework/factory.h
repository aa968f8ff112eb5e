// What the suite calls when a page touches an object: hands out the shared object, or makes one for the page.
#pragma once

#include "framework/extensionobject.h"
#include "vexlite/registrymap.h"

/// Instance modes.
namespace InstanceMode {
inline constexpr std::uint32_t Webview = 1; ///< one for each page, and it drives the page's window
inline constexpr std::uint32_t PerPage = 2;
inline constexpr std::uint32_t Shared = 3;
} // namespace InstanceMode

/// Gives one reference of `object` to the JS core; without a JS core the reference is given back.
inline KResult bindObject(
    KRef<IJSExtentionObject> object, std::int64_t creationContext, std::int64_t creationTarget)
{
    IVEXJSCore* core = vexlite::GetVEXJSCore();
    if (!core)
        return KR_NOT_AVAILABLE;
    core->Registry()->Bind(object.release(), creationContext, creationTarget, 0);
    return KR_OK;
}

/// The process has one T, made at the first call; its own reference is never given back.
template <typename T> KResult sharedObjectFactory(std::int64_t creationContext, std::int64_t creationTarget)
{
    static T shared;
    shared.SetInstanceMode(InstanceMode::Shared);
    shared.AddRef();
    return bindObject(KRef<IJSExtentionObject>(&shared), creationContext, creationTarget);
}

/// Every call makes a T.
template <typename T, std::uint32_t Mode>
KResult perPageObjectFactory(std::int64_t creationContext, std::int64_t creationTarget)
{
    KRef<IJSExtentionObject> made(new T);
    made->SetInstanceMode(Mode);
    return bindObject(std::move(made), creationContext, creationTarget);
}
