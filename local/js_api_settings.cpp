#include "local/js_api_settings.h"

#include "local/pathcheck.h"

namespace jsapi {

namespace {

constexpr Failure StorePathIsIllegal { ErrorCode::BadArgument, "Path is illegal." };
constexpr Failure SettingIsInvalid { ErrorCode::OperationFailed, "Setting is invalid." };

} // namespace

// Values are converted by the handlers: a store that is not there is reported before a value that can not be
// stored.
struct KJsApiSettings::WriteOptions {
    QString key;
    KJSVariant value;
    static constexpr auto fields()
    {
        return std::tuple(required("key", &WriteOptions::key, "the value's name; `/` separates groups"),
            required("value", &WriteOptions::value, "anything but a function or a native object"));
    }
};

struct KJsApiSettings::ReadOptions {
    QString key;
    KJSVariant defaultValue;
    static constexpr auto fields()
    {
        return std::tuple(required("key", &ReadOptions::key, "the value's name"),
            optional("defaultValue", &ReadOptions::defaultValue, "what is returned where there is no value"));
    }
};

const MemberList& KJsApiSettingsManager::members()
{
    using Self = KJsApiSettingsManager;
    static const MemberList list = MemberList { "Opens settings stores.",
        {
            member<&Self::settings>(u"settings", Category::Usual, Type::Object, { Type::JsValue },
                "Returns a Settings object for a store.",
                { &MissingParameters, &StorePathIsIllegal, &EmptyHandle }),
        } }.handingOut<KJsApiSettings>();
    return list;
}

const MemberList& KJsApiSettings::members()
{
    using Self = KJsApiSettings;
    static const MemberList list {
        "One settings store. Changes reach the disk when script has returned to the event loop, and when "
        "the object goes. A store keeps strings: numbers and booleans have become strings when the suite "
        "starts again.",
        {
            member<&Self::setValue>(u"setValue", Category::Write, Type::JsValue, { Type::JsValue },
                "Stores a value.", { &SettingIsInvalid, &WrongParameters }),
            member<&Self::getValue>(u"getValue", Category::Read, Type::JsValue, { Type::JsValue },
                "Returns a stored value.", { &SettingIsInvalid, &WrongParameters }),
        }
    };
    return list;
}

Answer<Handle<KJsApiSettings>> KJsApiSettingsManager::settings(
    const JSContextEnv& page, const SettingsOptions& options)
{
    SettingsOptions store { options.format, {} };
    if (options.format == SettingsFormat::File) {
        if (options.path.isEmpty())
            return MissingParameters;
        const std::optional<WritablePath> path = WritablePath::check(options.path);
        if (!path)
            return StorePathIsIllegal;
        store.path = path->string();
    }
    return handOutNew<KJsApiSettings>(page, store);
}

void KJsApiSettings::Initialise(IJSONValue* options)
{
    const auto store = fromObject<SettingsOptions>(options);
    m_store.reset();
    if (store.format == SettingsFormat::File) {
        if (const std::optional<WritablePath> path = WritablePath::check(store.path))
            m_store = std::make_unique<QSettings>(path->string(), QSettings::IniFormat);
        return;
    }
    m_store = std::make_unique<QSettings>(
        QSettings::NativeFormat, QSettings::UserScope, heapString("Velmora"), heapString("Office"));
    for (const char* group : { "6.0", "Common", "plugins" })
        m_store->beginGroup(heapString(group));
}

Answer<void> KJsApiSettings::setValue(const WriteOptions& options)
{
    if (!m_store || !m_store->isWritable())
        return SettingIsInvalid;
    QVariant value;
    if (Converter<QVariant>::read(options.value, value) == Reading::Wrong)
        return WrongParameters;
    m_store->setValue(options.key, value);
    return {};
}

Answer<QVariant> KJsApiSettings::getValue(const ReadOptions& options)
{
    if (!m_store)
        return SettingIsInvalid;
    QVariant fallback;
    if (Converter<QVariant>::read(options.defaultValue, fallback) == Reading::Wrong)
        return WrongParameters;
    return m_store->value(options.key, fallback);
}

} // namespace jsapi
