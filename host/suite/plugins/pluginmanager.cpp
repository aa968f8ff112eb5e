#include "host/suite/plugins/pluginmanager.h"

#include "host/profile/profile.h"
#include "host/suite/plugins/pluginlog.h"

#include <QCoreApplication>

namespace suite {

namespace {

std::unique_ptr<PluginManager> s_manager;

} // namespace

void PluginManager::start()
{
    if (s_manager || !profile::serviceOn(QStringLiteral("pluginManager")))
        return;
    s_manager.reset(new PluginManager);
    qAddPostRoutine(shutDown);
    QStringList errors;
    std::vector<PluginManifest> found = findPlugins(errors);
    for (const QString& error : errors)
        qCWarning(pluginLog, "%s", qPrintable(error));
    for (PluginManifest& manifest : found)
        s_manager->insert(std::move(manifest));
}

void PluginManager::shutDown()
{
    // While plugins go nobody finds others.
    const std::unique_ptr<PluginManager> ending = std::move(s_manager);
}

PluginManager* PluginManager::instance()
{
    return s_manager.get();
}

Plugin* PluginManager::find(const QString& name) const
{
    const auto found = m_plugins.find(name);
    return found == m_plugins.end() ? nullptr : found->second.get();
}

void PluginManager::add(const QString& name)
{
    QStringList errors;
    for (PluginManifest& manifest : findPlugins(errors)) {
        if (manifest.name == name && !find(name))
            insert(std::move(manifest));
    }
}

void PluginManager::insert(PluginManifest manifest)
{
    const bool autoload = manifest.autoload;
    auto plugin = std::make_unique<Plugin>(std::move(manifest));
    Plugin& added = *plugin;
    m_plugins.insert_or_assign(added.manifest().name, std::move(plugin));
    if (autoload)
        added.begin(0, 0);
}

void PluginManager::cancel(const QString& name)
{
    if (Plugin* plugin = find(name))
        plugin->cancel();
}

void PluginManager::remove(const QString& name)
{
    // Whoever is notified that it goes does not find it.
    const auto plugin = m_plugins.extract(name);
}

} // namespace suite

KPluginManager* KPluginManager::getInstance()
{
    return suite::PluginManager::instance();
}

// There is one class of managers only.
static suite::PluginManager& whole(KPluginManager* manager)
{
    return *static_cast<suite::PluginManager*>(manager);
}

KPlugin* KPluginManager::getPlugin(const QString& name)
{
    return whole(this).find(name);
}

QObject* KPluginManager::getPluginInstanceObject(const QString& name)
{
    const suite::Plugin* plugin = whole(this).find(name);
    return plugin ? plugin->instance() : nullptr;
}
