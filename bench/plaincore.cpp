#include "bench/dispatchrivals.h"

#include "host/vexlite/core.h"

namespace bench {

namespace {

class CoreWithoutHook final : public PlainCore {
public:
    KResult call(IJSExtentionObject* object, const JSContextEnv& context, std::int32_t id, JSAccess access,
        JSApiArguments& arguments, KJSVariant& result, KJSVariant& exception) override
    {
        KResult status = KR_REJECTED;
        if (access == JSAccess::Method)
            status = object->InvokeMethod(context, id, arguments, result, 0, exception);
        else if (access == JSAccess::PropertyGet)
            status = object->InvokePropertyGet(context, id, 0, result, exception);
        if (status == KR_OK && exception.isEmpty())
            return KR_OK;
        if (exception.isEmpty())
            exception = vexlite::makeFailure(3, QStringLiteral("The call failed."));
        return status == KR_OK ? KR_REJECTED : status;
    }
};

} // namespace

std::unique_ptr<PlainCore> makePlainCore()
{
    return std::make_unique<CoreWithoutHook>();
}

} // namespace bench
