#include "local/js_api_settings.h"

#include "framework/kjsonvalue.h"
#include "local/pathcheck.h"
#include "vexlite/jsapiutil.h"

const MemberList& KJsApiSettingsManager::members()
{
    // clang-format off
    static const MemberList list = MemberList {
        // member                                             category         answer        parameters
        method<&KJsApiSettingsManager::settings>(u"settings", Category::Usual, Type::Object, { Type::JsValue }),
    }.handingOut<KJsApiSettings>();
    // clang-format on
    return list;
}

const MemberList& KJsApiSettings::members()
{
    // clang-format off
    static const MemberList list {
        // member                                      category         answer         parameters
        method<&KJsApiSettings::setValue>(u"setValue", Category::Write, Type::JsValue, { Type::JsValue }),
        method<&KJsApiSettings::getValue>(u"getValue", Category::Read,  Type::JsValue, { Type::JsValue }),
    };
    // clang-format on
    return list;
}

namespace {
namespace Format {
constexpr int Suite = 0;
constexpr int File = 1;
} // namespace Format
} // namespace

Reply KJsApiSettingsManager::settings(Call& call)
{
    const Options options = call.options();
    const int format = options.integer("format", -1);
    const KRef<KJSONValue> store(new KJSONValue);
    store->SetInt32(QStringLiteral("format"), format);
    if (format == Format::File) {
        const QString path = options.string("path");
        if (path.isEmpty())
            return call.fail(ErrorCode::BadArgument, MissingParameters);
        const std::optional<QString> resolved = checkedPath(path);
        if (!resolved)
            return call.fail(ErrorCode::BadArgument, "Path is illegal.");
        store->SetString(QStringLiteral("path"), *resolved);
    } else if (format != Format::Suite) {
        return call.fail(ErrorCode::BadArgument, "Format is illegal.");
    }
    return call.handOutNew(KJsApiSettings::ScriptName, store.get());
}

void KJsApiSettings::Initialise(IJSONValue* options)
{
    const int format = options ? options->GetInt32(QStringLiteral("format"), Format::Suite) : Format::Suite;
    if (format != Format::Suite) {
        m_store = std::make_unique<QSettings>(
            options->GetString(QStringLiteral("path"), {}), static_cast<QSettings::Format>(format));
        return;
    }
    m_store = std::make_unique<QSettings>(QSettings::NativeFormat, QSettings::UserScope,
        QString::fromLatin1("Velmora"), QString::fromLatin1("Office"));
    for (const char* group : { "6.0", "Common", "plugins" })
        m_store->beginGroup(QString::fromLatin1(group));
}

Reply KJsApiSettings::setValue(Call& call)
{
    const Options options = call.options();
    const QString key = options.string("key");
    const KJSVariant given = options.any("value");
    if (key.isEmpty() || isNullOrUndefined(given.raw()))
        return call.fail(ErrorCode::BadArgument, MissingParameters);
    if (!m_store || !m_store->isWritable())
        return call.fail(ErrorCode::OperationFailed, "Setting is invalid.");
    QVariant value;
    if (!KJSApiUtil::ConvertJSVariantToQVariant(given, value))
        return call.fail(ErrorCode::BadArgument, WrongParameters);
    m_store->setValue(key, value);
    return call.succeed();
}

Reply KJsApiSettings::getValue(Call& call)
{
    const Options options = call.options();
    const QString key = options.string("key");
    if (key.isEmpty())
        return call.fail(ErrorCode::BadArgument, MissingParameters);
    if (!m_store)
        return call.fail(ErrorCode::OperationFailed, "Setting is invalid.");
    QVariant fallback;
    if (!KJSApiUtil::ConvertJSVariantToQVariant(options.any("defaultValue"), fallback))
        return call.fail(ErrorCode::BadArgument, WrongParameters);
    return call.succeed(m_store->value(key, fallback));
}
