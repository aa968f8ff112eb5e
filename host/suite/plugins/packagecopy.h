// The copy of a plugin's source that is being made in the directory of plugin downloads.
#pragma once

#include "host/suite/plugins/manifest.h"

#include <QCryptographicHash>
#include <QFile>
#include <QTemporaryDir>

namespace suite {

/// Copies piece by piece into a temporary directory, which goes with this object; commit() makes it the plugin's.
/// [one thread]
class PackageCopy {
public:
    explicit PackageCopy(const PluginManifest& manifest);

    /// Where a plugin's files are once they have been fetched.
    static QString destination(const PluginManifest& manifest);

    /// Copies at most this many bytes more. False when there is no more to do, for error() or because all is there.
    bool step(qint64 most);
    qint64 received() const { return m_received; }
    /// Why it has failed; empty while it has not.
    const QString& error() const { return m_error; }
    /// Puts a complete copy in the place of the one before it. False leaves that.
    bool commit();

private:
    bool listFiles();
    bool openNext();
    bool copyPiece(qint64 most);
    bool check();
    bool fail(const QString& error);

    PluginManifest m_manifest;
    QTemporaryDir m_directory;
    QStringList m_files; ///< relative, sorted by their bytes
    int m_next = 0;
    QFile m_from;
    QFile m_to;
    QCryptographicHash m_fileHash { QCryptographicHash::Sha256 };
    QCryptographicHash m_listHash { QCryptographicHash::Sha256 };
    qint64 m_received = 0;
    QString m_error;
};

} // namespace suite
