#include "local/js_api_telemetrysdk.h"

#include "suite/kdcinfo.h"

namespace jsapi {

namespace {

/// One event in so many is sent.
enum class SampleRate : std::int32_t { All = 1, Hundredth = 100, Thousandth = 1000 };

constexpr Failure NoCollection { ErrorCode::OperationFailed, "kdcinfo error" };
constexpr Failure EmptyEventName { ErrorCode::BadArgument, "empty event name" };
constexpr Failure EmptyPostContent { ErrorCode::BadArgument, "empty post content" };

} // namespace

template <>
inline constexpr std::array<Choice<SampleRate>, 3> ChoicesOf<SampleRate> { { { SampleRate::All },
    { SampleRate::Hundredth }, { SampleRate::Thousandth } } };

template <> struct Argument<KDcInfoC> : ServiceArgument<KDcInfoC, KDcInfoC::instance, NoCollection> {
};

struct KJsApiTelemetrySdk::TelemetryEvent {
    QString eventName;
    SampleRate pb = SampleRate::All;
    QMap<QString, QString> postContent;
    static constexpr auto fields()
    {
        using Self = TelemetryEvent;
        return std::tuple(required("eventName", &Self::eventName, "the event", EmptyEventName),
            optional("pb", &Self::pb, "one event in so many is sent"),
            required("postContent", &Self::postContent, "what it carries", WrongParameters));
    }
};

const MemberList& KJsApiTelemetrySdk::members()
{
    using Self = KJsApiTelemetrySdk;
    static const MemberList list { "Posts events to the suite's data collection.",
        {
            member<&Self::postEvent>(u"postEvent", Category::Usual, Type::JsValue, { Type::JsValue },
                "Posts an event.", { &EmptyPostContent }),
        } };
    return list;
}

Answer<void> KJsApiTelemetrySdk::postEvent(KDcInfoC& collection, const TelemetryEvent& event)
{
    if (event.postContent.isEmpty())
        return EmptyPostContent;
    QHash<QString, QString> fields;
    for (auto field = event.postContent.begin(); field != event.postContent.end(); ++field)
        fields.insert(field.key(), field.value());
    collection.postGeneralEvent(event.eventName, fields, 0, 0, static_cast<std::int32_t>(event.pb), true);
    return {};
}

} // namespace jsapi
