// Reading single values: by-reference values followed, types changed, interfaces asked for.
#pragma once

#include "host/vexlite/ref.h"
#include "vexlite/jsvariant.h"

#include <QString>

namespace vexlite {

/// The value behind any by-reference variants, borrowed; null when they lead nowhere.
const MVARIANT* followed(const MVARIANT& value);

/// Converts as _MVariantChangeType does. False, with an empty `out`, when there is no such form.
bool converted(const KJSVariant& value, MVarType type, KJSVariant& out);

/// The text of a value that has one: strings, numbers, booleans; null for others.
QString describedText(const KJSVariant& value);

/// The interface `iid` of an object value, or nothing for other values.
template <typename Interface> Ref<Interface> interfaceOf(const KJSVariant& value, const KIID& iid)
{
    const MVARIANT* target = followed(value.raw());
    if (!target || (target->vt != MV_UNKNOWN && target->vt != MV_DISPATCH && target->vt != MV_ARRAY)
        || !target->punkVal)
        return {};
    void* found = nullptr;
    if (target->punkVal->QueryInterface(iid, &found) != KR_OK)
        return {};
    return Ref<Interface>::adopt(static_cast<Interface*>(found));
}

} // namespace vexlite
