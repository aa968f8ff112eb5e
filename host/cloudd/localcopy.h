// Copies a stored content to a local file, in slices. A local file with the same bytes is left alone; any
// other file or link is replaced once the copy is complete and its hash is right.
//
//     LocalCopy copy(contents, sha256, ...);     // right after the record was read
//     while (copy.step()) { }
//     copy.hasWritten();
#pragma once

#include "host/cloudd/contents.h"

#include <memory>

namespace cloudd {

class LocalCopy {
public:
    /// Opens the content, so a new version of the cloud file does not affect the copy. Throws
    /// Error(StorageFailed).
    LocalCopy(Contents& contents, QString sha256, qint64 size, Descriptor folder, QByteArray name);

    /// Processes one slice. False when the local file is up to date. Throws Error: Damaged, NameTaken (by a
    /// folder), StorageFailed.
    bool step();
    /// Whether the file was replaced or made.
    bool hasWritten() const { return m_written; }

private:
    bool compare();
    bool copy();

    Contents& m_contents;
    QString m_sha256;
    qint64 m_size;
    Descriptor m_folder;
    QByteArray m_name;
    Descriptor m_local; ///< the existing file, while it is compared
    QCryptographicHash m_localHash { QCryptographicHash::Sha256 };
    Descriptor m_content;
    std::unique_ptr<Incoming> m_incoming; ///< null while the existing file is compared
    bool m_written = false;
};

} // namespace cloudd
