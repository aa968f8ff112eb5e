#include "bench/mapdispatch.h"

#include "framework/kjsonvalue.h"

namespace bench {

namespace {

using Handler = KResult (*)(MapDispatch* self, const JSContextEnv& context, JSApiArguments& arguments,
    KJSVariant& result, KJSVariant& exception);

std::int32_t answers = 0;

KResult empty(MapDispatch*, const JSContextEnv&, JSApiArguments&, KJSVariant&, KJSVariant&)
{
    return KR_OK;
}

/// The envelope of a success, written out by hand.
KResult enveloped(MapDispatch*, const JSContextEnv&, JSApiArguments&, KJSVariant& result, KJSVariant&)
{
    static const QString success = QStringLiteral("success");
    static const QString data = QStringLiteral("data");
    auto* envelope = new KJSONValue;
    result = KJSVariant::fromUnknown(envelope);
    envelope->SetInt32(data, ++answers);
    envelope->SetBoolean(success, true);
    return KR_OK;
}

class Handlers final : public MapDispatch {
public:
    KResult invoke(const JSContextEnv& context, std::int32_t id, JSApiArguments& arguments,
        KJSVariant& result, KJSVariant& exception) override
    {
        const auto found = m_handlers.find(id);
        return found != m_handlers.end() ? found->second(this, context, arguments, result, exception)
                                         : KR_NOT_AVAILABLE;
    }

private:
    std::map<std::int32_t, Handler> m_handlers { { 0, empty }, { 1, empty }, { 2, empty }, { 3, empty },
        { 4, empty }, { 5, empty }, { MapDispatchEmpty, empty }, { MapDispatchEnveloped, enveloped },
        { 8, empty }, { 9, empty } };
};

} // namespace

std::unique_ptr<MapDispatch> makeMapDispatch()
{
    return std::make_unique<Handlers>();
}

} // namespace bench
