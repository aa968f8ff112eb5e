// Receives a file of this machine as a content, in slices. The file must be a regular one and must not change
// meanwhile.
//
//     while (upload.step(SliceBytes)) { }
//     upload.size(); upload.sha256();            // of the content, which is kept now
#pragma once

#include "host/cloudd/contents.h"

#include <memory>

namespace cloudd {

class Upload {
public:
    Upload(Contents& contents, const QString& source);

    /// Reads at most so many bytes. False when the content is kept. Throws Refusal: SourceUnreadable,
    /// StorageFailed.
    bool step(qint64 most);
    /// Bytes; as the file was when the first step began, afterwards.
    qint64 total() const { return m_opened.st_size; }
    qint64 transferred() const { return m_incoming ? m_incoming->size() : 0; }
    /// Of what has been transferred.
    QString sha256() const { return m_incoming ? m_incoming->sha256() : QString(); }

private:
    bool isUnchanged() const;

    Contents& m_contents;
    QByteArray m_source;
    Descriptor m_file;
    struct stat m_opened { };
    std::unique_ptr<Incoming> m_incoming;
};

} // namespace cloudd
