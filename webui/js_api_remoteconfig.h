#pragma once

#include "framework/extensionobject.h"
#include "webui/configwatches.h"

namespace jsapi {

/// A value of the remote configuration that is another one than before.
struct ConfigChange {
    QString key;
    QVariant value;
    QVariant previousValue;
    static constexpr auto fields()
    {
        using Self = ConfigChange;
        return std::tuple(property("key", &Self::key, "its name"),
            property("value", &Self::value, "the value that there is now; undefined where there is none"),
            property("previousValue", &Self::previousValue, "the one that the function was last told of"));
    }
};

/// The same for the value of a group.
struct GroupChange {
    QString group;
    QVariant value;
    QVariant previousValue;
    static constexpr auto fields()
    {
        using Self = GroupChange;
        return std::tuple(property("group", &Self::group, "its name"),
            property("value", &Self::value, "the value that it has now; undefined where it has none"),
            property("previousValue", &Self::previousValue, "the one that the function was last told of"));
    }
};

/// "NovaExtension.Hive": remote feature configuration, read and watched.
class KJsApiHive final : public KJCExtendJsObj<KJsApiHive> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.Hive";
    static const MemberList& members();

    struct DataKey;
    struct DataRequest;
    struct GroupRequest;
    struct Context;
    struct FieldName;
    struct Prefix;
    struct Summary;

    Answer<QVariant> addDataWatch(const KRemoteConfig& config, const JSContextEnv& page,
        const DataKey& options, const Watcher<ConfigChange>& callback);
    Answer<QVariant> getData(const KRemoteConfig& config, const DataRequest& options);
    Answer<QVariant> getGroupMatchValue(const KRemoteConfig& config, const GroupRequest& options);
    Answer<Summary> getHiveConfig(const KRemoteConfig& config, const Prefix& options);
    Answer<KConfigContext> translateContext(const KRemoteConfig& config, const Context& options);
    Answer<QString> i18nFieldName(const KRemoteConfig& config, const FieldName& options);
    Answer<QVariant> subscribeGroupMatchValue(const KRemoteConfig& config, const JSContextEnv& page,
        const GroupRequest& options, const Watcher<GroupChange>& callback);

private:
    Answer<QVariant> watch(const JSContextEnv& page, const QVariant& value, KConfigWatches::Read read,
        KConfigWatches::Inform inform);

    std::unique_ptr<KConfigWatches> m_watches;
};

/// "NovaExtension.CirrusConfig": remote feature configuration by switch and section.
class KJsApiCirrusConfig final : public KJCExtendJsObj<KJsApiCirrusConfig> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.CirrusConfig";
    static const MemberList& members();

    struct SwitchName;
    struct SwitchChoice;
    struct ConfigPlace;
    struct ConfigRequest;
    struct ConfigValue;

    Answer<bool> getAuthSwitch(const KRemoteConfig& config, const SwitchName& options);
    Answer<void> setAuthSwitch(KRemoteConfig& config, const SwitchChoice& options);
    Answer<QVariant> getConfigData(const KRemoteConfig& config, const ConfigRequest& options);
    Answer<void> setConfigData(KRemoteConfig& config, const ConfigValue& options);
};

} // namespace jsapi
