#include "host/vexlite/scriptvalues.h"

#include "host/vexlite/conversion.h"
#include "host/vexlite/core.h"

#include <limits>

namespace vexlite {

namespace {

std::u16string_view view(const QString& text)
{
    return { reinterpret_cast<const char16_t*>(text.utf16()), static_cast<std::size_t>(text.size()) };
}

} // namespace

KJSVariant makeText(const QString& text)
{
    if (!text.isNull())
        return KJSVariant::fromString(view(text));
    MVARIANT withoutBuffer {};
    withoutBuffer.vt = MV_STRING;
    return { withoutBuffer, nullptr };
}

QString textOf(const KJSVariant& value)
{
    const MVARIANT* target = dereference(value.raw());
    if (!target)
        return {};
    switch (target->vt) {
    case MV_STRING: {
        if (!target->bstrVal)
            return {};
        const std::uint32_t length = _XSysStringLen(target->bstrVal);
        if (length > static_cast<std::uint32_t>(std::numeric_limits<int>::max()))
            return {};
        return QString(reinterpret_cast<const QChar*>(target->bstrVal), static_cast<int>(length));
    }
    case MV_LPSTR:
        return QString::fromUtf8(target->pszVal);
    case MV_LPWSTR:
        return target->pwszVal ? QString::fromUtf16(target->pwszVal) : QString();
    default:
        return {};
    }
}

IJSONValue* objectOf(const KJSVariant& value)
{
    // Borrowed: the value keeps its reference.
    return queryInterface<IJSONValue>(value, IID_IJSONValue).get();
}

IJSArray* arrayOf(const KJSVariant& value)
{
    return queryInterface<IJSArray>(value, IID_IJSArray).get();
}

KJSVariant makeFailure(std::int32_t code, const QString& message)
{
    Ref<IJSONValue> failure = makeScriptObject();
    failure->SetBoolean(QStringLiteral("success"), false);
    failure->SetInt32(QStringLiteral("code"), code);
    failure->SetString(QStringLiteral("msg"), message);
    return KJSVariant::fromUnknown(failure.release());
}

} // namespace vexlite
