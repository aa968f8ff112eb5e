#include "host/cloudd/contents.h"

#include "host/cloudd/state.h"

#include <QDir>
#include <QFile>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace cloudd {

namespace {

/// Bytes between two syncs: with a single one at the end, that would take long for a big file.
constexpr qint64 SyncBytes = 16 << 20;
constexpr int PrefixLength = 2;

void must(bool succeeded)
{
    if (!succeeded)
        throw Error(State::StorageFailed);
}

} // namespace

QString Contents::open(const QString& directory)
{
    const QString incoming = directory + QStringLiteral("/incoming");
    m_contents = openFolder(QFile::encodeName(directory + QStringLiteral("/contents")));
    m_incoming = openFolder(QFile::encodeName(incoming));
    if (!m_contents || !m_incoming)
        return QStringLiteral("\"%1\": its folders can not be made or opened").arg(directory);
    const QStringList left = QDir(incoming).entryList(QDir::Files | QDir::Hidden | QDir::System);
    for (const QString& name : left)
        unlinkat(m_incoming.get(), QFile::encodeName(name).constData(), 0);
    return {};
}

void Contents::sweep(const std::function<bool(const QString&)>& isUsed)
{
    const QDir contents(QStringLiteral("/proc/self/fd/%1").arg(m_contents.get()));
    const QStringList prefixes = contents.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString& prefix : prefixes) {
        const QStringList names = QDir(contents.filePath(prefix)).entryList(QDir::Files);
        for (const QString& name : names) {
            if (!isUsed(name))
                remove(name);
        }
    }
}

Descriptor Contents::find(const QString& sha256) const
{
    struct stat opened { };
    const QByteArray path = (sha256.left(PrefixLength) + QLatin1Char('/') + sha256).toLatin1();
    return openRegular(m_contents.get(), path, O_NOFOLLOW, opened);
}

void Contents::store(Incoming& incoming)
{
    const QByteArray name = incoming.sha256().toLatin1();
    const Descriptor folder = enterFolder(m_contents, name.left(PrefixLength));
    incoming.place(folder, name);
    must(fsync(folder.get()) == 0 && fsync(m_contents.get()) == 0);
}

void Contents::remove(const QString& sha256)
{
    const QByteArray path = (sha256.left(PrefixLength) + QLatin1Char('/') + sha256).toLatin1();
    unlinkat(m_contents.get(), path.constData(), 0);
}

Incoming::Incoming(Contents& contents)
    : Incoming(contents.m_incoming, QByteArray::number(++contents.m_received))
{
}

Incoming::Incoming(const Descriptor& folder, QByteArray name)
    : m_folder(folder)
    , m_name(std::move(name))
    , m_file(openat(folder.get(), m_name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
          S_IRUSR | S_IWUSR))
{
    must(bool(m_file));
}

Incoming::~Incoming()
{
    if (m_file)
        unlinkat(m_folder.get(), m_name.constData(), 0);
}

void Incoming::write(const char* bytes, qint64 count)
{
    m_hash.addData(bytes, static_cast<int>(count));
    m_size += count;
    while (count > 0) {
        const qint64 written = TEMP_FAILURE_RETRY(::write(m_file.get(), bytes, static_cast<size_t>(count)));
        must(written > 0);
        bytes += written;
        count -= written;
    }
    if (m_size - m_synced >= SyncBytes)
        sync();
}

void Incoming::sync()
{
    must(fdatasync(m_file.get()) == 0);
    m_synced = m_size;
}

void Incoming::place(const Descriptor& folder, const QByteArray& name)
{
    sync();
    if (renameat(m_folder.get(), m_name.constData(), folder.get(), name.constData()) != 0)
        throw Error(errno == EISDIR || errno == ENOTEMPTY || errno == EEXIST ? State::NameTaken
                                                                             : State::StorageFailed);
    m_file = Descriptor();
}

} // namespace cloudd
