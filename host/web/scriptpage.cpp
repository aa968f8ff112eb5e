#include "host/web/scriptpage.h"

#include "host/web/propertynames.h"

#include <QFileInfo>
#include <QPointer>
#include <QUrl>
#include <QVariant>

namespace engine::web {

ScriptPage::ScriptPage(PageOptions options, PageHost host, Gone gone)
    : m_options(std::move(options))
    , m_host(std::move(host))
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
    FrameScript script { m_host, m_options.arguments, m_options.colors, m_options.errorColors, {}, {}, {} };
    script.host.uncaughtError = [this](const Outcome& error) {
        // That nothing could be declared is said by declare(), which knows why.
        if (!m_isDeclaring)
            m_host.uncaughtError(error);
    };
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
    begin({ ScriptKind::Body, fileName, { body }, std::move(done) });
}

bool ScriptPage::importModule(const QString& fileName, const QString& source, Done done)
{
    const QString path = QString::fromLatin1(QUrl::toPercentEncoding(QFileInfo(fileName).fileName()));
    PageScript script { source };
    script.name = fileName;
    begin({ ScriptKind::Module, QLatin1String(ScriptOrigin) + QLatin1Char('/') + path, script,
        std::move(done) });
    return true;
}

void ScriptPage::evaluate(const PageScript& script, Done done)
{
    const ScriptKind kind = script.isKept ? ScriptKind::Kept : ScriptKind::Expression;
    const QString name = m_options.inputName + QString::number(++m_inputs);
    begin({ kind, name, script, std::move(done) });
}

// Only a script of the document itself declares for all later ones.
void ScriptPage::declare(Work work)
{
    const QString source = std::exchange(work.script.declarations, {})
        + QStringLiteral("\n;true\n//# sourceURL=%1/functions").arg(work.fileName);
    m_isDeclaring = true;
    m_world(source, [this, alive = QPointer<QObject>(&m_mailbox), work](const QVariant& value) {
        if (!alive)
            return;
        m_isDeclaring = false;
        if (value.toBool())
            return begin(work);
        Outcome failed;
        failed.isDeclared = false;
        failed.text =
            QStringLiteral("SyntaxError: the page has one of these names, which can not be declared again");
        failed.report = QStringLiteral("Uncaught ") + failed.text;
        if (const auto scriptFailed = m_host.scriptFailed)
            scriptFailed(failed);
        else
            work.done(failed);
    });
}

void ScriptPage::propertyNames(const QStringList& path, std::function<void(const QStringList& names)> found)
{
    if (!m_world)
        return found({});
    m_world(propertyNamesSource(path),
        [alive = QPointer<QObject>(&m_mailbox), found = std::move(found)](const QVariant& names) {
            if (alive)
                found(names.toStringList());
        });
}

void ScriptPage::begin(Work work)
{
    const std::shared_ptr<Frame> frame = m_frame.lock();
    if (!frame) {
        m_later.push_back(std::move(work));
        return;
    }
    if (!work.script.declarations.isEmpty())
        return declare(std::move(work));
    if (m_options.timeLimitMs && m_host.overran && !m_check.isActive())
        m_check.start(std::clamp(m_options.timeLimitMs / 4, 20, 1000));
    m_running.emplace(++m_lastTicket, std::move(work.done));
    frame->runScript(m_lastTicket, work.kind, work.fileName, work.script);
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
