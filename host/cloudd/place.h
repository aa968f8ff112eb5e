// The directory of the service, which one process uses at a time.
//
//     Place place(directory);
//     if (place.hold() == Place::Outcome::Held) { Service service({ directory }, error); ... }
#pragma once

#include "host/cloudd/files.h"

namespace cloudd {

class Place {
public:
    enum class Outcome {
        Held,
        Taken, ///< by another process; it may end
        Impossible,
    };

    /// An absolute path.
    explicit Place(const QString& directory);

    /// Makes the directory, and those above it, where they are missing; it is for this user only (mode 0700)
    /// afterwards. It is held until this is destroyed, or the process ends, however it does. Waits for
    /// nobody.
    Outcome hold();
    /// False when what is held has been removed or replaced: whoever comes now finds another directory.
    bool isThere() const;

private:
    QString m_directory;
    Descriptor m_lock;
};

} // namespace cloudd
