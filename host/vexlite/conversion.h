// Reads single values: dereferences them, converts their types, queries their interfaces.
#pragma once

#include "host/vexlite/ref.h"
#include "vexlite/jsvariant.h"

#include <QString>

namespace vexlite {

/// The value that by-reference variants lead to, borrowed; null when there is none.
const MVARIANT* dereference(const MVARIANT& value);

/// Converts as _MVariantChangeType does. False, with an empty `out`, when the value can not be converted.
bool convertVariant(const KJSVariant& value, MVarType type, KJSVariant& out);

/// The text of a string, a number or a boolean; a null string for other values.
QString convertToText(const KJSVariant& value);

/// The interface `iid` of an object value; null for other values.
template <typename Interface> Ref<Interface> queryInterface(const KJSVariant& value, const KIID& iid)
{
    const MVARIANT* target = dereference(value.raw());
    if (!target || (target->vt != MV_UNKNOWN && target->vt != MV_DISPATCH && target->vt != MV_ARRAY)
        || !target->punkVal)
        return {};
    void* found = nullptr;
    if (target->punkVal->QueryInterface(iid, &found) != KR_OK)
        return {};
    return Ref<Interface>::adopt(static_cast<Interface*>(found));
}

} // namespace vexlite
