#include "bench/membercallback.h"

#include "framework/values.h"

#include <iterator>

namespace bench {

namespace {

struct Target {
    IJSExtentionObject* object;
    JSContextEnv context;
    std::int32_t empty;
    std::int32_t enveloped;
    const BareScript* script;
} target;

void invoke(std::int32_t id, KJSVariant& result)
{
    JSApiArguments none;
    KJSVariant exception;
    if (target.object->InvokeMethod(target.context, id, none, result, 0, exception) != KR_OK)
        qFatal("The call failed.");
}

JSValueRef empty(JSContextRef context, JSObjectRef, JSObjectRef, size_t, const JSValueRef*, JSValueRef*)
{
    KJSVariant result;
    invoke(target.empty, result);
    return JSValueMakeUndefined(context);
}

JSValueRef enveloped(JSContextRef, JSObjectRef, JSObjectRef, size_t, const JSValueRef*, JSValueRef* exception)
{
    KJSVariant result;
    invoke(target.enveloped, result);
    const KRef<IJSONValue> envelope = queryJsonObject(result.raw());
    const QString* key = nullptr;
    const KJSVariant* success = nullptr;
    const KJSVariant* data = nullptr;
    envelope->At(0, &key, &data);
    envelope->At(1, &key, &success);
    return target.script->makeEnvelope(success->raw().boolVal, data->raw().lVal, exception);
}

} // namespace

void addMemberCallbacks(BareScript& script, const NativePage& page, const vexlite::BoundObject& object)
{
    target = { object.object.get(), page.context(), memberId(object, u"empty"),
        memberId(object, u"enveloped"), &script };
    script.add("empty", empty);
    script.add("enveloped", enveloped);
}

} // namespace bench
