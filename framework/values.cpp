#include "framework/values.h"

#include "safec/safec.h"

#include <cmath>
#include <limits>

namespace {

constexpr int MaximumReferences = 16;
/// What a QString counts its units with.
constexpr std::size_t LongestString = std::numeric_limits<int>::max();
constexpr MVARIANT Undefined {};

/// A conversion's outcome, freed again.
class Converted {
public:
    Converted(const MVARIANT& value, MVarType type)
        : m_ok(_MVariantChangeType(&m_value, &value, 0, type) == KR_OK)
    {
    }
    Converted(const Converted&) = delete;
    Converted& operator=(const Converted&) = delete;
    ~Converted()
    {
        if (m_value.vt == MV_STRING)
            _XSysFreeString(m_value.bstrVal);
        else if (m_value.vt == MV_UNKNOWN && m_value.punkVal)
            m_value.punkVal->Release();
    }
    const MVARIANT* get() const { return m_ok ? &m_value : nullptr; }

private:
    MVARIANT m_value {};
    bool m_ok;
};

/// A string whose length somebody else says; null when it is longer than a string can be.
QString copyString(const char16_t* text, std::size_t length)
{
    if (!text || length > LongestString)
        return {};
    QString copy(static_cast<int>(length), Qt::Uninitialized);
    const std::size_t room = static_cast<std::size_t>(copy.size()) * sizeof *text;
    return !length || !vmemcpy_s(copy.data(), room, text, length * sizeof *text) ? copy : QString();
}

} // namespace

const MVARIANT& dereference(const MVARIANT& value)
{
    const MVARIANT* target = &value;
    for (int steps = 0; target->vt == MV_BYREF_VARIANT; ++steps) {
        if (!target->pvarVal || steps == MaximumReferences)
            return Undefined;
        target = target->pvarVal;
    }
    return *target;
}

KJSVariant copyValue(const KJSVariant& value)
{
    const MVARIANT& target = dereference(value.raw());
    if (&target == &value.raw() && target.vt != MV_LPSTR && target.vt != MV_LPWSTR)
        return value;
    switch (target.vt) {
    case MV_STRING:
        return KJSVariant::fromString({ target.bstrVal, _XSysStringLen(target.bstrVal) });
    case MV_LPSTR:
    case MV_LPWSTR:
        return makeString(readString(target));
    case MV_UNKNOWN:
    case MV_DISPATCH:
    case MV_ARRAY:
        if (target.punkVal)
            target.punkVal->AddRef();
        break;
    default:
        break;
    }
    return { target, nullptr };
}

bool isNullOrUndefined(const MVARIANT& value)
{
    const MVARIANT& target = dereference(value);
    return target.vt == MV_EMPTY || target.vt == MV_NULL;
}

bool isString(const MVARIANT& value)
{
    const auto type = dereference(value).vt;
    return type == MV_STRING || type == MV_LPSTR || type == MV_LPWSTR;
}

bool isBoolean(const MVARIANT& value)
{
    return dereference(value).vt == MV_BOOL;
}

bool isInteger(const MVARIANT& value)
{
    return isNumber(value) && convertToInt32(value);
}

bool isNumber(const MVARIANT& value)
{
    const auto type = dereference(value).vt;
    return type == MV_INT32 || type == MV_INT64 || type == MV_DOUBLE;
}

QString readString(const MVARIANT& value)
{
    const MVARIANT& target = dereference(value);
    switch (target.vt) {
    case MV_STRING:
        return copyString(target.bstrVal, _XSysStringLen(target.bstrVal));
    case MV_LPSTR:
        return QString::fromUtf8(target.pszVal, static_cast<int>(c_strnlen_s(target.pszVal, LongestString)));
    case MV_LPWSTR:
        return target.pwszVal ? QString::fromUtf16(target.pwszVal) : QString();
    default:
        return {};
    }
}

std::optional<QString> convertToString(const MVARIANT& value)
{
    const MVARIANT& target = dereference(value);
    if (isString(target)) {
        QString string = readString(target);
        return string.isNull() ? std::nullopt : std::optional(std::move(string));
    }
    const Converted converted(target, MV_STRING);
    return converted.get() ? std::optional(readString(*converted.get())) : std::nullopt;
}

std::optional<bool> convertToBoolean(const MVARIANT& value)
{
    const MVARIANT& target = dereference(value);
    if (target.vt == MV_BOOL)
        return target.boolVal != 0;
    const Converted truth(target, MV_BOOL);
    return truth.get() ? std::optional(truth.get()->boolVal != 0) : std::nullopt;
}

std::optional<std::int32_t> convertToInt32(const MVARIANT& value)
{
    const MVARIANT& target = dereference(value);
    if (target.vt == MV_INT32)
        return target.lVal;
    const Converted number(target, MV_INT32);
    return number.get() ? std::optional(number.get()->lVal) : std::nullopt;
}

std::optional<double> convertToDouble(const MVARIANT& value)
{
    const Converted number(dereference(value), MV_DOUBLE);
    return number.get() && std::isfinite(number.get()->dblVal) ? std::optional(number.get()->dblVal)
                                                               : std::nullopt;
}

void* queryObject(const MVARIANT& value, const KIID& iid)
{
    const MVARIANT& target = dereference(value);
    void* found = nullptr;
    // 9 and 13 differ in this one bit.
    if ((target.vt & 0xffb) == MV_DISPATCH) {
        if (target.punkVal)
            target.punkVal->QueryInterface(iid, &found);
        return found;
    }
    const Converted object(target, MV_UNKNOWN);
    if (object.get() && object.get()->punkVal)
        object.get()->punkVal->QueryInterface(iid, &found);
    return found;
}

KJSVariant makeString(const QString& string)
{
    if (string.isNull()) {
        MVARIANT none {};
        none.vt = MV_STRING;
        return { none, nullptr };
    }
    return KJSVariant::fromString(
        { reinterpret_cast<const char16_t*>(string.utf16()), static_cast<std::size_t>(string.size()) });
}
