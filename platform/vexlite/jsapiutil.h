// Conversions between Qt's variants and script values, and the list that settles a promise.
#pragma once

#include "vexlite/jsonvalue.h"

#include <QVariantMap>
#include <vector>

namespace KJSApiUtil {

/// Converts a Qt value: booleans, numbers, strings, lists and maps, to any depth up to 1,000; an invalid
/// QVariant is undefined, a null pointer (QMetaType::Nullptr) is null, a QByteArray is an IJSBytes. Types without a script form become
/// their text, or undefined when they have none. What is nested deeper is undefined as a whole. Integers that
/// always fit 32 bits become MV_INT32, all others MV_INT64, and MV_DOUBLE where not even that holds them.
/// [GUI thread]
void ConvertQVariantToJSVariant(const QVariant& value, KJSVariant& out);

/// Converts a script value, the other way round. False, with an invalid `out`, when it holds a function, a
/// promise, bytes or another native object, or is nested beyond 1,000. [GUI thread]
bool ConvertJSVariantToQVariant(const KJSVariant& value, QVariant& out);

/// The list for IJSAnswerChannel::Answer: `success` (-1 or 0), `message`, and `values`. Where `values` has
/// the one key "data", the list carries that value itself. [GUI thread]
std::vector<KJSVariant> getAsynRetValList(
    std::int16_t success, const QString& message, const QVariantMap& values);
} // namespace KJSApiUtil
