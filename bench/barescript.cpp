#include "bench/barescript.h"

#include <iterator>

namespace bench {

namespace {

const BareScript* current = nullptr;
int answers = 0;

JSValueRef empty(JSContextRef context, JSObjectRef, JSObjectRef, size_t, const JSValueRef*, JSValueRef*)
{
    return JSValueMakeUndefined(context);
}

JSValueRef enveloped(JSContextRef, JSObjectRef, JSObjectRef, size_t, const JSValueRef*, JSValueRef* exception)
{
    return current->makeEnvelope(true, ++answers, exception);
}

/// A property of an object, by its name as the engine keeps it: the callback makes the names once.
JSValueRef property(JSContextRef context, JSObjectRef object, JSStringRef name)
{
    return JSObjectGetProperty(context, object, name, nullptr);
}

/// Reads three properties as a person writes it with the engine's C API.
JSValueRef options(
    JSContextRef context, JSObjectRef, JSObjectRef, size_t, const JSValueRef* arguments, JSValueRef*)
{
    static const JSStringRef nameKey = JSStringCreateWithUTF8CString("name");
    static const JSStringRef visibleKey = JSStringCreateWithUTF8CString("visible");
    static const JSStringRef widthKey = JSStringCreateWithUTF8CString("width");
    static qint64 sum = 0;

    const JSObjectRef object = JSValueToObject(context, arguments[0], nullptr);
    const JSStringRef text = JSValueToStringCopy(context, property(context, object, nameKey), nullptr);
    const QString name(reinterpret_cast<const QChar*>(JSStringGetCharactersPtr(text)),
        static_cast<int>(JSStringGetLength(text)));
    JSStringRelease(text);
    const bool visible = JSValueToBoolean(context, property(context, object, visibleKey));
    const double width = JSValueToNumber(context, property(context, object, widthKey), nullptr);
    sum += name.size() + visible + static_cast<int>(width);
    return JSValueMakeUndefined(context);
}

} // namespace

BareScript::BareScript()
    : m_context(JSGlobalContextCreate(nullptr))
    , m_object(JSObjectMake(m_context, nullptr, nullptr))
{
    JSValueProtect(m_context, m_object);
    m_envelope = function(QStringLiteral("(function (success, data) { return { success, data }; })"));
    add("empty", empty);
    add("enveloped", enveloped);
    add("options", options);
    current = this;
}

BareScript::~BareScript()
{
    JSGlobalContextRelease(m_context);
}

void BareScript::add(const char* name, JSObjectCallAsFunctionCallback callback)
{
    const JSStringRef text = JSStringCreateWithUTF8CString(name);
    JSObjectSetProperty(m_context, m_object, text,
        JSObjectMakeFunctionWithCallback(m_context, text, callback), kJSPropertyAttributeNone, nullptr);
    JSStringRelease(text);
}

JSValueRef BareScript::makeEnvelope(bool success, int data, JSValueRef* exception) const
{
    const JSValueRef values[] { JSValueMakeBoolean(m_context, success), JSValueMakeNumber(m_context, data) };
    return JSObjectCallAsFunction(m_context, m_envelope, nullptr, std::size(values), values, exception);
}

JSObjectRef BareScript::function(const QString& source)
{
    const JSStringRef text = JSStringCreateWithUTF8CString(source.toUtf8().constData());
    const JSValueRef value = JSEvaluateScript(m_context, text, nullptr, nullptr, 1, nullptr);
    JSStringRelease(text);
    if (!value || !JSValueIsObject(m_context, value))
        qFatal("The script is no function.");
    JSValueProtect(m_context, value);
    return const_cast<JSObjectRef>(value);
}

void BareScript::call(JSObjectRef function, int count)
{
    const JSValueRef arguments[] { m_object, JSValueMakeNumber(m_context, count) };
    JSValueRef exception = nullptr;
    JSObjectCallAsFunction(m_context, function, nullptr, std::size(arguments), arguments, &exception);
    if (exception)
        qFatal("The script has failed.");
}

} // namespace bench
