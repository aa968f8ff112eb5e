// Where local copies of cloud files are: cache/<fileId>/<name>, and documents/<user>/<cloud path>, the user's
// "My Cloud Documents".
#pragma once

#include "host/cloudd/files.h"

#include <QString>

namespace cloudd {

class LocalPlaces {
public:
    /// Opens the folders in `directory` and makes missing ones. Returns the error; after one nothing else may
    /// be called.
    QString open(const QString& directory);

    // Missing folders are made. Throws Error: NameTaken (by a file), StorageFailed, WrongArguments (the path
    // is too long, see checkPathLength()).

    Descriptor openCacheFolder(const QString& fileId) const;
    QString cachePath(const QString& fileId, const QString& name) const;
    /// `cloudPath`: of a folder; empty for the root folder.
    Descriptor openDocumentsFolder(const QString& userId, const QString& cloudPath) const;
    QString documentsPath(const QString& userId, const QString& cloudPath) const;

private:
    QString m_directory;
    Descriptor m_cache;
    Descriptor m_documents;
};

/// Returns the path. Throws Error(WrongArguments) when it is longer than the system can open.
QString checkPathLength(const QString& path);

} // namespace cloudd
