#include "host/cloudd/localcopy.h"

#include "host/cloudd/names.h"
#include "host/cloudd/slice.h"
#include "host/cloudd/state.h"

#include <QFile>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>

namespace cloudd {

LocalCopy::LocalCopy(Contents& contents, QString sha256, qint64 size, Descriptor folder, QByteArray name,
    std::optional<QString> lastCopied, MakeIncoming makeIncoming)
    : m_contents(contents)
    , m_sha256(std::move(sha256))
    , m_size(size)
    , m_folder(std::move(folder))
    , m_name(std::move(name))
    , m_lastCopied(std::move(lastCopied))
    , m_makeIncoming(
          makeIncoming ? std::move(makeIncoming) : [this] { return std::make_unique<Incoming>(m_contents); })
    , m_content(contents.find(m_sha256))
{
    Descriptor local = openRegular(m_folder.get(), m_name, O_NOFOLLOW, m_compared);
    if (local && (m_lastCopied || m_compared.st_size == m_size))
        m_local = std::move(local);
    else
        m_incoming = m_makeIncoming();
}

bool LocalCopy::step()
{
    return m_incoming ? copy() : compare();
}

bool LocalCopy::compare()
{
    const qint64 count = readSlice(m_local, sliceBuffer(), SliceBytes);
    if (count > 0) {
        m_localHash.addData(sliceBuffer(), static_cast<int>(count));
        return true;
    }
    const QString local = QString::fromLatin1(m_localHash.result().toHex());
    if (count == 0 && local == m_sha256)
        return false;
    m_isEdited = count < 0 || local != m_lastCopied;
    m_incoming = m_makeIncoming();
    return true;
}

bool LocalCopy::copy()
{
    const qint64 count = m_content ? readSlice(m_content, sliceBuffer(), SliceBytes) : -1;
    if (count < 0 || m_incoming->size() + count > m_size)
        throw Error(State::Damaged);
    if (count > 0) {
        m_incoming->write(sliceBuffer(), count);
        return true;
    }
    if (m_incoming->size() != m_size || m_incoming->sha256() != m_sha256)
        throw Error(State::Damaged);
    if (m_lastCopied)
        keepEdited();
    m_incoming->place(m_folder, m_name);
    m_written = true;
    return false;
}

void LocalCopy::keepEdited()
{
    struct stat found { };
    if (fstatat(m_folder.get(), m_name.constData(), &found, AT_SYMLINK_NOFOLLOW) != 0
        || !S_ISREG(found.st_mode))
        return;
    const bool isAsCompared = m_local && isUnchanged(m_compared, found);
    if (isAsCompared && !m_isEdited)
        return;
    m_keptName = keepLocalVersion(m_folder, m_name);
}

QByteArray keepLocalVersion(const Descriptor& folder, const QByteArray& name)
{
    for (int number = 1;; ++number) {
        QByteArray free = QFile::encodeName(
            makeNumberedName(QFile::decodeName(name), number, QStringLiteral("local version ")));
        if (renameat2(folder.get(), name.constData(), folder.get(), free.constData(), RENAME_NOREPLACE) == 0)
            return free;
        if (errno != EEXIST)
            throw Error(State::StorageFailed);
    }
}

} // namespace cloudd
