#include "host/web/bridge.h"

#include "host/web/replies.h"
#include "host/web/webpage.h"

#include <QWebEngineUrlRequestJob>

namespace engine::web {

namespace {

/// Never used again in a process, so that what is meant for one document can not reach another.
std::uint64_t lastFrame = 0;

/// How long a document may be without its line, which a page can end, before it counts as gone.
constexpr int LineGraceMs = 3'000;
/// And until it has its first one, which a slow machine may take its time for.
constexpr int FirstLineMs = 30'000;

} // namespace

Bridge::Bridge(Host host)
    : m_host(std::move(host))
{
}

Bridge::~Bridge()
{
    closeAll();
}

QString Bridge::request(const QString& origin, const QString& text)
{
    if (origin.isEmpty())
        return {};
    WireReader reader(text);
    const char kind = reader.unit();
    if (kind == 'H')
        return greet(origin, reader);
    const auto found = m_frames.find(reader.word().toString());
    if (found == m_frames.end() || found->second.frame->origin() != origin)
        return {};
    // Kept: the request may close the frame, or all of them.
    const std::shared_ptr<Frame> frame = found->second.frame;
    QString reply = frame->reply(kind, reader);
    if (!frame->isOpen())
        closeFrame(frame->name());
    return reply;
}

QString Bridge::greet(const QString& origin, WireReader& reader)
{
    OriginRights rights = m_host.rights(origin);
    if (!rights.any)
        return {};
    // A frame may say that it is the page.
    const bool isTop = reader.unit() == 't' && origin == m_host.topOrigin();
    if (isTop)
        replaceAll();
    if (m_frames.size() >= maximumFrames)
        return {};
    const QString name = QString::number(++lastFrame);
    Frame::Host host;
    host.wake = [this, name] { post(name, [this, name](Document&) { wake(name); }); };
    host.waits = [this, name](
                     int ticket) { post(name, [this, name, ticket](Document&) { perform(name, ticket); }); };
    auto frame = std::make_shared<Frame>(name, origin, isTop, std::move(rights), std::move(host));
    frame->open(m_host.browser());
    m_frames[name].frame = frame;
    closeWithoutLine(name, FirstLineMs);
    if (isTop && m_host.opened)
        m_host.opened(*frame);
    return frame->greeting();
}

void Bridge::post(const QString& name, const std::function<void(Document&)>& work)
{
    QMetaObject::invokeMethod(
        this,
        [this, name, work] {
            if (const auto found = m_frames.find(name); found != m_frames.end())
                work(found->second);
        },
        Qt::QueuedConnection);
}

void Bridge::wake(const QString& name)
{
    Document& document = m_frames[name];
    if (!document.frame->hasMessages())
        return;
    if (document.frame->isTop())
        m_host.wakeTop(document.frame->origin());
    else if (const QPointer<QWebEngineUrlRequestJob> bell = std::exchange(document.bell, {}))
        replyWith(*bell, "text/plain", {});
}

void Bridge::perform(const QString& name, int ticket)
{
    const std::shared_ptr<Frame> frame = m_frames[name].frame;
    const QPointer<Bridge> self(this);
    frame->performWaiting(ticket);
    if (!self)
        return;
    const auto found = m_frames.find(name);
    if (found == m_frames.end())
        return;
    if (const auto job = found->second.waiting.find(ticket); job != found->second.waiting.end()) {
        if (job->second)
            replyWith(*job->second, "text/plain", {});
        found->second.waiting.erase(job);
    }
}

bool Bridge::hold(
    const QString& origin, const QString& kind, const QStringList& path, QWebEngineUrlRequestJob* job)
{
    if (path.size() != 2)
        return false;
    const QString& name = path[0];
    const auto found = m_frames.find(name);
    if (found == m_frames.end() || found->second.frame->origin() != origin)
        return false;
    Document& document = found->second;
    if (kind == QLatin1String("wait")) {
        const int ticket = path[1].toInt();
        if (document.frame->isWaiting(ticket))
            document.waiting[ticket] = job;
        else
            replyWith(*job, "text/plain", {});
        return true;
    }
    if (kind == QLatin1String("bell")) {
        document.bell = job;
        if (!document.frame->isTop())
            wake(name);
        return true;
    }
    if (kind != QLatin1String("line"))
        return false;
    document.line = job;
    connect(job, &QObject::destroyed, this, [this, name] { lineEnded(name); });
    return true;
}

void Bridge::lineEnded(const QString& name)
{
    const auto found = m_frames.find(name);
    if (found == m_frames.end() || found->second.line)
        return;
    if (found->second.isReplaced)
        closeFrame(name);
    else
        closeWithoutLine(name, LineGraceMs);
}

void Bridge::closeWithoutLine(const QString& name, int afterMs)
{
    QTimer::singleShot(afterMs, this, [this, name, afterMs] {
        const auto found = m_frames.find(name);
        if (found == m_frames.end() || found->second.line)
            return;
        // It can not open a line while it waits for us.
        const auto& waiting = found->second.waiting;
        if (BrowserWaits::any()
            || std::any_of(waiting.begin(), waiting.end(), [](const auto& one) { return one.second; }))
            closeWithoutLine(name, afterMs);
        else
            closeFrame(name);
    });
}

// Another document has taken the page's top: those that were there go with their lines, or have none any more.
void Bridge::replaceAll()
{
    std::vector<QString> left;
    for (auto& [name, document] : m_frames) {
        document.isReplaced = true;
        if (!document.line || m_frames.size() >= maximumFrames)
            left.push_back(name);
    }
    for (const QString& name : left)
        closeFrame(name);
}

void Bridge::closeFrame(const QString& name)
{
    const auto found = m_frames.find(name);
    if (found == m_frames.end())
        return;
    const Document document = std::move(found->second);
    m_frames.erase(found);
    document.frame->close();
    for (const auto& [ticket, job] : document.waiting) {
        if (job)
            replyWith(*job, "text/plain", {});
    }
    for (const auto& job : { document.line, document.bell }) {
        if (job)
            replyWith(*job, "text/plain", {});
    }
}

void Bridge::closeAll()
{
    while (!m_frames.empty())
        closeFrame(QString(m_frames.begin()->first));
}

void Bridge::updateBrowser(const vexlite::BrowserFacts& browser)
{
    for (const auto& [name, document] : m_frames)
        vexlite::Core::instance()->updateBrowser(document.frame->context(), browser);
}

} // namespace engine::web
