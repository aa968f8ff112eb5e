// Makes a local file equal to a stored content, in slices. A local file that is equal already is left alone;
// another one, or a link, is replaced when all of the copy is there and its hash is right.
//
//     LocalCopy copy(contents, sha256, ...);     // at once after the record was read
//     while (copy.step()) { }                    // a slice each
//     copy.written();
#pragma once

#include "host/cloudd/contents.h"

#include <memory>

namespace cloudd {

class LocalCopy {
public:
    /// From here on a new version of the cloud file does not matter. Throws Refusal(StorageFailed).
    LocalCopy(Contents& contents, QString sha256, qint64 size, Descriptor folder, QByteArray name);

    /// False when the local file is right. Throws Refusal: Damaged, NameTaken (by a folder), StorageFailed.
    bool step();
    /// True when there had to be a new file.
    bool written() const { return m_written; }

private:
    bool compare();
    bool copy();

    Contents& m_contents;
    QString m_sha256;
    qint64 m_size;
    Descriptor m_folder;
    QByteArray m_name;
    Descriptor m_local; ///< while it is compared
    QCryptographicHash m_localHash { QCryptographicHash::Sha256 };
    Descriptor m_content;
    std::unique_ptr<Incoming> m_incoming; ///< once there has to be a new file
    bool m_written = false;
};

} // namespace cloudd
