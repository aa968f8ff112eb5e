#include "host/web/scriptpage.h"

#include "host/web/propertynames.h"

#include <QPointer>
#include <QVariant>

namespace engine::web {

ScriptPage::ScriptPage(PageOptions options, PageHost host, Gone gone)
    : m_options(std::move(options))
    , m_host(std::move(host))
    , m_gone(std::move(gone))
{
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
    FrameScript script { m_host, m_options.arguments, {}, {} };
    script.host.uncaughtError = [this](const Outcome& error) {
        // Why nothing can be declared is not for the page to see: its error event has none.
        if (!m_isDeclaring || error.text != QLatin1String("null"))
            m_host.uncaughtError(error);
    };
    script.finished = [this](int ticket, const Outcome& outcome) { finish(ticket, outcome); };
    script.closed = [this] {
        Outcome gone;
        gone.text = QStringLiteral("the page has gone");
        while (!m_running.empty())
            finish(m_running.begin()->first, gone);
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
    begin({ Frame::ScriptForm::Body, fileName, body, std::move(done), {} });
}

void ScriptPage::evaluate(const PageScript& script, Done done)
{
    const auto form = script.isKept ? Frame::ScriptForm::KeptExpression : Frame::ScriptForm::Expression;
    begin({ form, QStringLiteral("repl"), script.source, std::move(done), script.declarations });
}

// Only a script of the document itself declares for all later ones.
void ScriptPage::declare(Work work)
{
    const QString source = std::exchange(work.declarations, {}) + QStringLiteral("\n;true");
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
    if (!work.declarations.isEmpty())
        return declare(std::move(work));
    m_running.emplace(++m_lastTicket, std::move(work.done));
    frame->runScript(m_lastTicket, work.form, work.fileName, work.source);
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

void ScriptPage::close()
{
    m_later.clear();
    m_running.clear();
    if (const std::shared_ptr<Frame> frame = m_frame.lock()) {
        frame->setScript({});
        frame->close();
    }
}

} // namespace engine::web
