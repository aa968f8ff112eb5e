// The contents of files, by their SHA-256: contents/ab/<sha256>. A content is received in incoming/ and gets
// its place when all of it is on the disk, so what has a name there is whole.
//
//     Incoming incoming(contents);
//     incoming.write(bytes, count);              // again and again; an Incoming that is dropped leaves
//     nothing contents.keep(incoming);
//
// All of it may throw Refusal(StorageFailed).
#pragma once

#include "host/cloudd/files.h"

#include <QCryptographicHash>
#include <functional>

namespace cloudd {

class Contents {
public:
    /// Opens (or makes) what is below `directory`, and empties incoming/. Returns why it can not; then
    /// nothing may be called.
    QString open(const QString& directory);
    /// Removes the contents for which `isNamed` (given the SHA-256) says false.
    void sweep(const std::function<bool(const QString&)>& isNamed);

    /// Nothing when it is not there. Its content must be checked.
    Descriptor find(const QString& sha256) const;
    /// Afterwards the content survives a power failure. A content of that name is replaced.
    void keep(class Incoming& incoming);
    void remove(const QString& sha256);

private:
    friend class Incoming;

    Descriptor m_contents;
    Descriptor m_incoming;
    quint64 m_received = 0;
};

/// A file that is being written in incoming/.
class Incoming {
public:
    explicit Incoming(Contents& contents);
    ~Incoming();
    Incoming(const Incoming&) = delete;
    Incoming& operator=(const Incoming&) = delete;

    void write(const char* bytes, qint64 count);
    qint64 size() const { return m_size; }
    /// Of all that has been written.
    QString sha256() const { return QString::fromLatin1(m_hash.result().toHex()); }
    /// Writes everything to the disk and moves the file to `name` in `folder`, in place of a file or a link.
    /// Throws Refusal(NameTaken) when a folder is in the way. The last call.
    void place(const Descriptor& folder, const QByteArray& name);

private:
    void sync();

    Contents& m_contents;
    QByteArray m_name;
    Descriptor m_file;
    QCryptographicHash m_hash { QCryptographicHash::Sha256 };
    qint64 m_size = 0;
    qint64 m_synced = 0;
};

} // namespace cloudd
