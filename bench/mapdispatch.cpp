#include "bench/dispatchrivals.h"

#include "framework/kjsonvalue.h"

namespace bench {

namespace {

using Handler = KResult (*)(Dispatch* self, const JSContextEnv& context, JSApiArguments& arguments,
    KJSVariant& result, KJSVariant& exception);

std::int32_t answers = 0;

KResult empty(Dispatch*, const JSContextEnv&, JSApiArguments&, KJSVariant&, KJSVariant&)
{
    return KR_OK;
}

/// The envelope of a success, written out by hand.
KResult enveloped(Dispatch*, const JSContextEnv&, JSApiArguments&, KJSVariant& result, KJSVariant&)
{
    static const QString success = QStringLiteral("success");
    static const QString data = QStringLiteral("data");
    auto* envelope = new KJSONValue;
    result = KJSVariant::fromUnknown(envelope);
    envelope->SetInt32(data, ++answers);
    envelope->SetBoolean(success, true);
    return KR_OK;
}

class MapDispatch final : public Dispatch {
public:
    MapDispatch()
    {
        for (std::int32_t id = 0; id < MemberCount; ++id)
            m_handlers.emplace(id, id == EnvelopedMember ? enveloped : empty);
    }

    KResult invoke(const JSContextEnv& context, std::int32_t id, JSApiArguments& arguments,
        KJSVariant& result, KJSVariant& exception) override
    {
        const auto found = m_handlers.find(id);
        return found != m_handlers.end() ? found->second(this, context, arguments, result, exception)
                                         : KR_NOT_AVAILABLE;
    }

private:
    std::map<std::int32_t, Handler> m_handlers;
};

} // namespace

std::unique_ptr<Dispatch> makeMapDispatch()
{
    return std::make_unique<MapDispatch>();
}

} // namespace bench
