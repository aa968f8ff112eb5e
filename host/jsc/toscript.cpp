#include "host/jsc/toscript.h"

#include "host/jsc/pagestate.h"
#include "host/vexlite/scriptvalues.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string_view>

namespace engine::jsc {

namespace {

constexpr int operationFailed = 3;
constexpr std::size_t inlineItems = 16;

template <typename T> vexlite::Ref<T> ask(IUnknown* object, const KIID& iid)
{
    void* found = nullptr;
    object->QueryInterface(iid, &found);
    return vexlite::Ref<T>::adopt(static_cast<T*>(found));
}

// The size is a constant, so that the compiler inlines the comparison.
template <int Size> bool isText(const QString& text, const char16_t (&expected)[Size])
{
    return text.size() == Size - 1 && !std::memcmp(text.constData(), expected, (Size - 1) * sizeof(QChar));
}

} // namespace

ToScript::ToScript(PageState& page, const NativeMember* member)
    : m_page(page)
    , m_ctx(page.ctx())
    , m_member(member)
{
}

JSValueRef ToScript::fail(const QString& problem)
{
    m_thrown = m_page.prelude().makeError(operationFailed, problem);
    return nullptr;
}

JSValueRef ToScript::envelopedData(const MVARIANT& value)
{
    if (value.vt != MV_UNKNOWN || !value.punkVal)
        return nullptr;
    const auto envelope = ask<IJSONValue>(value.punkVal, IID_IJSONValue);
    const QString* key = nullptr;
    const KJSVariant* data = nullptr;
    const KJSVariant* success = nullptr;
    if (!envelope || envelope->Count() != 2 || !envelope->At(0, &key, &data) || !isText(*key, u"data")
        || !envelope->At(1, &key, &success) || !isText(*key, u"success") || success->type() != MV_BOOL
        || !success->raw().boolVal)
        return nullptr;
    return convert(data->raw(), 1);
}

JSValueRef ToScript::error(const KJSVariant& failure)
{
    const JSValueRef converted = value(failure.raw());
    if (!converted)
        return m_thrown;
    if (JSValueIsObject(m_ctx, converted))
        return m_page.prelude().errorFromObject(converted);
    return m_page.prelude().makeError(operationFailed, stringOf(m_ctx, converted));
}

JSValueRef ToScript::convert(const MVARIANT& given, int depth)
{
    const MVARIANT* value = &given;
    for (int i = 0; value->vt == MV_BYREF_VARIANT; ++i) {
        value = value->pvarVal;
        if (!value || i > 16)
            return fail(QStringLiteral("the answer refers to nothing"));
    }
    switch (value->vt) {
    case MV_EMPTY:
        return JSValueMakeUndefined(m_ctx);
    case MV_NULL:
        return JSValueMakeNull(m_ctx);
    case MV_BOOL:
        return JSValueMakeBoolean(m_ctx, value->boolVal);
    case MV_INT32:
        return JSValueMakeNumber(m_ctx, value->lVal);
    case MV_DOUBLE:
        return JSValueMakeNumber(m_ctx, value->dblVal);
    case MV_INT64:
        return int64(value->llVal);
    case MV_STRING:
        return text(value->bstrVal, _XSysStringLen(value->bstrVal));
    case MV_LPWSTR:
        return text(value->pwszVal, value->pwszVal ? std::u16string_view(value->pwszVal).size() : 0);
    case MV_LPSTR:
        return makeString(m_ctx, QString::fromUtf8(value->pszVal));
    case MV_UNKNOWN:
    case MV_DISPATCH:
    case MV_ARRAY:
        return value->punkVal ? interface(value->punkVal, depth) : JSValueMakeNull(m_ctx);
    case MV_ERROR:
        return fail(
            QStringLiteral("the answer is the error 0x%1").arg(value->scode, 8, 16, QLatin1Char('0')));
    default:
        return fail(QStringLiteral("the answer is of an unknown type: %1").arg(value->vt));
    }
}

JSValueRef ToScript::text(const char16_t* units, std::size_t count)
{
    const Text made =
        Text::adopt(JSStringCreateWithCharacters(reinterpret_cast<const JSChar*>(units), count));
    return JSValueMakeString(m_ctx, made);
}

JSValueRef ToScript::int64(std::int64_t value)
{
    constexpr std::int64_t exact = (std::int64_t { 1 } << std::numeric_limits<double>::digits) - 1;
    if (value >= -exact && value <= exact)
        return JSValueMakeNumber(m_ctx, static_cast<double>(value));
    return JSBigIntCreateWithInt64(m_ctx, value, &m_thrown);
}

JSValueRef ToScript::interface(IUnknown* object, int depth)
{
    const Lock lock(m_ctx);
    if (const auto json = ask<IJSONValue>(object, IID_IJSONValue))
        return this->object(*json.get(), depth);
    if (const std::int64_t promise = vexlite::promiseHandle(object)) {
        JSObjectRef found = m_page.promises().find(promise);
        return found ? found
                     : fail(QStringLiteral(
                         "the answer is a promise that is not of this page, or was settled long ago"));
    }
    if (const auto sub = ask<IJSSubObject>(object, IID_IJSSubObject))
        return wrapper(sub->Object());
    if (const auto list = ask<IJSArray>(object, IID_IJSArray))
        return array(*list.get(), depth);
    if (const auto bytes = ask<IJSBytes>(object, IID_IJSBytes))
        return this->bytes(*bytes.get());
    if (const auto function = ask<IJSFunction>(object, IID_IJSFunction)) {
        const auto* ours = dynamic_cast<const ScriptFunction*>(function.get());
        JSObjectRef script = ours ? ours->functionOf(m_page) : nullptr;
        return script ? script : fail(QStringLiteral("the answer is a function of another page"));
    }
    if (const auto native = ask<IJSExtentionObject>(object, IID_IJSExtentionObject))
        return wrapper(native.get());
    return fail(QStringLiteral("the answer is an object without a script form"));
}

JSValueRef ToScript::bytes(const IJSBytes& source)
{
    const std::size_t size = source.Size();
    void* copy = size <= maximumBytes ? std::malloc(std::max<std::size_t>(size, 1)) : nullptr;
    if (!copy)
        return fail(QStringLiteral("the answer has more than 1 GB of bytes, or than there is memory for"));
    if (size)
        std::memcpy(copy, source.Data(), size);
    return JSObjectMakeTypedArrayWithBytesNoCopy(
        m_ctx, kJSTypedArrayTypeUint8Array, copy, size, [](void* memory, void*) { std::free(memory); },
        nullptr, &m_thrown);
}

JSValueRef ToScript::wrapper(IJSExtentionObject* object)
{
    KResult status = KR_NOT_AVAILABLE;
    const QString name = m_member ? m_member->fullName() : QStringLiteral("NovaExtension");
    JSObjectRef script = object ? m_page.wrappers().wrap(object, name, status) : nullptr;
    if (!script)
        return fail(
            QStringLiteral("%1 can not be bound: 0x%2").arg(name).arg(status, 8, 16, QLatin1Char('0')));
    return script;
}

bool ToScript::enter(int depth)
{
    if (depth >= vexlite::maximumDepth || m_page.engine().stackIsShort())
        fail(QStringLiteral("the answer is nested too deep"));
    else if (m_values > maximumValues)
        fail(QStringLiteral("the answer has more than 16000000 values"));
    else
        return true;
    return false;
}

JSValueRef ToScript::object(const IJSONValue& source, int depth)
{
    const std::int32_t count = source.Count();
    if (!enter(depth))
        return nullptr;
    if (count > Shapes::maximumKeys)
        return wideObject(source, depth);
    const QString* keys[Shapes::maximumKeys];
    const KJSVariant* sources[Shapes::maximumKeys];
    for (std::int32_t i = 0; i < count; ++i) {
        if (!source.At(i, &keys[i], &sources[i]))
            return fail(QStringLiteral("the answer changes while it is read"));
    }
    JSObjectRef factory = m_page.shapes().find(m_ctx, keys, count);
    if (!factory)
        return wideObject(source, depth);
    JSValueRef values[Shapes::maximumKeys];
    m_values += static_cast<std::size_t>(count);
    for (std::int32_t i = 0; i < count; ++i) {
        values[i] = convert(sources[i]->raw(), depth + 1);
        if (!values[i])
            return nullptr;
    }
    return JSObjectCallAsFunction(
        m_ctx, factory, nullptr, static_cast<std::size_t>(count), values, &m_thrown);
}

// Sets the properties while the object has no prototype, whose setters would be called.
JSValueRef ToScript::wideObject(const IJSONValue& source, int depth)
{
    const JSValueRef bare = m_page.prelude().call(m_page.prelude().bare, &m_thrown);
    if (!bare)
        return nullptr;
    const std::int32_t count = source.Count();
    m_values += static_cast<std::size_t>(count);
    for (std::int32_t i = 0; i < count; ++i) {
        const QString* key = nullptr;
        const KJSVariant* value = nullptr;
        if (!source.At(i, &key, &value))
            return fail(QStringLiteral("the answer changes while it is read"));
        const JSValueRef converted = convert(value->raw(), depth + 1);
        if (!converted)
            return nullptr;
        JSObjectSetProperty(m_ctx, asObject(bare), Text(*key), converted, kJSPropertyAttributeNone, nullptr);
    }
    JSObjectSetPrototype(m_ctx, asObject(bare), m_page.prelude().objectPrototype);
    return bare;
}

template <typename At> JSValueRef ToScript::makeList(std::size_t count, const At& at, int depth)
{
    m_values += count;
    if (!enter(depth))
        return nullptr;
    if (count <= inlineItems) {
        JSValueRef items[inlineItems];
        for (std::size_t i = 0; i < count; ++i) {
            items[i] = convert(at(i), depth + 1);
            if (!items[i])
                return nullptr;
        }
        return JSObjectMakeArray(m_ctx, count, items, &m_thrown);
    }
    // Filled first: setting existing items calls no setter of a prototype.
    const std::vector<JSValueRef> places(count, JSValueMakeUndefined(m_ctx));
    JSObjectRef array = JSObjectMakeArray(m_ctx, count, places.data(), &m_thrown);
    for (std::size_t i = 0; array && i < count; ++i) {
        const JSValueRef item = convert(at(i), depth + 1);
        if (!item)
            return nullptr;
        JSObjectSetPropertyAtIndex(m_ctx, array, static_cast<unsigned>(i), item, nullptr);
    }
    return array;
}

template JSValueRef ToScript::makeList(std::size_t, const std::function<const MVARIANT&(std::size_t)>&, int);

JSValueRef ToScript::array(const IJSArray& source, int depth)
{
    static constexpr MVARIANT nothing {};
    return makeList(
        static_cast<std::size_t>(source.Count()),
        [&](std::size_t i) -> const MVARIANT& {
            const KJSVariant* item = source.At(static_cast<std::int32_t>(i));
            return item ? item->raw() : nothing;
        },
        depth);
}

} // namespace engine::jsc
