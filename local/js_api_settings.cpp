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
            required(
                "value", &WriteOptions::value, "anything but null, a function, a native object or bytes"));
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
                "Returns a Settings object for a store. Its members fail when what has the path is no settings "
                "file.",
                { &MissingParameters, &StorePathIsIllegal, &EmptyHandle }),
        } }.handingOut<KJsApiSettings>();
    return list;
}

const MemberList& KJsApiSettings::members()
{
    using Self = KJsApiSettings;
    static const MemberList list {
        "One settings store. A store keeps strings: numbers and booleans have become strings when the suite "
        "starts again.",
        {
            member<&Self::setValue>(u"setValue", Category::Write, Type::JsValue, { Type::JsValue },
                "Stores a value: it is on disk when the call returns. Fails as well when the store is no settings "
                "file, or can not be written; what it held stays.",
                { &SettingIsInvalid, &WrongParameters }),
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

namespace {

std::unique_ptr<QSettings> openSuiteStore()
{
    auto store = std::make_unique<QSettings>(
        QSettings::NativeFormat, QSettings::UserScope, heapString("Velmora"), heapString("Office"));
    for (const char* group : { "6.0", "Common", "plugins" })
        store->beginGroup(heapString(group));
    return store;
}

} // namespace

void KJsApiSettings::Initialise(IJSONValue* options)
{
    const auto store = fromObject<SettingsOptions>(options);
    m_suite.reset();
    m_file.reset();
    if (store.format != SettingsFormat::File)
        m_suite = openSuiteStore();
    else if (const std::optional<WritablePath> path = WritablePath::check(store.path))
        m_file = KSettingsFile::open(*path);
}

/// Stores a value in the suite's store, or leaves that as it was.
bool KJsApiSettings::storeInSuite(const QString& key, const QVariant& value)
{
    // What is not there any more when it is written again would be lost in silence.
    if (!m_suite->isWritable())
        return false;
    const QVariant before = m_suite->value(key);
    m_suite->setValue(key, value);
    m_suite->sync();
    if (m_suite->status() == QSettings::NoError)
        return true;
    if (before.isValid())
        m_suite->setValue(key, before);
    else
        m_suite->remove(key);
    m_suite = openSuiteStore(); // the old one keeps its error
    return false;
}

Answer<void> KJsApiSettings::setValue(const WriteOptions& options)
{
    if (!m_suite && !m_file)
        return SettingIsInvalid;
    QVariant value;
    if (Converter<QVariant>::read(options.value, value) == Reading::Wrong)
        return WrongParameters;
    if (!(m_file ? m_file->setValue(options.key, value) : storeInSuite(options.key, value)))
        return SettingIsInvalid;
    return {};
}

Answer<QVariant> KJsApiSettings::getValue(const ReadOptions& options)
{
    if (!m_suite && !(m_file && m_file->refresh()))
        return SettingIsInvalid;
    QVariant fallback;
    if (Converter<QVariant>::read(options.defaultValue, fallback) == Reading::Wrong)
        return WrongParameters;
    const QVariant value =
        m_file ? m_file->value(options.key, fallback) : m_suite->value(options.key, fallback);
    // A store keeps strings; other programs have some of theirs in byte arrays.
    if (value.userType() == QMetaType::QByteArray)
        return QVariant(QString::fromUtf8(value.toByteArray()));
    return value;
}

} // namespace jsapi
