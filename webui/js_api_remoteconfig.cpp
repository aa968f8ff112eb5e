#include "webui/js_api_remoteconfig.h"

#include "krt/krt.h"

#include <QCoreApplication>

namespace jsapi {

namespace {

constexpr Failure NoRemoteConfig { ErrorCode::OperationFailed, "Remote config service error." };
constexpr Failure TooManyWatches { ErrorCode::OperationFailed, "too many watches." };
constexpr Failure NoSuchSwitch { ErrorCode::OperationFailed, "There is no such switch." };
constexpr Failure SwitchIsFixed { ErrorCode::OperationFailed, "The switch can not be changed." };
constexpr Failure ConfigNotStored { ErrorCode::OperationFailed, "The value can not be stored." };

} // namespace

template <>
struct Argument<KRemoteConfig> : ServiceArgument<KRemoteConfig, &KRemoteConfig::instance, NoRemoteConfig> {
};

struct KJsApiHive::DataKey {
    QString key;
    static constexpr auto fields() { return std::tuple(required("key", &DataKey::key, "the value's name")); }
};

struct KJsApiHive::DataRequest : DataKey {
    QVariant defaultValue;
    static constexpr auto fields()
    {
        return std::tuple_cat(DataKey::fields(),
            std::tuple(optional(
                "defaultValue", &DataRequest::defaultValue, "what is returned where there is no value")));
    }
};

struct KJsApiHive::Context {
    KConfigContext context;
    static constexpr auto fields()
    {
        return std::tuple(
            optional("context", &Context::context, "facts by their names, such as `{ plan: \"team\" }`"));
    }
};

struct KJsApiHive::GroupRequest : Context {
    QString group;
    QVariant defaultValue;
    static constexpr auto fields()
    {
        using Self = GroupRequest;
        return std::tuple_cat(std::tuple(required("group", &Self::group, "the group's name")),
            Context::fields(),
            std::tuple(optional(
                "defaultValue", &Self::defaultValue, "what is returned where the group has no value")));
    }
};

struct KJsApiHive::FieldName : DataKey {
    QString field;
    static constexpr auto fields()
    {
        return std::tuple_cat(DataKey::fields(),
            std::tuple(required("field", &FieldName::field, "the name of the field without a language")));
    }
};

struct KJsApiHive::Prefix {
    QString prefix;
    static constexpr auto fields()
    {
        return std::tuple(optional(
            "prefix", &Prefix::prefix, "returns only the keys and groups whose names begin with this"));
    }
};

struct KJsApiHive::Summary {
    QString version;
    std::int64_t updateTime;
    QStringList keys;
    QStringList groups;
    static constexpr auto fields()
    {
        using Self = Summary;
        return std::tuple(
            property("version", &Self::version, "of the configuration; empty while there is none"),
            property("updateTime", &Self::updateTime,
                "when it came from the server, in milliseconds since 1970 (UTC); 0 while there is none"),
            property("keys", &Self::keys, "the names of all values, sorted"),
            property("groups", &Self::groups, "the names of all groups, sorted"));
    }
};

const MemberList& KJsApiHive::members()
{
    using Self = KJsApiHive;
    static const MemberList list {
        "Remote feature configuration, read and watched. A server decides it; what is here is what came from there last, "
        "so nothing waits. Values have names and hold anything that JSON can spell. Groups have one value for each "
        "context: for the user's language, version, share of a staged introduction.",
        {
            member<&Self::addDataWatch>(u"addDataWatch", Category::Usual, Type::JsValue,
                { { Type::JsValue, "options", "the value" },
                    { Type::Object, "callback", "is called each time that the value is another one" } },
                "Returns a value, undefined where there is none, and has the function called with each change "
                "until the page goes. A page can have 1,000 watches.",
                { &TooManyWatches }),
            member<&Self::getData>(
                u"getData", Category::Usual, Type::JsValue, { Type::JsValue }, "Returns a value."),
            member<&Self::getGroupMatchValue>(u"getGroupMatchValue", Category::Usual, Type::JsValue,
                { Type::JsValue }, "Returns the value that a group has for a context."),
            member<&Self::getHiveConfig>(u"getHiveConfig", Category::Usual, Type::JsValue, { Type::JsValue },
                "Returns which configuration there is, and what is in it."),
            member<&Self::translateContext>(u"translateContext", Category::Usual, Type::JsValue,
                { Type::JsValue },
                "Returns a context as groups are decided with it: the page's facts, as strings, and those that the "
                "suite knows, such as `language`, `version` and `userId`, which a page can not replace."),
            member<&Self::i18nFieldName>(u"i18nFieldName", Category::Usual, Type::JsValue, { Type::JsValue },
                "Returns the name of the field in which an object among the values has its text for the user's "
                "language: the first of `title_nb_NO`, `title_nb` and `title` that it has. Where it has none of "
                "them, or there is no such object, the name as it was given."),
            member<&Self::subscribeGroupMatchValue>(u"subscribeGroupMatchValue", Category::Usual,
                Type::JsValue,
                { { Type::JsValue, "options", "the group and the context" },
                    { Type::Object, "callback",
                        "is called each time that the group's value is another one" } },
                "Returns the value that a group has for a context, and has the function called with each change "
                "until the page goes. A page can have 1,000 watches.",
                { &TooManyWatches }),
        }
    };
    return list;
}

namespace {

QVariant valueOr(const QVariant& value, const QVariant& fallback)
{
    return value.isValid() ? value : fallback;
}

QStringList beginningWith(const QStringList& names, const QString& prefix)
{
    QStringList found;
    for (const QString& name : names) {
        if (name.startsWith(prefix))
            found << name;
    }
    return found;
}

} // namespace

Answer<QVariant> KJsApiHive::watch(
    const JSContextEnv& page, const QVariant& value, KConfigWatches::Read read, KConfigWatches::Inform inform)
{
    if (!m_watches && QCoreApplication::instance())
        m_watches = std::make_unique<KConfigWatches>();
    if (!m_watches)
        return NoRemoteConfig;
    if (!m_watches->add(page, value, std::move(read), std::move(inform)))
        return TooManyWatches;
    return value;
}

Answer<QVariant> KJsApiHive::addDataWatch(const KRemoteConfig& config, const JSContextEnv& page,
    const DataKey& options, const Watcher<ConfigChange>& callback)
{
    const QString key = options.key;
    return watch(
        page, config.data(key), [key](const KRemoteConfig& current) { return current.data(key); },
        [key, callback](const QVariant& value, const QVariant& previous) {
            return callback({ key, value, previous });
        });
}

Answer<QVariant> KJsApiHive::getData(const KRemoteConfig& config, const DataRequest& options)
{
    return valueOr(config.data(options.key), options.defaultValue);
}

Answer<QVariant> KJsApiHive::getGroupMatchValue(const KRemoteConfig& config, const GroupRequest& options)
{
    return valueOr(config.groupMatchValue(options.group, options.context), options.defaultValue);
}

Answer<KJsApiHive::Summary> KJsApiHive::getHiveConfig(const KRemoteConfig& config, const Prefix& options)
{
    return Summary { config.version(), config.updateTime(), beginningWith(config.keys(), options.prefix),
        beginningWith(config.groups(), options.prefix) };
}

Answer<KConfigContext> KJsApiHive::translateContext(const KRemoteConfig& config, const Context& options)
{
    return config.translateContext(options.context);
}

Answer<QString> KJsApiHive::i18nFieldName(const KRemoteConfig& config, const FieldName& options)
{
    constexpr int LanguageAndRegion = 1;
    constexpr int Language = 0;
    const QVariantMap fields = config.data(options.key).toMap();
    for (const int format : { LanguageAndRegion, Language }) {
        const QString name = options.field + QLatin1Char('_') + krt::i18n::language(format, false);
        if (fields.contains(name))
            return name;
    }
    return options.field;
}

Answer<QVariant> KJsApiHive::subscribeGroupMatchValue(const KRemoteConfig& config, const JSContextEnv& page,
    const GroupRequest& options, const Watcher<GroupChange>& callback)
{
    const auto read = [group = options.group, context = options.context, fallback = options.defaultValue](
                          const KRemoteConfig& current) {
        return valueOr(current.groupMatchValue(group, context), fallback);
    };
    return watch(page, read(config), read,
        [group = options.group, callback](const QVariant& value, const QVariant& previous) {
            return callback({ group, value, previous });
        });
}

struct KJsApiCirrusConfig::SwitchName {
    QString name;
    static constexpr auto fields()
    {
        return std::tuple(required("name", &SwitchName::name, "the switch's name"));
    }
};

struct KJsApiCirrusConfig::SwitchChoice : SwitchName {
    bool value = false;
    static constexpr auto fields()
    {
        return strictly(std::tuple_cat(SwitchName::fields(),
            std::tuple(required("value", &SwitchChoice::value, "whether it is to be on"))));
    }
};

struct KJsApiCirrusConfig::ConfigPlace {
    QString section;
    QString key;
    static constexpr auto fields()
    {
        return std::tuple(required("section", &ConfigPlace::section, "the section"),
            required("key", &ConfigPlace::key, "the value's name in it"));
    }
};

struct KJsApiCirrusConfig::ConfigRequest : ConfigPlace {
    QVariant defaultValue;
    static constexpr auto fields()
    {
        return std::tuple_cat(ConfigPlace::fields(),
            std::tuple(optional(
                "defaultValue", &ConfigRequest::defaultValue, "what is returned where there is no value")));
    }
};

struct KJsApiCirrusConfig::ConfigValue : ConfigPlace {
    QVariant value;
    static constexpr auto fields()
    {
        return strictly(std::tuple_cat(ConfigPlace::fields(),
            std::tuple(optional("value", &ConfigValue::value,
                "anything that JSON can spell; without one, or with null, the user's own value is removed"))));
    }
};

const MemberList& KJsApiCirrusConfig::members()
{
    using Self = KJsApiCirrusConfig;
    static const MemberList list {
        "Remote feature configuration by switch and section: what the server has decided for the signed-in user, and what "
        "the user has chosen instead, which is stored.",
        {
            member<&Self::getAuthSwitch>(u"getAuthSwitch", Category::Read, Type::JsValue, { Type::JsValue },
                "Returns whether a switch is on for the user.", { &NoSuchSwitch }),
            member<&Self::setAuthSwitch>(u"setAuthSwitch", Category::Write, Type::JsValue, { Type::JsValue },
                "Stores the user's own choice, where the server leaves it to users.",
                { &NoSuchSwitch, &SwitchIsFixed }),
            member<&Self::getConfigData>(u"getConfigData", Category::Write, Type::JsValue, { Type::JsValue },
                "Returns a value of a section: the user's own, or else the server's."),
            member<&Self::setConfigData>(u"setConfigData", Category::Write, Type::JsValue, { Type::JsValue },
                "Stores a value of the user's own in a section that the server has, or removes it.",
                { &ConfigNotStored }),
        }
    };
    return list;
}

Answer<bool> KJsApiCirrusConfig::getAuthSwitch(const KRemoteConfig& config, const SwitchName& options)
{
    const int state = config.authSwitch(options.name);
    if (state < 0)
        return NoSuchSwitch;
    return state != 0;
}

Answer<void> KJsApiCirrusConfig::setAuthSwitch(KRemoteConfig& config, const SwitchChoice& options)
{
    if (config.authSwitch(options.name) < 0)
        return NoSuchSwitch;
    if (!config.setAuthSwitch(options.name, options.value))
        return SwitchIsFixed;
    return {};
}

Answer<QVariant> KJsApiCirrusConfig::getConfigData(const KRemoteConfig& config, const ConfigRequest& options)
{
    return valueOr(config.configData(options.section, options.key), options.defaultValue);
}

Answer<void> KJsApiCirrusConfig::setConfigData(KRemoteConfig& config, const ConfigValue& options)
{
    if (!config.setConfigData(options.section, options.key, options.value))
        return ConfigNotStored;
    return {};
}

} // namespace jsapi
