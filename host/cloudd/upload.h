// Stores a file of this machine as a content, in slices. The file must be a regular one and must not change
// meanwhile.
//
//     while (!upload.prepare()) { }              // for some milliseconds, if it has just been written
//     while (upload.step(SliceBytes)) { }
//     upload.total(); upload.sha256();           // of the content, which is stored now
#pragma once

#include "host/cloudd/contents.h"

#include <memory>

namespace cloudd {

/// False while a change of the file could leave its time stamp as it is: see Upload::prepare().
bool canDetectChanges(const struct stat& file);

class Upload {
public:
    /// `isPermitted` is asked once the file is open. `followLinks`: whether the source may be a link.
    using IsPermitted = std::function<bool(const Descriptor& file)>;
    Upload(Contents& contents, const QByteArray& source, IsPermitted isPermitted, bool followLinks = true);

    /// Opens the file, the first time. False while a change could leave its time stamp as it is: until some
    /// milliseconds after its last change, or 2 s where the file system stores whole seconds. Throws Error:
    /// SourceUnreadable, Closed, StorageFailed.
    bool prepare();
    /// Reads at most `most` bytes. False when the content is stored. Throws Error: SourceUnreadable,
    /// StorageFailed.
    bool step(qint64 most);
    /// The file as it was when it was opened, and still is when its content is stored.
    const struct stat& opened() const { return m_opened; }
    /// Bytes, as the file was when it was opened.
    qint64 total() const { return m_opened.st_size; }
    qint64 transferred() const { return m_incoming ? m_incoming->size() : 0; }
    /// Of what has been transferred.
    QString sha256() const { return m_incoming ? m_incoming->sha256() : QString(); }

private:
    bool isUnchanged() const;

    Contents& m_contents;
    QByteArray m_source;
    IsPermitted m_isPermitted;
    bool m_followLinks;
    Descriptor m_file;
    struct stat m_opened { };
    std::unique_ptr<Incoming> m_incoming;
};

} // namespace cloudd
