// The lock that lets one process at a time use the directory of the service.
//
//     DirectoryLock lock(directory);
//     if (lock.lock() == DirectoryLock::Outcome::Locked) { Service service({ directory }, error); ... }
#pragma once

#include "host/cloudd/files.h"

namespace cloudd {

class DirectoryLock {
public:
    enum class Outcome {
        Locked,
        Taken, ///< by another process
        Impossible,
    };

    /// An absolute path.
    explicit DirectoryLock(const QString& directory);

    /// Makes the directory, and those above it, where they are missing, and sets its mode to 0700. The lock
    /// is held until this object is destroyed or the process ends. Does not wait.
    Outcome lock();
    /// False when the locked directory has been removed or replaced: another process could lock the new one.
    bool isValid() const;

private:
    QString m_directory;
    Descriptor m_lock;
};

} // namespace cloudd
