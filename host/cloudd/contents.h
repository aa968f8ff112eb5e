// The contents of files, by their SHA-256: contents/ab/<sha256>. A content is written to incoming/ and moved
// when all of it is on the disk, so every file in contents/ is complete.
//
//     Incoming incoming(contents);
//     incoming.write(bytes, count);              // repeatedly
//     contents.store(incoming);                  // an Incoming destroyed before is removed
//
// All functions may throw Error(StorageFailed).
#pragma once

#include "host/cloudd/files.h"

#include <QCryptographicHash>
#include <functional>

namespace cloudd {

class Contents {
public:
    /// Opens the folders in `directory`, makes missing ones, and empties incoming/. Returns the error; after
    /// one nothing else may be called.
    QString open(const QString& directory);
    /// Removes the contents for which `isUsed` (called with the SHA-256) returns false.
    void sweep(const std::function<bool(const QString&)>& isUsed);

    /// Null when it is missing. The caller must verify the bytes.
    Descriptor find(const QString& sha256) const;
    /// When it returns, the content survives a power failure. Replaces a stored content of that hash.
    void store(class Incoming& incoming);
    void remove(const QString& sha256);

private:
    friend class Incoming;

    Descriptor m_contents;
    Descriptor m_incoming;
    quint64 m_received = 0;
};

/// A file, usually in incoming/, that is being written.
class Incoming {
public:
    explicit Incoming(Contents& contents);
    /// A file of that name in another folder instead, which must stay open; there must be none yet.
    Incoming(const Descriptor& folder, QByteArray name);
    ~Incoming();
    Incoming(const Incoming&) = delete;
    Incoming& operator=(const Incoming&) = delete;

    void write(const char* bytes, qint64 count);
    qint64 size() const { return m_size; }
    /// Of the bytes written so far.
    QString sha256() const { return QString::fromLatin1(m_hash.result().toHex()); }
    /// Syncs the file and moves it to `name` in `folder`, replacing a file or a link. Throws
    /// Error(NameTaken) when there is a folder. Nothing may be called afterwards.
    void place(const Descriptor& folder, const QByteArray& name);

private:
    void sync();

    const Descriptor& m_folder;
    QByteArray m_name;
    Descriptor m_file;
    QCryptographicHash m_hash { QCryptographicHash::Sha256 };
    qint64 m_size = 0;
    qint64 m_synced = 0;
};

} // namespace cloudd
