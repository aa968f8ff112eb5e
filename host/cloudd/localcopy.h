// Copies a stored content to a local file, in slices. A local file with the same bytes is left alone; any
// other file or link is replaced once the copy is complete and its hash is right. A file that somebody has edited
// gets another name instead: "name (local version 1).ext".
//
//     LocalCopy copy(contents, sha256, ...);     // right after the record was read
//     while (copy.step()) { }
//     copy.hasWritten();
#pragma once

#include "host/cloudd/contents.h"

#include <memory>
#include <optional>

namespace cloudd {

/// Renames a file to "name (local version N).ext" with the first free N, and returns that name. Throws
/// Error(StorageFailed).
QByteArray keepLocalVersion(const Descriptor& folder, const QByteArray& name);

class LocalCopy {
public:
    /// Opens the content, so a new version of the cloud file does not affect the copy. Throws
    /// Error(StorageFailed). `lastCopied`: the SHA-256 of the last copy made there, or empty; any other file has
    /// been edited. Without it a file is replaced even then. `makeIncoming`: where the copy is written, which must be on
    /// the disk of `folder`; without it where contents are.
    using MakeIncoming = std::function<std::unique_ptr<Incoming>()>;
    LocalCopy(Contents& contents, QString sha256, qint64 size, Descriptor folder, QByteArray name,
        std::optional<QString> lastCopied = {}, MakeIncoming makeIncoming = {});

    /// Processes one slice. False when the local file is up to date. Throws Error: Damaged, NameTaken (by a
    /// folder), StorageFailed.
    bool step();
    /// Whether the file was replaced or made.
    bool hasWritten() const { return m_written; }
    /// Whether an edited file has got another name.
    bool hasKept() const { return !m_keptName.isEmpty(); }
    const QByteArray& keptName() const { return m_keptName; }

private:
    bool compare();
    bool copy();
    void keepEdited();

    Contents& m_contents;
    QString m_sha256;
    qint64 m_size;
    Descriptor m_folder;
    QByteArray m_name;
    std::optional<QString> m_lastCopied;
    MakeIncoming m_makeIncoming;
    Descriptor m_local;         ///< the existing file, if it is compared
    struct stat m_compared { }; ///< as it was then
    bool m_isEdited = true;     ///< false when it is the last copy
    QCryptographicHash m_localHash { QCryptographicHash::Sha256 };
    Descriptor m_content;
    std::unique_ptr<Incoming> m_incoming; ///< null while the existing file is compared
    bool m_written = false;
    QByteArray m_keptName;
};

} // namespace cloudd
