// The stand-in's remote configuration. Its server is a JSON file, which is read again when it has changed; what users choose
// themselves is stored in remoteconfig.json of the data directory.
#pragma once

#include "suite/kremoteconfig.h"

#include <QFileSystemWatcher>
#include <QJsonObject>
#include <QPointer>
#include <memory>

namespace profile {
struct Profile;
}

namespace suite {

/// [GUI thread] for all.
class RemoteConfig : public QObject {
    Q_OBJECT

public:
    static RemoteConfig& instance();

    /// Makes the suite's KRemoteConfig, unless the profile disables it. There must be an application.
    void start();
    /// Destroys it.
    void shutDown();
    KRemoteConfig* service() const { return m_service; }

    // As KRemoteConfig's functions of these names do.
    QString version();
    qint64 updateTime();
    QStringList keys();
    QVariant data(const QString& key);
    KConfigContext translateContext(const KConfigContext& context);
    QStringList groups();
    QVariant groupMatchValue(const QString& group, const KConfigContext& context);
    int authSwitch(const QString& name);
    bool setAuthSwitch(const QString& name, bool on);
    QVariant configData(const QString& section, const QString& key);
    bool setConfigData(const QString& section, const QString& key, const QVariant& value);

    /// Has the server decide another value, until the process ends.
    void decide(const QString& key, const QVariant& value);

private:
    RemoteConfig();

    /// Reads what the profile names, when it is another profile than before.
    void load();
    void read();
    void watch();
    void announceLater();
    void announce();
    void onFileChanged();
    QJsonObject section(const char* name);
    QJsonObject choices();
    bool choose(const std::function<void(QJsonObject& choices)>& change);

    QPointer<KRemoteConfig> m_service;
    std::shared_ptr<const profile::Profile> m_profile; ///< for which the file has been read
    QString m_directory;                               ///< which m_state is of
    QString m_file;
    QFileSystemWatcher m_watcher;
    QJsonObject m_config;
    QVariantMap m_decided;
    QJsonObject m_state;
    qint64 m_updateTime = 0;
    bool m_isAnnounced = false;
};

} // namespace suite
