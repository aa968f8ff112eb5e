// The stand-in's plugin manager: finds the plugins of the profile, and owns them.
#pragma once

#include "host/suite/plugins/plugin.h"

#include <map>
#include <memory>

namespace suite {

/// [GUI thread] for all.
class PluginManager final : public KPluginManager {
public:
    /// Finds all plugins and loads those that are to be loaded when the suite starts. Does nothing without the service
    /// "pluginManager", or when there is one already.
    static void start();
    /// Ends the manager with all plugins, if there is one.
    static void shutDown();
    /// Null when there is none.
    static PluginManager* instance();

    Plugin* find(const QString& name) const;
    /// Finds the plugin of this name that has not been there, and loads it where it is to be loaded at the start.
    void add(const QString& name);
    /// Ends its load, if it is loaded in the background.
    void cancel(const QString& name);
    /// Destroys it, if there is one.
    void remove(const QString& name);

private:
    PluginManager() = default;
    void insert(PluginManifest manifest);

    std::map<QString, std::unique_ptr<Plugin>> m_plugins;
};

} // namespace suite
