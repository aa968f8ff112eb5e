#include "local/filemd5.h"

#include "local/filedescriptor.h"

#include <QFileInfo>
#include <QPointer>
#include <QTimer>
#include <algorithm>
#include <ctime>
#include <deque>

namespace jsapi {

namespace {

constexpr int SliceBytes = 1 << 20;
/// How long to wait when all files that are to be read are too young.
constexpr int YoungRetryMs = 5;

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

/// The requests of all pages. The first page's first request is read next.
class Turns final : public QObject {
public:
    static Turns& instance()
    {
        static Turns turns;
        return turns;
    }

    void add(const JSContextEnv& page, KFileMd5Request* request)
    {
        auto line = std::find_if(
            m_lines.begin(), m_lines.end(), [&](const Line& known) { return known.page == page; });
        if (line == m_lines.end())
            line = m_lines.insert(line, Line { page, {} });
        line->requests.push_back(request);
        m_tooYoung = 0;
        m_next.start(0);
    }

private:
    struct Line {
        JSContextEnv page;
        std::deque<QPointer<KFileMd5Request>> requests; ///< null where one has ended unread
    };

    Turns() { connect(&m_next, &QTimer::timeout, this, &Turns::take); }

    void take()
    {
        m_buffer.resize(SliceBytes);
        Line line = std::move(m_lines.front());
        m_lines.pop_front();
        KFileMd5Request* request = line.requests.front();
        const auto slice = request ? request->readSlice(m_buffer) : KFileMd5Request::Slice::Ended;
        if (slice == KFileMd5Request::Slice::Ended)
            line.requests.pop_front();
        m_tooYoung = slice == KFileMd5Request::Slice::TooYoung ? m_tooYoung + 1 : 0;
        m_next.setInterval(m_tooYoung > m_lines.size() ? YoungRetryMs : 0);
        if (!line.requests.empty())
            m_lines.push_back(std::move(line));
        if (m_lines.empty()) {
            m_next.stop();
            m_buffer.clear();
        }
    }

    std::deque<Line> m_lines;
    std::size_t m_tooYoung = 0; ///< so many turns in a row could not read
    QByteArray m_buffer;
    QTimer m_next;
};

} // namespace

Answer<Promise<QString>> KFileMd5Request::start(const JSContextEnv& page, const QString& path)
{
    if (path.isEmpty())
        return Md5PathIsEmpty;
    if (!QFileInfo::exists(path))
        return Md5NotExisting / path;
    auto request = std::make_unique<KFileMd5Request>(page, path);
    Turns::instance().add(page, request.get());
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

KFileMd5Request::Slice KFileMd5Request::readSlice(QByteArray& buffer)
{
    const bool readable = !m_watch.isGone() && (m_file.isOpen() || open());
    if (readable && m_file.pos() == 0 && isYoung(m_opened.st_ctim))
        return Slice::TooYoung;
    const qint64 count = readable ? m_file.read(buffer.data(), buffer.size()) : -1;
    if (count < 0 || !isUnchanged()) {
        reject(Md5NotOpened / m_path);
        return Slice::Ended;
    }
    m_hash.addData(buffer.constData(), static_cast<int>(count));
    if (count > 0)
        return Slice::Read;
    resolve(QString::fromLatin1(m_hash.result().toHex()));
    return Slice::Ended;
}

} // namespace jsapi
