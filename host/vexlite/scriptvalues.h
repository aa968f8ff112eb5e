// The stand-in's own objects and arrays: what script values become on their way to the library.
#pragma once

#include "host/vexlite/ref.h"
#include "vexlite/jsonvalue.h"

#include <utility>
#include <vector>

namespace vexlite {

/// A nesting deeper than this is refused everywhere.
inline constexpr int maximumDepth = 1000;

/// A new empty object, or array, with one reference for the caller.
Ref<IJSONValue> makeScriptObject();
Ref<IJSArray> makeScriptArray();

using ScriptPair = std::pair<QString, KJSVariant>;
/// An object of these pairs, in any order. No two keys may be the same, and the keys own their texts.
Ref<IJSONValue> makeScriptObject(std::vector<ScriptPair> pairs);

/// A null text becomes a string without a buffer, and textOf reads that as null again.
KJSVariant makeText(const QString& text);
/// The text of a string value; null for other types.
QString textOf(const KJSVariant& value);
/// The object, or array, that a value holds, borrowed; null for other types.
IJSONValue* objectOf(const KJSVariant& value);
IJSArray* arrayOf(const KJSVariant& value);

} // namespace vexlite
