#include "bench/barescript.h"

#include <iterator>

namespace bench {

namespace {

JSObjectRef envelopeFactory = nullptr;
int answers = 0;

JSValueRef empty(JSContextRef context, JSObjectRef, JSObjectRef, size_t, const JSValueRef*, JSValueRef*)
{
    return JSValueMakeUndefined(context);
}

JSValueRef enveloped(
    JSContextRef context, JSObjectRef, JSObjectRef, size_t, const JSValueRef*, JSValueRef* exception)
{
    const JSValueRef values[] { JSValueMakeBoolean(context, true), JSValueMakeNumber(context, ++answers) };
    return JSObjectCallAsFunction(context, envelopeFactory, nullptr, std::size(values), values, exception);
}

void add(JSContextRef context, JSObjectRef object, const char* name, JSObjectCallAsFunctionCallback callback)
{
    const JSStringRef text = JSStringCreateWithUTF8CString(name);
    JSObjectSetProperty(context, object, text, JSObjectMakeFunctionWithCallback(context, text, callback),
        kJSPropertyAttributeNone, nullptr);
    JSStringRelease(text);
}

} // namespace

BareScript::BareScript()
    : m_context(JSGlobalContextCreate(nullptr))
    , m_object(JSObjectMake(m_context, nullptr, nullptr))
{
    JSValueProtect(m_context, m_object);
    add(m_context, m_object, "empty", empty);
    add(m_context, m_object, "enveloped", enveloped);
    envelopeFactory = function(QStringLiteral("(function (success, data) { return { success, data }; })"));
}

BareScript::~BareScript()
{
    JSGlobalContextRelease(m_context);
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
