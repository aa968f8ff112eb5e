// NewFile: a file that is written beside another one, and takes its place when it is whole. [any thread]
#pragma once

#include "local/filedescriptor.h"

#include <QUuid>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace jsapi {

/// A file beside another, whose place it takes when it is whole. Removed unless it does.
class NewFile {
public:
    /// Makes the file, for the user alone: what it takes the place of, or is copied from, may be private. errno
    /// says why when it is not there afterwards.
    explicit NewFile(int directory, mode_t permissions = 0600)
        : m_directory(directory)
        , m_name('.' + QUuid::createUuid().toByteArray(QUuid::Id128))
        , m_file(openat(directory, m_name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
              permissions))
    {
    }
    /// Takes over a file that has been made there already.
    NewFile(int directory, QByteArray name, FileDescriptor file)
        : m_directory(directory)
        , m_name(std::move(name))
        , m_file(std::move(file))
    {
    }
    NewFile(NewFile&& other) noexcept = default;
    NewFile& operator=(NewFile&& other) noexcept
    {
        std::swap(m_directory, other.m_directory);
        std::swap(m_name, other.m_name);
        std::swap(m_file, other.m_file);
        return *this;
    }
    ~NewFile()
    {
        if (m_file)
            unlinkat(m_directory, m_name.constData(), 0);
    }
    explicit operator bool() const noexcept { return bool(m_file); }
    const FileDescriptor& file() const noexcept { return m_file; }

    /// Takes the place of whatever is there.
    bool replace(const QByteArray& name)
    {
        return settle(renameat(m_directory, m_name.constData(), m_directory, name.constData()) == 0);
    }
    /// Takes a place where nothing is.
    bool take(const QByteArray& name)
    {
        const char* from = m_name.constData();
        const char* to = name.constData();
        if (renameat2(m_directory, from, m_directory, to, RENAME_NOREPLACE) == 0)
            return settle(true);
        // Some file systems can not rename that way, but can link.
        return errno == EINVAL && linkat(m_directory, from, m_directory, to, 0) == 0;
    }

    /// Lets the file stay where it is.
    void keep() { m_file = FileDescriptor(); }

private:
    bool settle(bool done)
    {
        if (done)
            m_file = FileDescriptor();
        return done;
    }

    int m_directory;
    QByteArray m_name;
    FileDescriptor m_file;
};

} // namespace jsapi
