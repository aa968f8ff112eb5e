#include "local/network/partfile.h"

#include <QCryptographicHash>
#include <QtEndian>
#include <cerrno>
#include <climits>
#include <sys/file.h>

namespace jsapi {

namespace {

// What stands behind the content of a part that is kept: the validator, the digest of the URL, the length of the validator
// in two bytes, a mark.
constexpr char Mark[] = "\nPart of a download, 1\n";
constexpr int MarkSize = sizeof Mark - 1;
constexpr int DigestSize = 32;
constexpr int FixedSize = DigestSize + 2 + MarkSize;
constexpr int LongestValidator = 1024;

constexpr qint64 FlushBytes = 8 << 20;

QByteArray digest(const QByteArray& url)
{
    return QCryptographicHash::hash(url, QCryptographicHash::Sha256);
}

QByteArray readAt(const Descriptor& file, qint64 offset, qint64 size)
{
    QByteArray bytes(static_cast<int>(size), Qt::Uninitialized);
    return pread(file.number(), bytes.data(), static_cast<std::size_t>(size), offset) == size ? bytes
                                                                                              : QByteArray();
}

NetworkError writeError()
{
    return errno == ENOSPC || errno == EDQUOT ? NetworkError::DiskIsFull : NetworkError::FileNotWritten;
}

QByteArray partName(const QByteArray& name)
{
    const QByteArray part = '.' + name + ".part";
    return part.size() <= NAME_MAX ? part : '.' + digest(name).toHex() + ".part";
}

} // namespace

bool PartFile::isFree(const WritablePath& target, bool overwrite)
{
    const auto isFile = [](const auto& facts) { return facts && S_ISREG(facts->st_mode); };
    const auto present = target.look();
    return !present
        || (overwrite && (isFile(present) || (S_ISLNK(present->st_mode) && isFile(target.look(true)))));
}

std::optional<PartFile> PartFile::open(const WritablePath& target, bool isResumable, const QByteArray& url)
{
    const int directory = target.above().number();
    const mode_t permissions = target.look() ? 0600 : 0666;
    if (!isResumable) {
        NewFile file(directory, permissions);
        return file ? std::optional(PartFile(target, std::move(file))) : std::nullopt;
    }
    const QByteArray name = partName(*target.name());
    Descriptor opened(openat(
        directory, name.constData(), O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, permissions));
    struct stat facts { };
    // A name that another one has taken meanwhile, a link, or a file with other names is nobody's part.
    if (!opened || flock(opened.number(), LOCK_EX | LOCK_NB) != 0 || fstat(opened.number(), &facts) != 0
        || !S_ISREG(facts.st_mode) || facts.st_nlink != 1 || facts.st_uid != geteuid())
        return std::nullopt;
    const auto found = lookAt(directory, name);
    if (!found || identify(*found) != identify(facts))
        return std::nullopt;
    PartFile part(target, NewFile(directory, name.toStdString(), std::move(opened)));
    part.m_size = facts.st_size;
    part.readOrigin(url);
    if (part.m_validator.isEmpty() && !part.clear())
        return std::nullopt;
    return part;
}

void PartFile::readOrigin(const QByteArray& url)
{
    const qint64 end = std::exchange(m_size, 0);
    const QByteArray fixed =
        end < FixedSize ? QByteArray() : readAt(m_file.file(), end - FixedSize, FixedSize);
    if (!fixed.endsWith(Mark) || !fixed.startsWith(digest(url)))
        return;
    const auto length = qFromBigEndian<quint16>(fixed.constData() + DigestSize);
    const qint64 content = end - FixedSize - length;
    if (length == 0 || length > LongestValidator || content <= 0)
        return;
    m_validator = readAt(m_file.file(), content, length);
    if (m_validator.isEmpty())
        return;
    m_size = content;
    m_isUntouched = true;
}

bool PartFile::cutTo(qint64 size)
{
    m_isUntouched = false;
    const int file = m_file.file().number();
    m_size = size;
    m_flushed = size;
    return ftruncate(file, size) == 0 && lseek(file, size, SEEK_SET) == size;
}

bool PartFile::clear()
{
    m_validator.clear();
    return cutTo(0);
}

std::optional<NetworkError> PartFile::append(const QByteArray& content)
{
    if (m_isUntouched && !cutTo(m_size))
        return writeError();
    if (!writeAll(m_file.file(), content.constData(), content.size()))
        return writeError();
    m_size += content.size();
    // Little by little, so that take() need not wait for all of it.
    if (m_size - m_flushed >= FlushBytes) {
        sync_file_range(m_file.file().number(), m_flushed, m_size - m_flushed, SYNC_FILE_RANGE_WRITE);
        m_flushed = m_size;
    }
    return std::nullopt;
}

std::optional<NetworkError> PartFile::take(bool overwrite)
{
    if (m_isUntouched && !cutTo(m_size))
        return writeError();
    if (!isFree(m_target, overwrite))
        return NetworkError::FileExists;
    constexpr mode_t Permissions = 0666;
    const auto present = m_target.look();
    const int file = m_file.file().number();
    if ((present && S_ISREG(present->st_mode) && fchmod(file, present->st_mode & Permissions) != 0)
        || fdatasync(file) != 0)
        return writeError();
    if (m_file.take(*m_target.name(), overwrite))
        return std::nullopt;
    return errno == EEXIST || errno == EISDIR ? NetworkError::FileExists : writeError();
}

void PartFile::keep(const Origin& origin)
{
    const QByteArray& validator = m_isUntouched ? m_validator : origin.validator;
    if (m_size == 0 || validator.isEmpty() || validator.size() > LongestValidator)
        return;
    if (!m_isUntouched) {
        QByteArray end = validator + digest(origin.url);
        char length[2];
        qToBigEndian(static_cast<quint16>(validator.size()), length);
        end.append(length, sizeof length);
        end += Mark;
        if (!writeAll(m_file.file(), end.constData(), end.size()) || fdatasync(m_file.file().number()) != 0)
            return;
    }
    m_file.keep();
}

} // namespace jsapi
