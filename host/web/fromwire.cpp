#include "host/web/fromwire.h"

#include "host/vexlite/scriptvalues.h"
#include "host/web/frame.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace engine::web {

namespace {

KJSVariant numberOf(const QByteArray& digits)
{
    double number = std::numeric_limits<double>::quiet_NaN();
    if (digits == "Infinity" || digits == "-Infinity")
        number = digits[0] == '-' ? -std::numeric_limits<double>::infinity()
                                  : std::numeric_limits<double>::infinity();
    else
        std::from_chars(digits.constData(), digits.constData() + digits.size(), number);
    const bool isInt32 = number >= std::numeric_limits<std::int32_t>::min()
        && number <= std::numeric_limits<std::int32_t>::max() && std::trunc(number) == number
        && !(number == 0 && std::signbit(number));
    return isInt32 ? KJSVariant::fromInt32(static_cast<std::int32_t>(number))
                   : KJSVariant::fromDouble(number);
}

} // namespace

bool FromWire::readValue(KJSVariant& out, int depth)
{
    if (++m_values > maximumValues || depth > vexlite::maximumDepth)
        return false;
    switch (m_reader.unit()) {
    case 'u':
        out = {};
        return true;
    case 'n':
        out = KJSVariant::null();
        return true;
    case 't':
        out = KJSVariant::fromBool(true);
        return true;
    case 'f':
        out = KJSVariant::fromBool(false);
        return true;
    case 'd':
        out = numberOf(m_reader.word().toLatin1());
        return !m_reader.failed();
    case 'b': {
        bool ok = false;
        out = KJSVariant::fromInt64(m_reader.word().toString().toLongLong(&ok));
        return ok;
    }
    case 's': {
        const WireText text = m_reader.text();
        out = KJSVariant::fromString({ text.units.utf16(), static_cast<std::size_t>(text.units.size()) });
        if (m_reader.failed() || out.type() == MV_ERROR)
            return false;
        if (const char16_t standIn = text.standIn.unicode())
            replaceUnits(out.raw().bstrVal, static_cast<std::size_t>(text.units.size()), standIn, u'\0');
        return true;
    }
    case 'x':
        out = vexlite::makeBytes(m_reader.bytes());
        return !m_reader.failed();
    case 'a':
        return readArray(out, depth);
    case 'o':
        return readObject(out, depth);
    case 'F': {
        const std::int64_t id = m_reader.count();
        if (m_reader.failed() || !id)
            return false;
        out = KJSVariant::fromUnknown(new FrameFunction(m_frame, id));
        return true;
    }
    case 'h': {
        const Handle* handle = m_frame.handles().find(m_reader.count());
        if (!handle)
            return false;
        out = KJSVariant::fromUnknown(vexlite::Ref<IJSExtentionObject>(handle->object).release());
        return true;
    }
    default:
        return false;
    }
}

bool FromWire::readArray(KJSVariant& out, int depth)
{
    vexlite::Ref<IJSArray> list = vexlite::makeScriptArray();
    for (std::int64_t count = m_reader.count(); count > 0; --count) {
        KJSVariant item;
        if (!readValue(item, depth + 1))
            return false;
        list->Append(item);
    }
    out = KJSVariant::fromUnknown(list.release(), MV_ARRAY);
    return !m_reader.failed();
}

bool FromWire::readObject(KJSVariant& out, int depth)
{
    std::vector<vexlite::ScriptPair> pairs;
    for (std::int64_t count = m_reader.count(); count > 0; --count) {
        const QString key = m_reader.text().toString();
        if (!readValue(pairs.emplace_back(key, KJSVariant()).second, depth + 1))
            return false;
    }
    std::sort(pairs.begin(), pairs.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    const auto sameKey = [](const auto& a, const auto& b) { return a.first == b.first; };
    if (m_reader.failed() || std::adjacent_find(pairs.begin(), pairs.end(), sameKey) != pairs.end())
        return false;
    out = KJSVariant::fromUnknown(vexlite::makeScriptObject(std::move(pairs)).release());
    return true;
}

} // namespace engine::web
