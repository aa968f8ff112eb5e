#include "framework/structs.h"

#include "vexlite/jsapiutil.h"

namespace jsapi {

std::vector<QString> makeHeapStrings(std::initializer_list<const char*> strings)
{
    std::vector<QString> made;
    for (const char* string : strings)
        made.push_back(heapString(string));
    return made;
}

void insertValue(QVariantMap& map, const QString& name, const QVariant& value)
{
    map.insert(name, value);
}

KJSVariant convertVariant(const QVariant& value)
{
    KJSVariant converted;
    KJSApiUtil::ConvertQVariantToJSVariant(value, converted);
    return converted;
}

namespace {

/// Calls `action` with each property of an object. False when `value` is no object.
template <typename Action> bool forEachProperty(const KJSVariant& value, Action action)
{
    const KRef<IJSONValue> object = queryJsonObject(value.raw());
    if (!object)
        return false;
    QStringList names;
    object->Keys(names);
    for (const QString& name : names) {
        KJSVariant property;
        object->Get(name, property);
        action(name, property);
    }
    return true;
}

/// The same with the strings that the properties convert to.
template <typename Action> bool forEachString(const KJSVariant& value, Action action)
{
    return forEachProperty(value, [&](const QString& name, const KJSVariant& property) {
        action(name, convertToString(property.raw()).value_or(QString()));
    });
}

} // namespace

const IJSArray* findArray(const KJSVariant& value)
{
    const MVARIANT& list = dereference(value.raw());
    return list.vt == MV_ARRAY ? static_cast<const IJSArray*>(list.punkVal) : nullptr;
}

Reading Converter<std::string>::read(const KJSVariant& value, std::string& target)
{
    const std::optional<QString> string = convertToString(value.raw());
    if (!string)
        return Reading::NotConvertible;
    if (!string->isValidUtf16())
        return Reading::Wrong;
    target = string->toStdString();
    return Reading::Done;
}

Reading Converter<QVariant>::read(const KJSVariant& value, QVariant& target)
{
    QVariant converted;
    if (!KJSApiUtil::ConvertJSVariantToQVariant(value, converted))
        return Reading::Wrong;
    target = converted;
    return Reading::Done;
}

Reading Converter<QVariantMap>::read(const KJSVariant& value, QVariantMap& target)
{
    QVariant read;
    if (Converter<QVariant>::read(value, read) != Reading::Done || read.userType() != QMetaType::QVariantMap)
        return Reading::Wrong;
    target = read.toMap();
    return Reading::Done;
}

bool Converter<QMap<QString, QString>>::isKind(const KJSVariant& value)
{
    bool areStrings = true;
    return forEachProperty(value, [&](const QString&, const KJSVariant& property) {
        areStrings = areStrings && isString(property.raw());
    }) && areStrings;
}

Reading Converter<QMap<QString, QString>>::read(const KJSVariant& value, QMap<QString, QString>& target)
{
    QMap<QString, QString> map;
    if (!forEachString(value, [&](const QString& name, const QString& string) { map.insert(name, string); }))
        return Reading::NotConvertible;
    target = map;
    return Reading::Done;
}

Reading Converter<std::map<std::string, std::string>>::read(
    const KJSVariant& value, std::map<std::string, std::string>& target)
{
    std::map<std::string, std::string> map;
    bool isUnicode = true;
    const bool isObject = forEachString(value, [&](const QString& name, const QString& string) {
        isUnicode = isUnicode && name.isValidUtf16() && string.isValidUtf16();
        map.emplace(name.toStdString(), string.toStdString());
    });
    if (!isObject || !isUnicode)
        return isObject ? Reading::Wrong : Reading::NotConvertible;
    target = std::move(map);
    return Reading::Done;
}

QVariant Converter<std::map<std::string, std::string>>::toVariant(
    const std::map<std::string, std::string>& value)
{
    QVariantMap map;
    for (const auto& [name, string] : value)
        map.insert(QString::fromStdString(name), QString::fromStdString(string));
    return map;
}

Reading Converter<std::vector<std::int32_t>>::read(const KJSVariant& value, std::vector<std::int32_t>& target)
{
    const IJSArray* array = findArray(value);
    if (!array)
        return isGiven(value) ? Reading::Wrong : Reading::Absent;
    std::vector<std::int32_t> numbers;
    for (std::int32_t i = 0; i < array->Count(); ++i) {
        const std::optional<std::int32_t> number = convertToInt32(array->At(i)->raw());
        if (!number)
            return Reading::Wrong;
        numbers.push_back(*number);
    }
    target = std::move(numbers);
    return Reading::Done;
}

} // namespace jsapi
