#include "host/cloudd/upload.h"

#include "host/cloudd/slice.h"
#include "host/cloudd/state.h"

#include <ctime>
#include <fcntl.h>

namespace cloudd {

Upload::Upload(Contents& contents, const QByteArray& source, IsPermitted isPermitted, bool followLinks)
    : m_contents(contents)
    , m_source(source)
    , m_isPermitted(std::move(isPermitted))
    , m_followLinks(followLinks)
{
}

bool Upload::prepare()
{
    if (!m_file) {
        m_file = openRegular(AT_FDCWD, m_source, m_followLinks ? 0 : O_NOFOLLOW, m_opened);
        if (!m_file)
            throw Error(State::SourceUnreadable);
        if (!m_isPermitted(m_file))
            throw Error(State::Closed);
        m_incoming = std::make_unique<Incoming>(m_contents);
    }
    return canDetectChanges(m_opened);
}

/// Time stamps come from a clock that advances once a tick, and file systems may store them less precisely
/// still (FAT: 2 s). Once the clock has advanced beyond the stamp, every further change gets another stamp.
bool canDetectChanges(const struct stat& file)
{
    timespec now {};
    timespec tick {};
    clock_gettime(CLOCK_REALTIME_COARSE, &now);
    clock_getres(CLOCK_REALTIME_COARSE, &tick);
    const bool isWholeSeconds = file.st_ctim.tv_nsec == 0;
    const qint64 step = isWholeSeconds ? 2 * NsPerSecond : 2 * nanoseconds(tick);
    return qAbs(nanoseconds(now) - nanoseconds(file.st_ctim)) > step;
}

/// Whether the path still leads to the opened file, unchanged.
bool Upload::isUnchanged() const
{
    struct stat now { };
    return fstatat(AT_FDCWD, m_source.constData(), &now, m_followLinks ? 0 : AT_SYMLINK_NOFOLLOW) == 0
        && cloudd::isUnchanged(m_opened, now);
}

bool Upload::step(qint64 most)
{
    const qint64 count = readSlice(m_file, sliceBuffer(), qMin<qint64>(most, SliceBytes));
    // A file may grow faster than it is read.
    if (count < 0 || transferred() + count > total())
        throw Error(State::SourceUnreadable);
    if (count > 0) {
        m_incoming->write(sliceBuffer(), count);
        return true;
    }
    if (transferred() != total() || !isUnchanged())
        throw Error(State::SourceUnreadable);
    m_contents.store(*m_incoming);
    return false;
}

} // namespace cloudd
