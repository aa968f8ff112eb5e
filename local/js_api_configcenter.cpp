#include "local/js_api_configcenter.h"

#include "framework/kjsonvalue.h"
#include "krt/kcc.h"
#include "vexlite/jsapiutil.h"

const MemberList& KJsApiConfigCenter::members()
{
    // clang-format off
    static const MemberList list {
        // member                                                category               answer         parameters
        method<&KJsApiConfigCenter::setValue>(u"setValue",       Category::SharedWrite, Type::JsValue, { Type::JsValue }),
        method<&KJsApiConfigCenter::value>(u"value",             Category::SharedRead,  Type::JsValue, { Type::JsValue }),
        method<&KJsApiConfigCenter::remove>(u"remove",           Category::SharedWrite, Type::JsValue, { Type::JsValue }),
        method<&KJsApiConfigCenter::flushRead>(u"flushRead",     Category::SharedRead,  Type::JsValue, { Type::JsValue }),
        method<&KJsApiConfigCenter::flushWrite>(u"flushWrite",   Category::SharedWrite, Type::JsValue, { Type::JsValue, Type::Object }),
        method<&KJsApiConfigCenter::flushRemove>(u"flushRemove", Category::SharedWrite, Type::JsValue, { Type::JsValue, Type::Object }),
    };
    // clang-format on
    return list;
}

namespace {

constexpr char CallbackKey[] = "jsCBFunc";

/// The context of a flush: the script function to call, with one reference, or 0.
QVariantMap flushContext(Call& call)
{
    return { { QString::fromLatin1(CallbackKey),
        static_cast<qulonglong>(reinterpret_cast<quintptr>(call.function(1).release())) } };
}

void flushCompleted(bool success, const QString& key, const QVariant& value, const QVariantMap& context)
{
    const qulonglong handle = context.value(QString::fromLatin1(CallbackKey)).toULongLong();
    if (!handle)
        return;
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the suite keeps the function for us as a number
    const KRef<IJSFunction> callback(reinterpret_cast<IJSFunction*>(static_cast<quintptr>(handle)));
    KRef<KJSONValue> report(new KJSONValue);
    KJSVariant converted;
    KJSApiUtil::ConvertQVariantToJSVariant(value, converted);
    report->SetString(QStringLiteral("key"), key);
    report->put(QStringLiteral("value"), std::move(converted));
    report->SetBoolean(QStringLiteral("ok"), success);
    const KJSVariant argument = KJSVariant::fromUnknown(report.release());
    callback->Call(JSApiArguments(&argument, 1), nullptr);
}

/// The arguments that all six members share, read before `action` runs.
template <typename Settings, typename Action> Reply withKey(Call& call, Action action)
{
    const Options options = call.options();
    const QString key = options.string("key");
    if (key.isEmpty())
        return call.fail(ErrorCode::BadArgument, MissingParameters);
    return action(options, key, Settings { 0, options.string("userId") });
}

template <typename Action> Reply withValue(Call& call, Action action)
{
    return withKey<krt::kcc::WriteOptions>(
        call, [&](const Options& options, const QString& key, const krt::kcc::WriteOptions& settings) {
            const KJSVariant given = options.any("value");
            if (isNullOrUndefined(given.raw()))
                return call.fail(ErrorCode::BadArgument, MissingParameters);
            QVariant value;
            if (!KJSApiUtil::ConvertJSVariantToQVariant(given, value))
                return call.fail(ErrorCode::BadArgument, WrongParameters);
            return call.succeed(action(key, value, settings));
        });
}

using Reader = QVariant (*)(
    const QString& key, const QVariant& fallback, const krt::kcc::ReadOptions& options);

Reply read(Call& call, Reader reader)
{
    return withKey<krt::kcc::ReadOptions>(
        call, [&](const Options& options, const QString& key, const krt::kcc::ReadOptions& settings) {
            QVariant fallback;
            if (!KJSApiUtil::ConvertJSVariantToQVariant(options.any("defaultValue"), fallback))
                return call.fail(ErrorCode::BadArgument, WrongParameters);
            return call.succeed(reader(key, fallback, settings));
        });
}

} // namespace

Reply KJsApiConfigCenter::setValue(Call& call)
{
    return withValue(call, krt::kcc::setValue);
}

Reply KJsApiConfigCenter::value(Call& call)
{
    return read(call, krt::kcc::value);
}

Reply KJsApiConfigCenter::remove(Call& call)
{
    return withKey<krt::kcc::WriteOptions>(
        call, [&](const Options&, const QString& key, const krt::kcc::WriteOptions& settings) {
            return call.succeed(krt::kcc::remove(key, settings));
        });
}

Reply KJsApiConfigCenter::flushRead(Call& call)
{
    return read(call, krt::kcc::flushRead);
}

Reply KJsApiConfigCenter::flushWrite(Call& call)
{
    return withValue(
        call, [&](const QString& key, const QVariant& value, const krt::kcc::WriteOptions& settings) {
            return krt::kcc::flushWrite(key, value, flushCompleted, flushContext(call), settings);
        });
}

Reply KJsApiConfigCenter::flushRemove(Call& call)
{
    return withKey<krt::kcc::WriteOptions>(
        call, [&](const Options&, const QString& key, const krt::kcc::WriteOptions& settings) {
            return call.succeed(krt::kcc::flushRemove(key, flushCompleted, flushContext(call), settings));
        });
}
