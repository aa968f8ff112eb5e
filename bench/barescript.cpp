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

} // namespace

BareScript::BareScript()
    : m_context(JSGlobalContextCreate(nullptr))
    , m_object(JSObjectMake(m_context, nullptr, nullptr))
{
    JSValueProtect(m_context, m_object);
    m_envelope = function(QStringLiteral("(function (success, data) { return { success, data }; })"));
    add("empty", empty);
    add("enveloped", enveloped);
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
