// The file plugin.json in a plugin's folder.
#pragma once

#include <QString>
#include <QStringList>
#include <QVariantMap>
#include <optional>
#include <vector>

namespace suite {

/// Paths are absolute, but for those below the folder in which the plugin's files are.
struct PluginManifest {
    QString directory; ///< in which the manifest lies
    QString name;
    QString version;
    QVariantMap properties; ///< with name, version and title
    QString resources;      ///< below the plugin's files
    QString framework;      ///< the same
    QString library;        ///< the same; empty for a plugin without an instance object
    bool autoload = false;
    QString source; ///< what is fetched; empty when the files are in `directory`
    qint64 bytes = 0;
    QString sha256; ///< empty: not checked
    qint64 bytesPerSecond = 0;
};

/// The manifest in a directory; nothing when it has errors, each with its place, in `errors`. [any thread]
std::optional<PluginManifest> readPluginManifest(const QString& directory, QStringList& errors);

/// The plugins below the profile's directories, without two of one name; what is wrong with others, one line each, in
/// `errors`. [any thread]
std::vector<PluginManifest> findPlugins(QStringList& errors);

/// The absolute path of `relative` below a directory; null when it leads out of that, also through links, or is none.
/// It need not exist.
QString findBelow(const QString& directory, const QString& relative);

} // namespace suite
