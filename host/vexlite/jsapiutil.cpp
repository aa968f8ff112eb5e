#include "vexlite/jsapiutil.h"

#include "host/vexlite/conversion.h"
#include "host/vexlite/ownedtext.h"
#include "host/vexlite/scriptvalues.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>
#include <QVariantHash>
#include <limits>

using namespace vexlite;

namespace {

/// Both directions fail at the first part that can not be converted, so a value that contains itself fails at
/// the nesting limit. `depth` counts the containers around the value.
bool toScript(const QVariant& value, int depth, KJSVariant& out);
bool toQt(const KJSVariant& value, int depth, QVariant& out);

bool listToScript(const QVariantList& list, int depth, KJSVariant& out)
{
    if (depth >= maximumDepth)
        return false;
    Ref<IJSArray> array = makeScriptArray();
    for (const QVariant& entry : list) {
        KJSVariant made;
        if (!toScript(entry, depth + 1, made))
            return false;
        array->Append(made);
    }
    out = KJSVariant::fromUnknown(array.release(), MV_ARRAY);
    return true;
}

template <typename Map> bool mapToScript(const Map& map, int depth, KJSVariant& out)
{
    if (depth >= maximumDepth)
        return false;
    Ref<IJSONValue> object = makeScriptObject();
    for (auto entry = map.begin(); entry != map.end(); ++entry) {
        KJSVariant made;
        if (!toScript(entry.value(), depth + 1, made))
            return false;
        object->SetValue(entry.key(), made);
    }
    out = KJSVariant::fromUnknown(object.release());
    return true;
}

KJSVariant unsignedToScript(qulonglong value)
{
    return value <= static_cast<qulonglong>(std::numeric_limits<std::int64_t>::max())
        ? KJSVariant::fromInt64(static_cast<std::int64_t>(value))
        : KJSVariant::fromDouble(static_cast<double>(value));
}

/// Other types: a list or map if they convert to one, or else a string.
bool otherToScript(const QVariant& value, int depth, KJSVariant& out)
{
    if (value.canConvert<QVariantList>())
        return listToScript(value.toList(), depth, out);
    if (value.canConvert<QVariantMap>())
        return mapToScript(value.toMap(), depth, out);
    QVariant text = value;
    out = text.convert(QMetaType::QString) ? makeText(text.toString()) : KJSVariant();
    return true;
}

bool toScript(const QVariant& value, int depth, KJSVariant& out)
{
    switch (value.userType()) {
    case QMetaType::UnknownType:
        out = {};
        return true;
    case QMetaType::Nullptr:
        out = KJSVariant::null();
        return true;
    case QMetaType::Bool:
        out = KJSVariant::fromBool(value.toBool());
        return true;
    case QMetaType::Int:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::UChar:
        out = KJSVariant::fromInt32(value.toInt());
        return true;
    case QMetaType::UInt:
    case QMetaType::Long:
    case QMetaType::LongLong:
        out = KJSVariant::fromInt64(value.toLongLong());
        return true;
    case QMetaType::ULong:
    case QMetaType::ULongLong:
        out = unsignedToScript(value.toULongLong());
        return true;
    case QMetaType::Float:
    case QMetaType::Double:
        out = KJSVariant::fromDouble(value.toDouble());
        return true;
    case QMetaType::QString:
    case QMetaType::QChar:
        out = makeText(value.toString());
        return true;
    case QMetaType::QByteArray:
        out = makeBytes(value.toByteArray());
        return true;
    case QMetaType::QVariantList:
    case QMetaType::QStringList:
        return listToScript(value.toList(), depth, out);
    case QMetaType::QVariantMap:
        return mapToScript(value.toMap(), depth, out);
    case QMetaType::QVariantHash:
        return mapToScript(value.toHash(), depth, out);
    case QMetaType::QJsonValue:
        return toScript(value.toJsonValue().toVariant(), depth, out);
    case QMetaType::QJsonObject:
        return mapToScript(value.toJsonObject().toVariantMap(), depth, out);
    case QMetaType::QJsonArray:
        return listToScript(value.toJsonArray().toVariantList(), depth, out);
    case QMetaType::QJsonDocument:
        return toScript(value.toJsonDocument().toVariant(), depth, out);
    default:
        return otherToScript(value, depth, out);
    }
}

bool arrayToQt(const IJSArray& array, int depth, QVariant& out)
{
    if (depth >= maximumDepth)
        return false;
    QVariantList list;
    list.reserve(array.Count());
    for (std::int32_t index = 0; index < array.Count(); ++index) {
        QVariant entry;
        if (!toQt(*array.At(index), depth + 1, entry))
            return false;
        list.append(entry);
    }
    out = list;
    return true;
}

bool objectToQt(const IJSONValue& object, int depth, QVariant& out)
{
    if (depth >= maximumDepth)
        return false;
    QVariantMap map;
    const QString* key = nullptr;
    const KJSVariant* value = nullptr;
    for (std::int32_t position = 0; object.At(position, &key, &value); ++position) {
        QVariant entry;
        if (!toQt(*value, depth + 1, entry))
            return false;
        map.insert(makeOwnedText(*key), entry);
    }
    out = map;
    return true;
}

bool interfaceToQt(const KJSVariant& value, int depth, QVariant& out)
{
    if (!dereference(value.raw())->punkVal) {
        out = QVariant::fromValue(nullptr);
        return true;
    }
    if (const IJSArray* array = arrayOf(value))
        return arrayToQt(*array, depth, out);
    if (const IJSONValue* object = objectOf(value))
        return objectToQt(*object, depth, out);
    return false;
}

bool toQt(const KJSVariant& value, int depth, QVariant& out)
{
    const MVARIANT* target = dereference(value.raw());
    if (!target)
        return false;
    switch (target->vt) {
    case MV_EMPTY:
        out = QVariant();
        return true;
    case MV_NULL:
        out = QVariant::fromValue(nullptr);
        return true;
    case MV_BOOL:
        out = target->boolVal != 0;
        return true;
    case MV_INT32:
        out = static_cast<int>(target->lVal);
        return true;
    case MV_INT64:
        out = static_cast<qlonglong>(target->llVal);
        return true;
    case MV_DOUBLE:
        out = target->dblVal;
        return true;
    case MV_STRING:
    case MV_LPSTR:
    case MV_LPWSTR:
        out = textOf(value);
        return true;
    case MV_UNKNOWN:
    case MV_DISPATCH:
    case MV_ARRAY:
        return interfaceToQt(value, depth, out);
    default:
        return false;
    }
}

} // namespace

namespace KJSApiUtil {

void ConvertQVariantToJSVariant(const QVariant& value, KJSVariant& out)
{
    if (!toScript(value, 0, out))
        out = {};
}

bool ConvertJSVariantToQVariant(const KJSVariant& value, QVariant& out)
{
    const bool done = toQt(value, 0, out);
    if (!done)
        out = QVariant();
    return done;
}

std::vector<KJSVariant> getAsynRetValList(
    std::int16_t success, const QString& message, const QVariantMap& values)
{
    const auto data = values.find(QStringLiteral("data"));
    std::vector<KJSVariant> list(3);
    list[0] = KJSVariant::fromBool(success != 0);
    list[1] = makeText(message);
    ConvertQVariantToJSVariant(
        values.size() == 1 && data != values.end() ? *data : QVariant(values), list[2]);
    return list;
}

} // namespace KJSApiUtil
