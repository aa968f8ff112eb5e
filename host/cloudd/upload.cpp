#include "host/cloudd/upload.h"

#include "host/cloudd/slice.h"
#include "host/cloudd/state.h"

#include <QFile>
#include <ctime>
#include <fcntl.h>

namespace cloudd {

namespace {

constexpr qint64 NsPerSecond = 1'000'000'000;

qint64 nanoseconds(const timespec& time)
{
    return time.tv_sec * NsPerSecond + time.tv_nsec;
}

} // namespace

Upload::Upload(Contents& contents, const QString& source)
    : m_contents(contents)
    , m_source(QFile::encodeName(source))
{
}

bool Upload::prepare()
{
    if (!m_file) {
        m_file = openRegular(AT_FDCWD, m_source, 0, m_opened);
        if (!m_file)
            throw Refusal(State::SourceUnreadable);
        m_incoming = std::make_unique<Incoming>(m_contents);
    }
    return canDetectChanges();
}

/// Files are stamped with a clock that moves once a tick, and some file systems (FAT is the worst) keep two
/// seconds of it. Once the clock has left the step that the stamp is in, every change is stamped differently.
bool Upload::canDetectChanges() const
{
    timespec now {};
    timespec tick {};
    clock_gettime(CLOCK_REALTIME_COARSE, &now);
    clock_getres(CLOCK_REALTIME_COARSE, &tick);
    const bool isWholeSeconds = m_opened.st_ctim.tv_nsec == 0;
    const qint64 step = isWholeSeconds ? 2 * NsPerSecond : 2 * nanoseconds(tick);
    return qAbs(nanoseconds(now) - nanoseconds(m_opened.st_ctim)) > step;
}

/// Whether the path still leads to the file that was opened, as it was then. Anybody can set st_mtim, so a
/// change is seen by st_ctim.
bool Upload::isUnchanged() const
{
    struct stat now { };
    return stat(m_source.constData(), &now) == 0 && now.st_dev == m_opened.st_dev
        && now.st_ino == m_opened.st_ino && now.st_size == m_opened.st_size
        && nanoseconds(now.st_mtim) == nanoseconds(m_opened.st_mtim)
        && nanoseconds(now.st_ctim) == nanoseconds(m_opened.st_ctim);
}

bool Upload::step(qint64 most)
{
    const qint64 count = readSlice(m_file, sliceBuffer(), qMin<qint64>(most, SliceBytes));
    // A file may grow faster than it is read.
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
