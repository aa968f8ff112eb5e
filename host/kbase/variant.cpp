// Conversion of variants: a source is converted to one of a few plain types, and from that to the target
// type.
#include "kbase/variant.h"

#include <QString>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

namespace {

constexpr KResult NotConvertible = 0x80020005u;
constexpr KResult BadArgument = 0x80070057u;
constexpr int MaxReferences = 16;

/// 2^63: the first double above the 64-bit integers.
constexpr double Int64End = 9223372036854775808.0;

const MVARIANT* followReferences(const MVARIANT* source)
{
    for (int step = 0; source && source->vt == MV_BYREF_VARIANT; ++step)
        source = step < MaxReferences ? source->pvarVal : nullptr;
    return source;
}

bool isText(std::uint16_t type)
{
    return type == MV_STRING || type == MV_LPSTR || type == MV_LPWSTR;
}

/// The UTF-16 units of a string: its own, or those that were decoded into `decoded`.
std::u16string_view readUnits(const MVARIANT& source, QString& decoded)
{
    if (source.vt == MV_STRING && source.bstrVal)
        return { source.bstrVal, _XSysStringLen(source.bstrVal) };
    if (source.vt == MV_LPWSTR && source.pwszVal)
        return source.pwszVal;
    if (source.vt == MV_LPSTR)
        decoded = QString::fromUtf8(source.pszVal);
    return { reinterpret_cast<const char16_t*>(decoded.utf16()), static_cast<std::size_t>(decoded.size()) };
}

/// For parsing numbers, which are ASCII without blanks; empty for any other string.
std::string readAscii(const MVARIANT& source)
{
    QString decoded;
    std::string ascii;
    for (const char16_t unit : readUnits(source, decoded)) {
        if (unit > 0x7f)
            return {};
        ascii.push_back(static_cast<char>(unit));
    }
    return ascii;
}

std::optional<std::int64_t> exactInteger(double value)
{
    if (!(value >= -Int64End && value < Int64End) || std::trunc(value) != value)
        return {};
    return static_cast<std::int64_t>(value);
}

/// Accepts a sign, digits, and zeros as decimals: "12" and "12.0", not "1.2e1".
std::optional<std::int64_t> parseInteger(const std::string& text)
{
    std::int64_t value;
    const char* end = text.data() + text.size();
    auto [rest, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc())
        return {};
    const std::string_view fraction(rest, static_cast<std::size_t>(end - rest));
    if (fraction.empty() || (fraction[0] == '.' && fraction.find_first_not_of('0', 1) == fraction.npos))
        return value;
    return {};
}

std::optional<double> parseDouble(const std::string& text)
{
    double value;
    const char* end = text.data() + text.size();
    auto [rest, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || rest != end || !std::isfinite(value))
        return {};
    return value;
}

std::optional<std::int64_t> toInteger(const MVARIANT& source)
{
    switch (source.vt) {
    case MV_INT32:
        return source.lVal;
    case MV_INT64:
        return source.llVal;
    case MV_BOOL:
        return source.boolVal ? 1 : 0;
    case MV_DOUBLE:
        return exactInteger(source.dblVal);
    default:
        return isText(source.vt) ? parseInteger(readAscii(source)) : std::nullopt;
    }
}

std::optional<double> toDouble(const MVARIANT& source)
{
    if (source.vt == MV_DOUBLE)
        return source.dblVal;
    if (isText(source.vt))
        return parseDouble(readAscii(source));
    const auto integer = toInteger(source);
    if (!integer || exactInteger(static_cast<double>(*integer)) != integer)
        return {};
    return static_cast<double>(*integer);
}

std::optional<bool> toBool(const MVARIANT& source)
{
    if (source.vt == MV_INT64)
        return source.llVal != 0;
    if (isText(source.vt)) {
        const std::string text = readAscii(source);
        if (text == "true" || text == "false")
            return text == "true";
    }
    const auto number = toDouble(source);
    if (!number || std::isnan(*number))
        return {};
    return *number != 0;
}

/// As script prints it: the shortest digits that parse to the same number, with an exponent only for very large or
/// small numbers.
std::string formatShortest(double value)
{
    if (value == 0)
        return "0";
    char text[64];
    const auto done = std::to_chars(text, std::end(text), std::fabs(value), std::chars_format::scientific);
    const std::string_view scientific(text, static_cast<std::size_t>(done.ptr - text));
    const std::size_t exponentAt = scientific.find('e');
    std::string digits(scientific.substr(0, exponentAt));
    digits.erase(1, 1); // the point, if there is one
    int exponent = 0;
    const std::size_t numberAt = exponentAt + (scientific[exponentAt + 1] == '+' ? 2 : 1);
    std::from_chars(text + numberAt, done.ptr, exponent);

    const std::string sign = value < 0 ? "-" : "";
    if (exponent < -6 || exponent >= 21) {
        const std::string fraction = digits.size() > 1 ? '.' + digits.substr(1) : "";
        return sign + digits[0] + fraction + (exponent < 0 ? "e-" : "e+")
            + std::to_string(std::abs(exponent));
    }
    if (exponent < 0)
        return sign + "0." + std::string(static_cast<std::size_t>(-exponent - 1), '0') + digits;
    const auto whole = static_cast<std::size_t>(exponent) + 1;
    if (digits.size() <= whole)
        return sign + digits + std::string(whole - digits.size(), '0');
    return sign + digits.substr(0, whole) + '.' + digits.substr(whole);
}

KResult storeText(MVARIANT& target, std::u16string_view text)
{
    if (text.size() > std::numeric_limits<std::uint32_t>::max())
        return KR_NO_MEMORY;
    target.bstrVal = _XSysAllocStringLen(text.data(), static_cast<std::uint32_t>(text.size()));
    if (!target.bstrVal)
        return KR_NO_MEMORY;
    target.vt = MV_STRING;
    return KR_OK;
}

KResult toText(MVARIANT& target, const MVARIANT& source)
{
    QString made;
    if (isText(source.vt))
        return storeText(target, readUnits(source, made));
    if (source.vt == MV_BOOL)
        return storeText(target, source.boolVal ? u"true" : u"false");
    if (source.vt == MV_INT32 || source.vt == MV_INT64)
        made = QString::number(*toInteger(source));
    else if (source.vt == MV_DOUBLE && std::isfinite(source.dblVal))
        made = QString::fromStdString(formatShortest(source.dblVal));
    else
        return NotConvertible;
    return storeText(
        target, { reinterpret_cast<const char16_t*>(made.utf16()), static_cast<std::size_t>(made.size()) });
}

template <typename Value, typename Field>
KResult storeNumber(MVARIANT& target, std::uint16_t type, Field MVARIANT::*field, std::optional<Value> value)
{
    if (!value)
        return NotConvertible;
    target.*field = static_cast<Field>(*value);
    target.vt = type;
    return KR_OK;
}

KResult storeInterface(MVARIANT& target, std::uint16_t type, const MVARIANT& source)
{
    const bool interchangeable = source.vt == MV_DISPATCH || source.vt == MV_UNKNOWN;
    if (source.vt != type && !(interchangeable && type != MV_ARRAY))
        return NotConvertible;
    target.punkVal = source.punkVal;
    if (target.punkVal)
        target.punkVal->AddRef();
    target.vt = type;
    return KR_OK;
}

KResult convert(MVARIANT& target, const MVARIANT& source, std::uint16_t type)
{
    switch (type) {
    case MV_INT32: {
        auto integer = toInteger(source);
        if (integer && *integer != static_cast<std::int32_t>(*integer))
            integer.reset();
        return storeNumber(target, type, &MVARIANT::lVal, integer);
    }
    case MV_INT64:
        return storeNumber(target, type, &MVARIANT::llVal, toInteger(source));
    case MV_DOUBLE:
        return storeNumber(target, type, &MVARIANT::dblVal, toDouble(source));
    case MV_BOOL: {
        const auto truth = toBool(source);
        return storeNumber(
            target, type, &MVARIANT::boolVal, truth ? std::optional(*truth ? -1 : 0) : std::nullopt);
    }
    case MV_STRING:
        return toText(target, source);
    case MV_DISPATCH:
    case MV_UNKNOWN:
    case MV_ARRAY:
        return storeInterface(target, type, source);
    case MV_EMPTY:
    case MV_NULL:
    case MV_ERROR:
        if (source.vt != type)
            return NotConvertible;
        target = source;
        return KR_OK;
    default:
        return NotConvertible;
    }
}

} // namespace

KResult _MVariantChangeType(MVARIANT* target, const MVARIANT* source, std::uint16_t flags, std::uint16_t type)
{
    if (!target || target == source)
        return BadArgument;
    MVARIANT made {};
    source = followReferences(source);
    const KResult result = flags || !source || source == target ? BadArgument : convert(made, *source, type);
    *target = result == KR_OK ? made : MVARIANT {};
    return result;
}
