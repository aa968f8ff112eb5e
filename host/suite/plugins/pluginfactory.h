// What a plugin with a library has: a Qt plugin whose root object makes the plugin's instance object.
//
//     // in a header, so that it is found by moc
//     class Factory : public QObject, public suite::PluginFactory {
//         Q_OBJECT
//         Q_PLUGIN_METADATA(IID NovaPluginFactoryId)
//         Q_INTERFACES(suite::PluginFactory)
//     public:
//         QObject* makeInstance(QObject* parent) override { return new Panel(parent); }
//     };
#pragma once

#include <QObject>

namespace suite {

/// [GUI thread]
class PluginFactory {
public:
    virtual ~PluginFactory() = default;
    /// Makes the instance object when the plugin is loaded. It is destroyed before the plugin, or from the event loop when
    /// that has been loaded once more; `parent` owns it till then. Null, or an exception, is a load that fails.
    virtual QObject* makeInstance(QObject* parent) = 0;
};

} // namespace suite

#define NovaPluginFactoryId "novasuite.PluginFactory/1"
Q_DECLARE_INTERFACE(suite::PluginFactory, NovaPluginFactoryId)
