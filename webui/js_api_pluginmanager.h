#pragma once

#include "framework/extensionobject.h"
#include "suite/kplugin.h"
#include "webui/guarded.h"
#include "webui/js_api_pluginhandle.h"

namespace jsapi {

class KJsApiPlugin;

/// "NovaExtension.PluginManager": finds plugins by name.
class KJsApiPluginManager final : public KJCExtendJsObj<KJsApiPluginManager> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.PluginManager";
    static const MemberList& members();

    Answer<Handle<KJsApiPlugin>> getPlugin(const IVEXBrowserGroup& group, KPluginManager& manager,
        const JSContextEnv& page, const QString& name);
};

// Parameters of members: the suite's plugin, refused with "invalid plugin" once it has gone, which anything may have done
// that lets others run; and the same when it is ready, refused with "plugin is not ready" as well.
struct HostPlugin : Guarded<KPlugin> { };
struct ReadyPlugin : HostPlugin { };

/// "NovaExtension.PluginManager.Plugin": one plugin of the suite.
class KJsApiPlugin final : public KJCExtendJsObj<KJsApiPlugin> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.PluginManager.Plugin";
    static const MemberList& members();

    struct LoadOptions;

    /// Stands for this plugin from now on.
    void bindTo(const Guarded<KPlugin>& plugin) { m_plugin = { plugin }; }

    Answer<HostPlugin> findPlugin(const JSContextEnv& page);
    Answer<ReadyPlugin> findReadyPlugin(const JSContextEnv& page);

    Answer<std::int32_t> load(
        const HostPlugin& plugin, const LoadOptions& options, Callback<PluginLoadReport>& callback);
    Answer<QVariant> getProp(const HostPlugin& plugin, const QString& propName);
    Answer<QString> resourceFilePath(const ReadyPlugin& plugin, const QString& relativePath);
    Answer<QString> frameworkFilePath(const ReadyPlugin& plugin, const QString& relativePath);

private:
    HostPlugin m_plugin;
};

} // namespace jsapi
