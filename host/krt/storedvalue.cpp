// Plain JSON for types that JSON has: true, 5 (32-bit integer), 1.5, "text", null, lists, maps. Other values
// are an object whose only key begins with "$": {"$int64": 5}, {"$uint32": 5}, {"$uint64": 5},
// {"$undefined": true}, {"$double": "7ff0000000000000"} for an infinity or NaN (the bits in
// hexadecimal); a map that looks like one of these is wrapped as {"$map": {...}}.
#include "host/krt/storedvalue.h"

#include <QMetaType>
#include <bit>
#include <cmath>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <utility>

namespace krt {

namespace {

using nlohmann::json;

constexpr int MaxDepth = 1000;
constexpr QChar Escape(0xffff);
constexpr int EscapeDigits = 4;

bool looksTagged(const json& object)
{
    return object.size() == 1 && object.begin().key().rfind('$', 0) == 0;
}

std::string formatBits(double number)
{
    return QString::number(std::bit_cast<quint64>(number), 16).toStdString();
}

std::optional<json> store(const QVariant& value, int depth)
{
    if (depth > MaxDepth)
        return {};
    switch (value.userType()) {
    case QMetaType::UnknownType:
        return json { { "$undefined", true } };
    case QMetaType::Nullptr:
        return json(nullptr);
    case QMetaType::Bool:
        return json(value.toBool());
    case QMetaType::Int:
        return json(value.toInt());
    case QMetaType::LongLong:
        return json { { "$int64", value.toLongLong() } };
    case QMetaType::UInt:
        return json { { "$uint32", value.toUInt() } };
    case QMetaType::ULongLong:
        return json { { "$uint64", value.toULongLong() } };
    case QMetaType::Double:
        return std::isfinite(value.toDouble()) ? json(value.toDouble())
                                               : json { { "$double", formatBits(value.toDouble()) } };
    case QMetaType::QString:
        return json(encodeText(value.toString()));
    case QMetaType::QVariantList: {
        json list = json::array();
        for (const QVariant& item : value.toList()) {
            auto stored = store(item, depth + 1);
            if (!stored)
                return {};
            list.push_back(std::move(*stored));
        }
        return list;
    }
    case QMetaType::QVariantMap: {
        json map = json::object();
        const QVariantMap entries = value.toMap();
        for (auto entry = entries.begin(); entry != entries.end(); ++entry) {
            auto stored = store(entry.value(), depth + 1);
            if (!stored)
                return {};
            map[encodeText(entry.key())] = std::move(*stored);
        }
        return looksTagged(map) ? json { { "$map", std::move(map) } } : map;
    }
    default:
        return {};
    }
}

template <typename Integer> Integer restoreInteger(const json& stored)
{
    const bool fits = stored.is_number_unsigned() ? std::in_range<Integer>(stored.get<std::uint64_t>())
                                                  : std::in_range<Integer>(stored.get<std::int64_t>());
    if (!stored.is_number_integer() || !fits)
        throw std::invalid_argument("integer out of range");
    return static_cast<Integer>(stored.get<std::uint64_t>());
}

double restoreDouble(const json& stored)
{
    bool ok = false;
    const auto number = std::bit_cast<double>(
        QString::fromStdString(stored.get_ref<const std::string&>()).toULongLong(&ok, 16));
    if (!ok || std::isfinite(number))
        throw std::invalid_argument("bits of no such number");
    return number;
}

QVariant restore(const json& stored, int depth);

QVariant restoreMap(const json& stored, int depth)
{
    QVariantMap map;
    for (const auto& entry : stored.items())
        map.insert(decodeText(entry.key()), restore(entry.value(), depth + 1));
    return map;
}

QVariant restoreTagged(const std::string& tag, const json& stored, int depth)
{
    if (tag == "$undefined")
        return {};
    if (tag == "$int64")
        return restoreInteger<qlonglong>(stored);
    if (tag == "$uint32")
        return restoreInteger<uint>(stored);
    if (tag == "$uint64")
        return restoreInteger<qulonglong>(stored);
    if (tag == "$double")
        return restoreDouble(stored);
    if (tag == "$map" && stored.is_object())
        return restoreMap(stored, depth);
    throw std::invalid_argument("unknown kind of value " + tag);
}

QVariant restore(const json& stored, int depth)
{
    if (depth > MaxDepth)
        throw std::invalid_argument("value nested too deep");
    switch (stored.type()) {
    case json::value_t::null:
        return QVariant::fromValue(nullptr);
    case json::value_t::boolean:
        return stored.get<bool>();
    case json::value_t::number_integer:
    case json::value_t::number_unsigned:
        return restoreInteger<int>(stored);
    case json::value_t::number_float:
        return stored.get<double>();
    case json::value_t::string:
        return decodeText(stored.get_ref<const std::string&>());
    case json::value_t::array: {
        QVariantList list;
        for (const json& item : stored)
            list.append(restore(item, depth + 1));
        return list;
    }
    case json::value_t::object:
        return looksTagged(stored) ? restoreTagged(stored.begin().key(), stored.begin().value(), depth)
                                   : restoreMap(stored, depth);
    default:
        throw std::invalid_argument("unknown kind of value");
    }
}

} // namespace

std::string encodeText(const QString& text)
{
    QString escaped;
    for (int at = 0; at < text.size(); ++at) {
        const QChar unit = text[at];
        const bool pair = unit.isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate();
        if (pair)
            escaped.append(unit).append(text[++at]);
        else if (unit.isSurrogate() || unit == Escape)
            escaped.append(Escape).append(QString::number(unit.unicode(), 16));
        else
            escaped.append(unit);
    }
    return escaped.toStdString();
}

QString decodeText(const std::string& stored)
{
    const QString escaped = QString::fromStdString(stored);
    QString text;
    for (int at = 0; at < escaped.size(); ++at) {
        if (escaped[at] != Escape) {
            text.append(escaped[at]);
            continue;
        }
        bool ok = false;
        text.append(QChar(escaped.mid(at + 1, EscapeDigits).toUShort(&ok, 16)));
        if (!ok)
            throw std::invalid_argument("escape without its digits");
        at += EscapeDigits;
    }
    return text;
}

std::optional<json> encodeValue(const QVariant& value)
{
    return store(value, 0);
}

QVariant decodeValue(const json& stored)
{
    return restore(stored, 0);
}

} // namespace krt
