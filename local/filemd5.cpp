#include "local/filemd5.h"

#include <QFileInfo>

namespace {

constexpr qint64 SliceBytes = qint64 { 4 } << 20;

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
    // Devices and pipes have no end, or no content until somebody writes.
    if (!QFileInfo(path).isFile() || !request->m_file.open(QIODevice::ReadOnly))
        return rejectedPromise(call, notOpened(path));
    request->m_nextSlice.start();
    return promised(call, std::move(request));
}

KFileMd5Request::KFileMd5Request(const QString& path)
    : m_file(path)
{
    connect(&m_nextSlice, &QTimer::timeout, this, &KFileMd5Request::readSlice);
}

void KFileMd5Request::readSlice()
{
    const QByteArray slice = m_file.read(SliceBytes);
    m_hash.addData(slice);
    const bool failed = m_file.error() != QFileDevice::NoError;
    if (!failed && !slice.isEmpty() && isAwaited())
        return;
    m_nextSlice.stop();
    if (failed)
        finishRejected(notOpened(m_file.fileName()));
    else
        finish(QString::fromLatin1(m_hash.result().toHex()));
}
