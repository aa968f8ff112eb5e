#include "webui/js_api_pluginmanager.h"

#include "framework/pagewatch.h"

namespace jsapi {

namespace {

constexpr Failure NoBrowserGroup { ErrorCode::OperationFailed, "empty pBrowsersGroup" };
constexpr Failure NoPluginManager { ErrorCode::OperationFailed, "plugin manager is null" };
constexpr Failure InvalidPlugin { ErrorCode::OperationFailed, "invalid plugin" };
constexpr Failure PluginIsNotReady { ErrorCode::OperationFailed, "plugin is not ready" };

} // namespace

/// The group of the browser that shows the calling page.
template <> struct Argument<IVEXBrowserGroup> {
    static constexpr bool IsScript = false;
    static constexpr std::array Refusals { &NoBrowserGroup };
    bool read(ArgumentReader& reader)
    {
        const IVEXBrowser* browser = browserOf(reader.page());
        group = browser ? browser->Group() : nullptr;
        return group || reader.refuse(NoBrowserGroup);
    }
    const IVEXBrowserGroup& get() const { return *group; }
    const IVEXBrowserGroup* group = nullptr;
};
template <>
struct Argument<KPluginManager>
    : ServiceArgument<KPluginManager, &KPluginManager::getInstance, NoPluginManager> {
};
template <>
struct Argument<HostPlugin> : ResourceArgument<HostPlugin, &KJsApiPlugin::findPlugin, InvalidPlugin> {
};
template <>
struct Argument<ReadyPlugin>
    : ResourceArgument<ReadyPlugin, &KJsApiPlugin::findReadyPlugin, InvalidPlugin, PluginIsNotReady> {
};

struct KJsApiPlugin::LoadOptions {
    std::int32_t option = 0;
    std::int32_t mode = 0;
    static constexpr auto fields()
    {
        using Self = LoadOptions;
        return std::tuple(
            optional("option", &Self::option,
                "0 loads it if it is not ready, 1 only what is on this machine, 2 once more if it is ready, 4 without "
                "what the suite shows of it; any other is 0"),
            optional("mode", &Self::mode, "1 loads it before the call returns; any other is 0"));
    }
};

/// An object must be given, though all of its properties may be left out.
template <> struct Argument<KJsApiPlugin::LoadOptions> : ArgumentValue<KJsApiPlugin::LoadOptions> {
    static constexpr std::array Refusals { &WrongParameters };
    bool read(ArgumentReader& reader)
    {
        const KJSVariant& given = reader.next();
        const KRef<IJSONValue> object = queryJsonObject(given.raw());
        if (!object || queryFunction(given.raw()))
            return reader.refuse(WrongParameters);
        return readFields(reader, object.get(), value);
    }
};

const MemberList& KJsApiPluginManager::members()
{
    using Self = KJsApiPluginManager;
    static const MemberList list = MemberList { "Finds plugins by name.",
        {
            member<&Self::getPlugin>(u"getPlugin", Category::Usual, Type::Object,
                { { Type::String, "name", "its name" } },
                "Returns a Plugin object for a plugin of the suite.", { &InvalidPlugin, &EmptyHandle }),
        } }.handingOut<KJsApiPlugin>();
    return list;
}

const MemberList& KJsApiPlugin::members()
{
    using Self = KJsApiPlugin;
    static const MemberList list {
        "One plugin of the suite. Every member fails once the suite has destroyed the plugin.",
        {
            member<&Self::load>(u"load", Category::Usual, Type::JsValue,
                { { Type::JsValue, "options", "how to load it" },
                    { Type::Object, "callback", "is called when the status is 2" } },
                "Loads the plugin and returns the status: 0 it is ready, 1 it can not be loaded, 2 it is being loaded in "
                "the background, 3 cancelled, 4 it went meanwhile. With 2 the function is called with `Progress` while "
                "the plugin is fetched, and once with how it ended; `Failed` also when the suite destroys the plugin. "
                "With any other it is never called."),
            member<&Self::getProp>(u"getProp", Category::Usual, Type::JsValue,
                { { Type::String, "propName", "its name" } },
                "Returns a property of the plugin; undefined when it has none of that name."),
            member<&Self::resourceFilePath>(u"resourceFilePath", Category::Usual, Type::JsValue,
                { { Type::String, "relativePath", "below the plugin's resources" } },
                "Returns the absolute path of a file among the plugin's resources, which need not exist; an empty string "
                "for a path that leads out of them."),
            member<&Self::frameworkFilePath>(u"frameworkFilePath", Category::Usual, Type::JsValue,
                { { Type::String, "relativePath", "below the plugin's framework" } },
                "Returns the absolute path of a file of the plugin's framework, likewise."),
        }
    };
    return list;
}

Answer<Handle<KJsApiPlugin>> KJsApiPluginManager::getPlugin(
    const IVEXBrowserGroup&, KPluginManager& manager, const JSContextEnv& page, const QString& name)
{
    const Guarded<KPlugin> plugin(manager.getPlugin(name));
    if (!plugin)
        return InvalidPlugin;
    KRef<IJSExtentionObject> object = KJsApiPlugin::makeFor(page, nullptr);
    auto* made = dynamic_cast<KJsApiPlugin*>(object.get());
    if (!made)
        return EmptyHandle;
    made->bindTo(plugin);
    return Handle<KJsApiPlugin> { std::move(object) };
}

Answer<HostPlugin> KJsApiPlugin::findPlugin(const JSContextEnv&)
{
    if (!m_plugin)
        return InvalidPlugin;
    return m_plugin;
}

Answer<ReadyPlugin> KJsApiPlugin::findReadyPlugin(const JSContextEnv&)
{
    const HostPlugin plugin = m_plugin;
    const bool isReady = plugin && plugin->state() == KPlugin::StateReady;
    if (!plugin)
        return InvalidPlugin;
    if (!isReady)
        return PluginIsNotReady;
    return ReadyPlugin { plugin };
}

Answer<std::int32_t> KJsApiPlugin::load(
    const HostPlugin& plugin, const LoadOptions& options, Callback<PluginLoadReport>& callback)
{
    static constexpr unsigned SuiteOptions[] = { 0, 1, 2, 0, 4 };
    const auto option = static_cast<unsigned>(options.option);
    const int status =
        plugin->load(option < std::size(SuiteOptions) ? SuiteOptions[option] : 0, options.mode == 1 ? 1 : 0);
    if (!plugin)
        return std::int32_t { KPlugin::LoadNoPlugin };
    if (status == KPlugin::LoadContinues)
        KApiPluginHandle::follow(*plugin, std::move(callback));
    return status;
}

Answer<QVariant> KJsApiPlugin::getProp(const HostPlugin& plugin, const QString& propName)
{
    return plugin->getProp(propName);
}

Answer<QString> KJsApiPlugin::resourceFilePath(const ReadyPlugin& plugin, const QString& relativePath)
{
    return plugin->resourceFilePath(relativePath);
}

Answer<QString> KJsApiPlugin::frameworkFilePath(const ReadyPlugin& plugin, const QString& relativePath)
{
    return plugin->frameworkFilePath(relativePath);
}

} // namespace jsapi
