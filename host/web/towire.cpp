#include "host/web/towire.h"

#include "host/vexlite/scriptvalues.h"
#include "host/web/frame.h"

#include <array>
#include <charconv>
#include <cmath>

namespace engine::web {

namespace {

constexpr std::int64_t Exact = (std::int64_t { 1 } << std::numeric_limits<double>::digits) - 1;
constexpr MVARIANT Nothing {};

bool isExact(std::int64_t number)
{
    return number >= -Exact && number <= Exact;
}

template <typename T> vexlite::Ref<T> ask(IUnknown* object, const KIID& iid)
{
    void* found = nullptr;
    object->QueryInterface(iid, &found);
    return vexlite::Ref<T>::adopt(static_cast<T*>(found));
}

/// Null when references go round or lead to nothing.
const MVARIANT* dereference(const MVARIANT& given)
{
    constexpr int MaximumReferences = 16;
    const MVARIANT* value = &given;
    for (int i = 0; value && value->vt == MV_BYREF_VARIANT; ++i)
        value = i > MaximumReferences ? nullptr : value->pvarVal;
    return value;
}

struct Units {
    const QChar* first;
    std::size_t count;
};

Units unitsOf(const MVARIANT& value)
{
    const char16_t* text = value.vt == MV_STRING ? value.bstrVal : value.pwszVal;
    const std::size_t count = !text ? 0
        : value.vt == MV_STRING     ? _XSysStringLen(text)
                                    : std::u16string_view(text).size();
    return { reinterpret_cast<const QChar*>(text), count };
}

void appendQuoted(QString& json, const QChar* units, std::size_t count)
{
    constexpr char16_t FirstPlain = 0x20;
    json += QLatin1Char('"');
    for (std::size_t i = 0; i < count; ++i) {
        const char16_t unit = units[i].unicode();
        if (unit == '"' || unit == '\\') {
            json += QLatin1Char('\\');
            json += units[i];
        } else if (unit < FirstPlain) {
            json += QStringLiteral("\\u%1").arg(static_cast<int>(unit), 4, 16, QLatin1Char('0'));
        } else {
            json += units[i];
        }
    }
    json += QLatin1Char('"');
}

template <typename Number> void appendNumber(QString& json, Number number)
{
    std::array<char, 32> digits {};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    json += QLatin1String(digits.data(), static_cast<int>(end - digits.data()));
}

} // namespace

bool ToWire::fail(const QString& problem)
{
    m_problem = problem;
    return false;
}

bool ToWire::enter(int depth, int units)
{
    if (depth > vexlite::maximumDepth)
        return fail(QStringLiteral("the answer is nested too deep"));
    if (m_values > maximumValues)
        return fail(QStringLiteral("the answer has more than 16000000 values"));
    return units <= maximumUnits || fail(QStringLiteral("the answer has more than 1 GB of text"));
}

bool ToWire::write(WireWriter& writer, const MVARIANT& value)
{
    return writeValue(writer, value, 0);
}

bool ToWire::writeResult(WireWriter& writer, const MVARIANT& value)
{
    const vexlite::Ref<IJSONValue> envelope = value.vt == MV_UNKNOWN && value.punkVal
        ? ask<IJSONValue>(value.punkVal, IID_IJSONValue)
        : vexlite::Ref<IJSONValue>();
    const QString* key = nullptr;
    const KJSVariant* data = nullptr;
    const KJSVariant* success = nullptr;
    if (!envelope || envelope->Count() != 2 || !envelope->At(0, &key, &data) || *key != QLatin1String("data")
        || !envelope->At(1, &key, &success) || *key != QLatin1String("success") || success->type() != MV_BOOL
        || !success->raw().boolVal)
        return write(writer, value);
    writer.unit('e');
    return writeValue(writer, data->raw(), 1);
}

bool ToWire::writeValue(WireWriter& writer, const MVARIANT& given, int depth)
{
    const MVARIANT* value = dereference(given);
    if (!value)
        return fail(QStringLiteral("the answer refers to nothing"));
    if (!enter(depth, writer.written().size()))
        return false;
    switch (value->vt) {
    case MV_EMPTY:
        writer.unit('u');
        return true;
    case MV_NULL:
        writer.unit('n');
        return true;
    case MV_BOOL:
        writer.unit(value->boolVal ? 't' : 'f');
        return true;
    case MV_INT32:
        writer.unit('d');
        writer.number(value->lVal);
        return true;
    case MV_DOUBLE:
        writer.unit('d');
        writer.number(value->dblVal);
        return true;
    case MV_INT64:
        writer.unit(isExact(value->llVal) ? 'd' : 'b');
        writer.word(QString::number(value->llVal));
        return true;
    case MV_STRING:
    case MV_LPWSTR: {
        const Units units = unitsOf(*value);
        writer.unit('s');
        if (units.count > maximumUnits)
            return fail(QStringLiteral("the answer has more than 1 GB of text"));
        writer.text(units.first, units.count);
        return true;
    }
    case MV_LPSTR:
        writer.unit('s');
        writer.text(QString::fromUtf8(value->pszVal));
        return true;
    case MV_UNKNOWN:
    case MV_DISPATCH:
    case MV_ARRAY: {
        if (!value->punkVal) {
            writer.unit('n');
            return true;
        }
        // Most values have a form in JSON, from which a document makes them several times as fast.
        const std::size_t valuesBefore = m_values;
        QString json;
        if (m_mayBeJson && appendJson(json, *value, depth)) {
            writer.unit('j');
            writer.text(json);
            return true;
        }
        m_values = valuesBefore;
        // What it holds is not tried again: that would take as long for each level.
        const bool wasTried = std::exchange(m_mayBeJson, false);
        const bool isWritten = writeInterface(writer, value->punkVal, depth);
        m_mayBeJson = wasTried;
        return isWritten;
    }
    case MV_ERROR:
        return fail(
            QStringLiteral("the answer is the error 0x%1").arg(value->scode, 8, 16, QLatin1Char('0')));
    default:
        return fail(QStringLiteral("the answer is of an unknown type: %1").arg(value->vt));
    }
}

bool ToWire::writeInterface(WireWriter& writer, IUnknown* object, int depth)
{
    if (const auto json = ask<IJSONValue>(object, IID_IJSONValue))
        return writeObject(writer, *json.get(), depth);
    if (const std::int64_t promise = vexlite::promiseHandle(object)) {
        if (!m_frame.hasPromise(promise))
            return fail(
                QStringLiteral("the answer is a promise that is not of this page, or was settled long ago"));
        writer.unit('p');
        writer.count(static_cast<std::uint64_t>(promise));
        return true;
    }
    if (const auto sub = ask<IJSSubObject>(object, IID_IJSSubObject))
        return writeHandle(writer, sub->Object());
    if (const auto list = ask<IJSArray>(object, IID_IJSArray))
        return writeArray(writer, *list.get(), depth);
    if (const auto bytes = ask<IJSBytes>(object, IID_IJSBytes)) {
        if (bytes->Size() > static_cast<std::size_t>(maximumUnits))
            return fail(QStringLiteral("the answer has more than 512 MB of bytes"));
        writer.unit('x');
        writer.bytes(bytes->Data(), bytes->Size());
        return true;
    }
    if (const auto function = ask<IJSFunction>(object, IID_IJSFunction)) {
        const auto* ours = dynamic_cast<const FrameFunction*>(function.get());
        const std::int64_t id = ours ? ours->idIn(m_frame) : 0;
        if (!id)
            return fail(QStringLiteral("the answer is a function of another page"));
        writer.unit('F');
        writer.count(static_cast<std::uint64_t>(id));
        return true;
    }
    if (const auto native = ask<IJSExtentionObject>(object, IID_IJSExtentionObject))
        return writeHandle(writer, native.get());
    return fail(QStringLiteral("the answer is an object without a script form"));
}

bool ToWire::writeHandle(WireWriter& writer, IJSExtentionObject* object)
{
    KResult status = KR_NOT_AVAILABLE;
    if (!object || !m_frame.isOpen()
        || !m_frame.handles().write(writer, object, m_frame.context(), m_name, status))
        return fail(
            QStringLiteral("%1 can not be bound: 0x%2").arg(m_name).arg(status, 8, 16, QLatin1Char('0')));
    return true;
}

bool ToWire::writeObject(WireWriter& writer, const IJSONValue& source, int depth)
{
    const std::int32_t count = source.Count();
    m_values += static_cast<std::size_t>(count);
    writer.unit('o');
    writer.count(static_cast<std::uint64_t>(count));
    for (std::int32_t i = 0; i < count; ++i) {
        const QString* key = nullptr;
        const KJSVariant* value = nullptr;
        if (!source.At(i, &key, &value))
            return fail(QStringLiteral("the answer changes while it is read"));
        writer.text(*key);
        if (!writeValue(writer, value->raw(), depth + 1))
            return false;
    }
    return true;
}

bool ToWire::writeArray(WireWriter& writer, const IJSArray& source, int depth)
{
    const std::int32_t count = source.Count();
    m_values += static_cast<std::size_t>(count);
    writer.unit('a');
    writer.count(static_cast<std::uint64_t>(count));
    for (std::int32_t i = 0; i < count; ++i) {
        const KJSVariant* item = source.At(i);
        if (!writeValue(writer, item ? item->raw() : Nothing, depth + 1))
            return false;
    }
    return true;
}

// False also for what JSON can not say; the value is written in the other form then, which finds any real fault again.
bool ToWire::appendJson(QString& json, const MVARIANT& given, int depth)
{
    const MVARIANT* value = dereference(given);
    if (!value || ++m_values > maximumValues || depth >= vexlite::maximumDepth || json.size() > maximumUnits)
        return false;
    switch (value->vt) {
    case MV_NULL:
        json += QLatin1String("null");
        return true;
    case MV_BOOL:
        json += value->boolVal ? QLatin1String("true") : QLatin1String("false");
        return true;
    case MV_INT32:
        appendNumber(json, value->lVal);
        return true;
    case MV_DOUBLE:
        if (!std::isfinite(value->dblVal))
            return false;
        appendNumber(json, value->dblVal);
        return true;
    case MV_INT64:
        if (!isExact(value->llVal))
            return false;
        appendNumber(json, value->llVal);
        return true;
    case MV_STRING: {
        const Units units = unitsOf(*value);
        if (units.count > static_cast<std::size_t>(maximumUnits))
            return false;
        appendQuoted(json, units.first, units.count);
        return true;
    }
    case MV_UNKNOWN:
    case MV_DISPATCH:
    case MV_ARRAY:
        break;
    default:
        return false;
    }
    if (!value->punkVal) {
        json += QLatin1String("null");
        return true;
    }
    if (const auto object = ask<IJSONValue>(value->punkVal, IID_IJSONValue)) {
        const std::int32_t count = object->Count();
        json += QLatin1Char('{');
        for (std::int32_t i = 0; i < count; ++i) {
            const QString* key = nullptr;
            const KJSVariant* item = nullptr;
            if (!object->At(i, &key, &item))
                return false;
            if (i)
                json += QLatin1Char(',');
            appendQuoted(json, key->constData(), static_cast<std::size_t>(key->size()));
            json += QLatin1Char(':');
            if (!appendJson(json, item->raw(), depth + 1))
                return false;
        }
        json += QLatin1Char('}');
        return true;
    }
    const auto list = ask<IJSArray>(value->punkVal, IID_IJSArray);
    if (!list)
        return false;
    const std::int32_t count = list->Count();
    json += QLatin1Char('[');
    for (std::int32_t i = 0; i < count; ++i) {
        const KJSVariant* item = list->At(i);
        if (i)
            json += QLatin1Char(',');
        if (!appendJson(json, item ? item->raw() : Nothing, depth + 1))
            return false;
    }
    json += QLatin1Char(']');
    return true;
}

} // namespace engine::web
