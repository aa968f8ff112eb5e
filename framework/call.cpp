#include "framework/call.h"

#include "framework/extensionobject.h"
#include "framework/kjsonvalue.h"
#include "framework/novaextensionutils.h"

namespace {

/// What a member returns for a sub-object: it holds the object's reference and the registry's token.
class SubObject final : public KJCUnknownWarp<IJSSubObject> {
public:
    SubObject(IJSExtentionObject* object, std::int64_t token)
        : m_object(object)
        , m_token(token)
    {
    }
    IJSExtentionObject* Object() const override { return m_object.get(); }
    std::int64_t Token() const override { return m_token; }

private:
    KRef<IJSExtentionObject> m_object;
    std::int64_t m_token;
};

} // namespace

template <> bool supportsInterface<IJSSubObject>(const KIID& iid)
{
    return iid == IID_IJSSubObject;
}

namespace jsapi {

KResult Call::succeed(KJSVariant value)
{
    static const QString successKey = heapString("success");
    static const QString dataKey = heapString("data");
    auto* envelope = new KJSONValue;
    m_result = KJSVariant::fromUnknown(envelope);
    envelope->appendConstant(dataKey, std::move(value));
    envelope->appendConstant(successKey, KJSVariant::fromBool(true));
    return KR_OK;
}

KResult Call::succeedPlain(KJSVariant value)
{
    m_result = std::move(value);
    return KR_OK;
}

KResult Call::handOut(IJSExtentionObject* object)
{
    KRef<IJSExtentionObject> reference(object);
    IVEXJSCore* core = vexlite::GetVEXJSCore();
    if (!object || !core)
        return fail(EmptyHandle);
    const std::int64_t token = core->Registry()->SubObjectToken(object);
    return succeedPlain(KJSVariant::fromUnknown(new SubObject(reference.release(), token)));
}

KResult Call::fail(const Refusal& refusal)
{
    if (refusal.failure().rejects) {
        KJSVariant promise;
        (void)KNovaExtensionUtils::setPromiseReject(m_context, promise, refusal.text());
        return promise.isEmpty() ? fail(PromiseServiceNull) : succeedPlain(std::move(promise));
    }
    auto* failure = new KJSONValue;
    m_exception = KJSVariant::fromUnknown(failure);
    failure->SetBoolean(heapString("success"), false);
    failure->SetInt32(heapString("code"), static_cast<std::int32_t>(refusal.failure().code));
    failure->SetString(heapString("msg"), refusal.text());
    return KR_REJECTED;
}

} // namespace jsapi
