#include "host/cloudd/localcopy.h"

#include "host/cloudd/slice.h"
#include "host/cloudd/state.h"

#include <fcntl.h>

namespace cloudd {

LocalCopy::LocalCopy(Contents& contents, QString sha256, qint64 size, Descriptor folder, QByteArray name)
    : m_contents(contents)
    , m_sha256(std::move(sha256))
    , m_size(size)
    , m_folder(std::move(folder))
    , m_name(std::move(name))
    , m_content(contents.find(m_sha256))
{
    struct stat found { };
    Descriptor local = openRegular(m_folder.get(), m_name, O_NOFOLLOW, found);
    if (local && found.st_size == m_size)
        m_local = std::move(local);
    else
        m_incoming = std::make_unique<Incoming>(m_contents);
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
    if (count == 0 && QString::fromLatin1(m_localHash.result().toHex()) == m_sha256)
        return false;
    m_incoming = std::make_unique<Incoming>(m_contents);
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
    m_incoming->place(m_folder, m_name);
    m_written = true;
    return false;
}

} // namespace cloudd
