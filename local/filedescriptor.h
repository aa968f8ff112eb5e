// Open files and directories: what was opened is what is looked at and changed, whatever its path comes to name
// meanwhile. [any thread]
#pragma once

#include "exports/descriptor.h"

#include <QString>
#include <optional>
#include <sys/stat.h>

namespace jsapi {

/// A descriptor that is compared with paths.
class FileDescriptor : public Descriptor {
public:
    using Descriptor::Descriptor;

    /// A path that leads to what is open, while it is open.
    QByteArray path() const;
    /// Whether a path leads to what is open.
    bool isAt(const QString& path) const;
    /// Where what is open lies, without links. Empty when it has been removed, or the path is too long.
    QByteArray realPath() const;
};

/// What a file or directory is, under whatever name: its device and inode.
using FileId = std::pair<dev_t, ino_t>;

inline FileId identify(const struct stat& facts)
{
    return { facts.st_dev, facts.st_ino };
}

/// What an entry of a directory is; nothing when it is not there. Links are followed only if `followLinks`.
std::optional<struct stat> lookAt(int directory, const QByteArray& name, bool followLinks = false);

/// What a link says; empty when it can not be read.
QByteArray readLink(int directory, const char* name);

/// Opens a regular file for reading, and nothing else: pipes and devices are not even opened, since that alone
/// may change something. None when `path` names no regular file, or one that can not be read.
FileDescriptor openRegularFile(const QByteArray& path);
FileDescriptor openRegularFile(const QString& path);

/// Reads an open file to its end; nothing when that fails, or it has more than `limit` bytes.
std::optional<QByteArray> readAll(const FileDescriptor& file, qint64 limit);

/// Writes all of it. False with errno when that fails.
bool writeAll(const Descriptor& file, const char* bytes, qint64 count);

} // namespace jsapi
