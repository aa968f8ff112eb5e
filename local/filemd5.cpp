#include "local/filemd5.h"

#include <QFileInfo>
#include <fcntl.h>

namespace {

constexpr int SliceBytes = 1 << 20;

QString notOpened(const QString& path)
{
    return QString::fromLatin1("%1 can't been opened").arg(path);
}

} // namespace

Reply KFileMd5Request::start(Call& call, const QString& path)
{
    if (path.isEmpty())
        return rejectedPromise(call, QString::fromLatin1("Path is empty."));
    if (!QFileInfo::exists(path))
        return rejectedPromise(call, QString::fromLatin1("%1 is not existed").arg(path));
    auto request = std::make_unique<KFileMd5Request>(path);
    if (!request->open())
        return rejectedPromise(call, notOpened(path));
    request->m_nextSlice.start();
    return promised(call, std::move(request));
}

KFileMd5Request::KFileMd5Request(const QString& path)
    : m_path(path)
    , m_slice(SliceBytes, Qt::Uninitialized)
{
    connect(&m_nextSlice, &QTimer::timeout, this, &KFileMd5Request::readSlice);
}

/// Devices and pipes have no end, or no content until somebody writes: only a regular file is opened, and
/// never waited for.
bool KFileMd5Request::open()
{
    const int file =
        ::open(QFile::encodeName(m_path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    return file >= 0 && m_file.open(file, QIODevice::ReadOnly | QIODevice::Unbuffered, QFile::AutoCloseHandle)
        && fstat(file, &m_opened) == 0 && S_ISREG(m_opened.st_mode);
}

bool KFileMd5Request::isUnchanged() const
{
    struct stat now { };
    return fstat(m_file.handle(), &now) == 0 && now.st_size == m_opened.st_size
        && now.st_mtim.tv_sec == m_opened.st_mtim.tv_sec && now.st_mtim.tv_nsec == m_opened.st_mtim.tv_nsec;
}

void KFileMd5Request::readSlice()
{
    const qint64 count = isAwaited() ? m_file.read(m_slice.data(), SliceBytes) : 0;
    const bool failed = count < 0 || !isUnchanged();
    if (!failed && count > 0) {
        m_hash.addData(m_slice.constData(), static_cast<int>(count));
        return;
    }
    m_nextSlice.stop();
    if (failed)
        finishRejected(notOpened(m_path));
    else
        finish(QString::fromLatin1(m_hash.result().toHex()));
}
