// Where local copies of cloud files are: cache/<fileId>/<name>, and documents/<user>/<cloud path>, the user's
// "My Cloud Documents".
#pragma once

#include "host/cloudd/files.h"

#include <QString>

namespace cloudd {

class LocalPlaces {
public:
    /// Opens (or makes) what is below `directory`. Returns why it can not; then nothing may be called.
    QString open(const QString& directory);

    // The folders are made where they are missing. Throws Refusal(NameTaken) when a file is in the way of
    // one, and Refusal(StorageFailed). A path that would be longer than usablePath() allows is refused.

    Descriptor cacheFolder(const QString& fileId) const;
    QString cachePath(const QString& fileId, const QString& name) const;
    /// `cloudPath`: of a folder; empty for the root folder.
    Descriptor documentsFolder(const QString& userId, const QString& cloudPath) const;
    QString documentsPath(const QString& userId, const QString& cloudPath) const;

private:
    QString m_directory;
    Descriptor m_cache;
    Descriptor m_documents;
};

/// The path itself. Throws Refusal(WrongArguments) when it is so long that nobody could open or remove what
/// is there.
QString usablePath(const QString& path);

} // namespace cloudd
