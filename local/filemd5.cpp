#include "local/filemd5.h"

#include "local/filedescriptor.h"

#include <QFileInfo>
#include <ctime>

namespace jsapi {

namespace {

qint64 nanoseconds(const timespec& time)
{
    return time.tv_sec * Q_INT64_C(1'000'000'000) + time.tv_nsec;
}

/// Whether a change made now could get the same time stamp as the last one. Stamps advance once a tick of the
/// kernel's coarse clock, and on some file systems once in two seconds.
bool isYoung(const timespec& changed)
{
    timespec now {};
    timespec tick {};
    clock_gettime(CLOCK_REALTIME_COARSE, &now);
    clock_getres(CLOCK_REALTIME_COARSE, &tick);
    const qint64 step = changed.tv_nsec == 0 ? Q_INT64_C(2'000'000'000) : 2 * nanoseconds(tick);
    return qAbs(nanoseconds(now) - nanoseconds(changed)) <= step;
}

} // namespace

Answer<Promise<QString>> KFileMd5Request::start(const JSContextEnv& page, const QString& path)
{
    if (path.isEmpty())
        return Md5PathIsEmpty;
    if (!QFileInfo::exists(path))
        return Md5NotExisting / path;
    auto request = std::make_unique<KFileMd5Request>(page, path);
    takeTurns(
        page, request.get(), [self = request.get()](QByteArray& buffer) { return self->readSlice(buffer); });
    return promise(page, std::move(request));
}

KFileMd5Request::KFileMd5Request(const JSContextEnv& page, const QString& path)
    : m_watch(page)
    , m_path(path)
{
}

bool KFileMd5Request::open()
{
    FileDescriptor file = openRegularFile(m_path);
    return file && fstat(file.number(), &m_opened) == 0
        && m_file.open(file.release(), QIODevice::ReadOnly | QIODevice::Unbuffered, QFile::AutoCloseHandle);
}

bool KFileMd5Request::isUnchanged() const
{
    // Programs can set the time of the last modification back, but not that of the last change.
    struct stat now { };
    return fstat(m_file.handle(), &now) == 0 && now.st_size == m_opened.st_size
        && nanoseconds(now.st_mtim) == nanoseconds(m_opened.st_mtim)
        && nanoseconds(now.st_ctim) == nanoseconds(m_opened.st_ctim);
}

Slice KFileMd5Request::readSlice(QByteArray& buffer)
{
    const bool readable = !m_watch.isGone() && (m_file.isOpen() || open());
    if (readable && m_file.pos() == 0 && isYoung(m_opened.st_ctim))
        return Slice::Waiting;
    const qint64 count = readable ? m_file.read(buffer.data(), buffer.size()) : -1;
    if (count < 0 || !isUnchanged()) {
        reject(Md5NotOpened / m_path);
        return Slice::Ended;
    }
    m_hash.addData(buffer.constData(), static_cast<int>(count));
    if (count > 0)
        return Slice::Worked;
    resolve(QString::fromLatin1(m_hash.result().toHex()));
    return Slice::Ended;
}

} // namespace jsapi
