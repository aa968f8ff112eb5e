#include "local/js_api_telemetrysdk.h"

#include "suite/kdcinfo.h"

#include <algorithm>

const MemberList& KJsApiTelemetrySdk::members()
{
    // clang-format off
    static const MemberList list {
        // member                                            category         answer         parameters
        method<&KJsApiTelemetrySdk::postEvent>(u"postEvent", Category::Usual, Type::JsValue, { Type::JsValue }),
    };
    // clang-format on
    return list;
}

Reply KJsApiTelemetrySdk::postEvent(Call& call)
{
    static constexpr std::int32_t Probabilities[] = { 1, 100, 1000 };

    KDcInfoC* collection = KDcInfoC::instance();
    if (!collection)
        return call.fail(ErrorCode::OperationFailed, "kdcinfo error");
    const Options options = call.options();
    const QString eventName = options.string("eventName");
    if (eventName.isEmpty())
        return call.fail(ErrorCode::BadArgument, "empty event name");
    const std::int32_t probability = options.has("pb") ? options.integer("pb", 0) : 1;
    if (std::find(std::begin(Probabilities), std::end(Probabilities), probability) == std::end(Probabilities))
        return call.fail(ErrorCode::BadArgument, WrongParameters);
    const Options content = options.object("postContent");
    if (!content)
        return call.fail(ErrorCode::BadArgument, WrongParameters);
    QHash<QString, QString> fields;
    for (const QString& name : content.names())
        fields.insert(name, content.string(name));
    if (fields.isEmpty())
        return call.fail(ErrorCode::BadArgument, "empty post content");
    collection->postGeneralEvent(eventName, fields, 0, 0, probability, true);
    return call.succeed();
}
