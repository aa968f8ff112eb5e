#include "host/web/scriptpage.h"

#include "host/engine/replsource.h"

namespace engine::web {

ScriptPage::ScriptPage(PageOptions options, PageHost host, Compiles compiles, Gone gone)
    : m_options(std::move(options))
    , m_host(std::move(host))
    , m_compiles(std::move(compiles))
    , m_gone(std::move(gone))
{
    QObject::connect(&m_check, &QTimer::timeout, [this] { checkTime(); });
}

ScriptPage::~ScriptPage()
{
    close();
    m_gone(*this);
}

void ScriptPage::attach(Frame& frame)
{
    // The document before it has gone, or says so by greeting again; it must not call us when we have gone.
    if (const std::shared_ptr<Frame> before = m_frame.lock())
        before->close();
    m_frame = frame.weak_from_this();
    FrameScript script { m_host, m_options.arguments, {}, {}, {} };
    script.finished = [this](int ticket, const Outcome& outcome) { finish(ticket, outcome); };
    script.closed = [this] {
        Outcome gone;
        gone.text = QStringLiteral("the page has gone");
        if (m_running.empty() && m_host.uncaughtError)
            m_host.uncaughtError(gone);
        while (!m_running.empty())
            finish(m_running.begin()->first, gone);
        while (!m_settling.empty())
            finishSettling(m_settling.begin()->first, 0);
    };
    script.settled = [this](int ticket, int exitCode) {
        m_isReturning = true;
        finishSettling(ticket, exitCode);
    };
    frame.setScript(std::move(script));
    for (Work& work : std::exchange(m_later, {}))
        begin(std::move(work));
}

JSContextEnv ScriptPage::context() const
{
    const std::shared_ptr<Frame> frame = m_frame.lock();
    return frame ? frame->context() : JSContextEnv {};
}

void ScriptPage::run(const QString& source, const QString& fileName, Done done)
{
    QString body = source;
    if (body.startsWith(QLatin1String("#!")))
        body.replace(0, 2, QStringLiteral("//"));
    begin({ false, fileName, body, std::move(done) });
}

void ScriptPage::evaluate(const QString& source, Done done)
{
    const ReplSource plan = planReplSource(source, m_compiles);
    begin({ true, QStringLiteral("repl"), plan.script, std::move(done) });
}

void ScriptPage::begin(Work work)
{
    const std::shared_ptr<Frame> frame = m_frame.lock();
    if (!frame) {
        m_later.push_back(std::move(work));
        return;
    }
    if (m_options.timeLimitMs && m_host.overran && !m_check.isActive())
        m_check.start(std::clamp(m_options.timeLimitMs / 4, 20, 1000));
    m_running.emplace(++m_lastTicket, std::move(work.done));
    frame->runScript(m_lastTicket, work.isExpression, work.fileName, work.source);
}

void ScriptPage::finish(int ticket, const Outcome& outcome)
{
    auto node = m_running.extract(ticket);
    if (node.empty())
        return;
    // The document waits for the reply to what has brought the outcome.
    QMetaObject::invokeMethod(
        &m_mailbox, [done = std::move(node.mapped()), outcome] { done(outcome); }, Qt::QueuedConnection);
}

PendingList ScriptPage::pending() const
{
    const std::shared_ptr<Frame> frame = m_frame.lock();
    return frame ? frame->pending() : PendingList();
}

bool ScriptPage::isBusy() const
{
    const std::shared_ptr<Frame> frame = m_frame.lock();
    return frame && frame->isBusy();
}

void ScriptPage::settle(std::function<void(int exitCode)> done)
{
    m_settling.emplace(++m_lastTicket, std::move(done));
    const std::shared_ptr<Frame> frame = m_frame.lock();
    if (frame && frame->isOpen())
        frame->settle(m_lastTicket);
    else
        finishSettling(m_lastTicket, 0);
}

void ScriptPage::finishSettling(int ticket, int exitCode)
{
    auto node = m_settling.extract(ticket);
    if (node.empty())
        return;
    QMetaObject::invokeMethod(
        &m_mailbox, [done = std::move(node.mapped()), exitCode] { done(exitCode); }, Qt::QueuedConnection);
}

void ScriptPage::checkTime()
{
    const std::shared_ptr<Frame> frame = m_frame.lock();
    if (!frame || !frame->isOpen())
        return;
    // It waits for the user, or has not got its script yet.
    if (frame->hasDialog() || (m_isReturning && frame->hasMessages()))
        return m_turn.start();
    if (m_isReturning) {
        m_isReturning = false;
        m_turn.start();
        frame->settle(0);
    } else if (m_turn.hasExpired(m_options.timeLimitMs)) {
        m_check.stop();
        m_host.overran();
    }
}

void ScriptPage::close()
{
    m_settling.clear();
    m_check.stop();
    m_later.clear();
    m_running.clear();
    if (const std::shared_ptr<Frame> frame = m_frame.lock()) {
        frame->setScript({});
        frame->close();
    }
}

} // namespace engine::web
