#include "host/vexlite/conversion.h"

#include "host/vexlite/scriptvalues.h"

namespace vexlite {

const MVARIANT* dereference(const MVARIANT& value)
{
    constexpr int longestChain = 16;
    const MVARIANT* target = &value;
    for (int step = 0; target && target->vt == MV_BYREF_VARIANT; ++step)
        target = step < longestChain ? target->pvarVal : nullptr;
    return target;
}

bool convertVariant(const KJSVariant& value, MVarType type, KJSVariant& out)
{
    out = {};
    MVARIANT made {};
    if (_MVariantChangeType(&made, &value.raw(), 0, type) != KR_OK)
        return false;
    std::shared_ptr<void> owner;
    if (made.vt == MV_STRING)
        owner = { made.bstrVal, [](void* payload) { _XSysFreeString(static_cast<XBSTR>(payload)); } };
    out = KJSVariant(made, std::move(owner));
    return true;
}

QString convertToText(const KJSVariant& value)
{
    KJSVariant text;
    return convertVariant(value, MV_STRING, text) ? textOf(text) : QString();
}

} // namespace vexlite
