#include "host/cloudd/upload.h"

#include "host/cloudd/slice.h"
#include "host/cloudd/state.h"

#include <QFile>
#include <fcntl.h>

namespace cloudd {

Upload::Upload(Contents& contents, const QString& source)
    : m_contents(contents)
    , m_source(QFile::encodeName(source))
{
}

/// Whoever looks at the path still finds the file that was opened, as it was then.
bool Upload::isUnchanged() const
{
    struct stat now { };
    return stat(m_source.constData(), &now) == 0 && now.st_dev == m_opened.st_dev
        && now.st_ino == m_opened.st_ino && now.st_size == m_opened.st_size
        && now.st_mtim.tv_sec == m_opened.st_mtim.tv_sec && now.st_mtim.tv_nsec == m_opened.st_mtim.tv_nsec;
}

bool Upload::step(qint64 most)
{
    if (!m_file) {
        m_file = openRegular(AT_FDCWD, m_source, 0, m_opened);
        if (!m_file)
            throw Refusal(State::SourceUnreadable);
        m_incoming = std::make_unique<Incoming>(m_contents);
    }
    const qint64 count = readSlice(m_file, sliceBuffer(), qMin<qint64>(most, SliceBytes));
    // One that grows for ever is not followed.
    if (count < 0 || transferred() + count > total())
        throw Refusal(State::SourceUnreadable);
    if (count > 0) {
        m_incoming->write(sliceBuffer(), count);
        return true;
    }
    if (transferred() != total() || !isUnchanged())
        throw Refusal(State::SourceUnreadable);
    m_contents.keep(*m_incoming);
    return false;
}

} // namespace cloudd
