// The stand-in's own objects and arrays, to which script values are converted for the library.
#pragma once

#include "host/vexlite/ref.h"
#include "vexlite/jsonvalue.h"

#include <QByteArray>
#include <utility>
#include <vector>

namespace vexlite {

/// The nesting limit of all conversions.
inline constexpr int maximumDepth = 1000;

/// A new empty object, or array, with one reference for the caller.
Ref<IJSONValue> makeScriptObject();
Ref<IJSArray> makeScriptArray();

/// An IJSBytes that shares what `bytes` holds.
KJSVariant makeBytes(const QByteArray& bytes);

using ScriptPair = std::pair<QString, KJSVariant>;
/// An object of these pairs, in any order. The keys must be unique and own their characters.
Ref<IJSONValue> makeScriptObject(std::vector<ScriptPair> pairs);

/// A null QString becomes a string without a buffer, which textOf() makes null again.
KJSVariant makeText(const QString& text);
/// The QString of a string value; null for other types.
QString textOf(const KJSVariant& value);
/// The object, or array, in a value, borrowed; null for other types.
IJSONValue* objectOf(const KJSVariant& value);
IJSArray* arrayOf(const KJSVariant& value);

} // namespace vexlite
