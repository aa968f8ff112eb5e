#include "host/web/frame.h"

#include "host/vexlite/scriptvalues.h"
#include "host/vexlite/valuetext.h"
#include "host/web/dialogmembers.h"
#include "host/web/fromwire.h"
#include "host/web/towire.h"

namespace engine::web {

namespace {

QString hex(KResult code)
{
    return QStringLiteral("0x%1").arg(code, 8, 16, QLatin1Char('0'));
}

/// Says what is being called, while it lives.
class Calling {
public:
    Calling(Caller& current, const Caller& caller)
        : m_current(current)
        , m_outer(std::exchange(current, caller))
    {
    }
    ~Calling() { m_current = m_outer; }
    Calling(const Calling&) = delete;
    Calling& operator=(const Calling&) = delete;

private:
    Caller& m_current;
    Caller m_outer;
};

/// The line of script that a request comes from; empty where it does not say it.
QString placeOf(WireReader& reader)
{
    constexpr int LongestPlace = 300;
    return reader.atEnd() ? QString() : vexlite::withoutControls(reader.text().toString().left(LongestPlace));
}

QString closedReply()
{
    WireWriter reply(QStringLiteral("c"));
    reply.endReply({}, {});
    return reply.take();
}

} // namespace

Frame::Frame(QString name, QString origin, bool isTop, OriginRights rights, Host host)
    : m_name(std::move(name))
    , m_origin(std::move(origin))
    , m_isTop(isTop)
    , m_host(std::move(host))
    , m_handles(std::move(rights))
{
}

Frame::~Frame()
{
    close();
}

void Frame::open(const vexlite::BrowserFacts& browser)
{
    m_isOpen = true;
    m_context = vexlite::Core::instance()->openPage(this, browser);
}

void Frame::close()
{
    if (!std::exchange(m_isOpen, false))
        return;
    vexlite::Core* core = vexlite::Core::instance();
    if (core)
        core->closePage(m_context);
    for (FrameFunction* function : m_functions)
        function->forgetFrame();
    if (core)
        core->addLiveFunctions(-static_cast<int>(m_functions.size()));
    m_functions.clear();
    m_promises.clear();
    m_messages = {};
    m_later = {};
    m_script.host = {};
    // A call that is being performed is still on the stack.
    for (auto waiting = m_waiting.begin(); waiting != m_waiting.end();)
        waiting = waiting->second.isDone ? m_waiting.erase(waiting) : std::next(waiting);
    m_handles.clear();
    if (const auto report = std::exchange(m_script.closed, nullptr))
        report();
}

void Frame::setScript(FrameScript script)
{
    m_isScript = true;
    m_script = std::move(script);
}

void Frame::runScript(int ticket, ScriptKind kind, const QString& fileName, const PageScript& script)
{
    WireWriter message;
    message.unit('v');
    message.count(static_cast<std::uint64_t>(ticket));
    message.unit(static_cast<char>(kind));
    message.text(fileName);
    message.text(script.source);
    message.text(script.typed);
    message.text(script.pieces);
    message.text(script.name);
    queue(message.take());
}

void Frame::settle(int ticket)
{
    WireWriter message;
    message.unit('q');
    message.count(static_cast<std::uint64_t>(ticket));
    queue(message.take());
}

bool Frame::hasDialog() const
{
    return std::any_of(
        m_waiting.begin(), m_waiting.end(), [](const auto& one) { return !one.second.isDone; });
}

bool Frame::isBusy() const
{
    return m_script.timers || hasDialog() || m_promises.anyPending();
}

PendingList Frame::pending() const
{
    PendingList list;
    for (const auto& [ticket, call] : m_waiting) {
        if (!call.isDone)
            list.push_back(
                { Pending::Kind::Script, call.caller.tag.section(QLatin1Char('.'), 1), {}, call.since });
    }
    if (m_script.timers)
        list.push_back({ Pending::Kind::Timer, {}, {}, {}, m_script.timers });
    m_promises.addPending(list);
    for (const FrameFunction* function : m_functions)
        list.push_back(function->pending());
    return list;
}

void Frame::queue(const QString& message)
{
    if (!m_isOpen)
        return;
    m_messages.add(message);
    wake();
}

void Frame::queueLater(const QString& message)
{
    if (m_isOpen)
        m_later.add(message);
}

void Frame::wake()
{
    if (m_isReplying || std::exchange(m_isWoken, true))
        return;
    m_host.wake();
}

QString Frame::withMessages(QString answer)
{
    WireWriter reply(std::move(answer));
    reply.endReply(m_handles.takeNewClasses(), m_messages);
    m_messages = std::exchange(m_later, {});
    m_isWoken = false;
    return reply.take();
}

QString Frame::greeting()
{
    // Without what is queued: the document is not ready for it.
    WireWriter greeting;
    greeting.unit('k');
    greeting.word(m_name);
    greeting.unit(m_isScript ? 's' : 'p');
    greeting.unit(vexlite::Core::instance()->checker() ? 'n' : '-');
    const QStringList names = vexlite::Core::instance()->objectNames();
    greeting.count(static_cast<std::uint64_t>(names.size()));
    for (const QString& name : names)
        greeting.text(name);
    if (m_isScript) {
        greeting.count(static_cast<std::uint64_t>(m_script.arguments.size()));
        for (const QString& argument : m_script.arguments)
            greeting.text(argument);
        greeting.unit(m_script.colors ? 't' : 'f');
        greeting.unit(m_script.errorColors ? 't' : 'f');
    }
    greeting.endReply({}, {});
    return greeting.take();
}

QString Frame::reply(char request, WireReader& reader)
{
    const std::shared_ptr<Frame> keep = shared_from_this();
    if (!m_isOpen)
        return closedReply();
    const bool wasReplying = std::exchange(m_isReplying, true);
    QString answer;
    switch (request) {
    case 'B':
        answer = bindRoot(reader);
        break;
    case 'C':
        answer = callMember(reader);
        break;
    case 'T':
        answer = collectWaiting(reader);
        break;
    case 'E':
        answer = scriptRequest(reader);
        break;
    case 'R':
        while (!reader.atEnd()) {
            const std::int64_t handle = reader.count();
            m_handles.release(handle, reader.count());
        }
        break;
    case 'N':
        answer = checkName(reader);
        break;
    case 'P':
        break;
    default:
        m_isReplying = wasReplying;
        return closedReply();
    }
    m_isReplying = wasReplying;
    return m_isOpen ? withMessages(std::move(answer)) : closedReply();
}

QString Frame::failure(int code, const QString& message)
{
    WireWriter answer;
    answer.unit('t');
    ToWire(*this, QString()).write(answer, vexlite::makeFailure(code, message).raw());
    return answer.take();
}

QString Frame::typeError(const QString& message) const
{
    WireWriter answer;
    answer.unit('y');
    answer.text(message);
    return answer.take();
}

QString Frame::bindRoot(WireReader& reader)
{
    QString name;
    while (!reader.atEnd())
        name += QLatin1Char(reader.unit());
    const QString tag = QStringLiteral("NovaExtension.") + name;
    WireWriter answer;
    answer.unit('r');
    const auto root = m_roots.find(name);
    if (root != m_roots.end() && m_handles.writeAgain(answer, root->second))
        return answer.take();
    vexlite::BoundObject bound = vexlite::Core::instance()->bindObject(m_context, name);
    if (bound.status != KR_OK || !bound.object || !bound.members)
        return failure(OperationFailed,
            QStringLiteral("%1 can not be bound: %2")
                .arg(tag, hex(bound.status ? bound.status : KR_NOT_AVAILABLE)));
    m_roots[name] = m_handles.write(answer, std::move(bound), tag);
    return answer.take();
}

QString Frame::callMember(WireReader& reader)
{
    const Handle* handle = m_handles.find(reader.count());
    const auto id = static_cast<std::int32_t>(reader.count());
    const std::int64_t count = reader.count();
    constexpr std::int64_t MaximumArguments = 255;
    if (reader.failed() || !handle || count > MaximumArguments)
        return typeError(QStringLiteral("Illegal invocation"));
    const auto member = handle->nativeClass->members.find(id);
    if (member == handle->nativeClass->members.end())
        return typeError(QStringLiteral("Illegal invocation"));
    const auto& [access, name] = member->second;
    WaitingCall call;
    call.object = handle->object;
    call.member = id;
    call.arguments.resize(static_cast<std::size_t>(count));
    call.caller.tag = handle->nativeClass->tag + QLatin1Char('.') + name;
    const Calling calling(m_calling, call.caller);
    FromWire fromWire(*this, reader);
    for (KJSVariant& argument : call.arguments) {
        if (!fromWire.read(argument))
            return failure(1, QStringLiteral("the arguments can not be read"));
    }
    m_calling.place = call.caller.place = placeOf(reader);
    if (showsDialog(call.caller.tag) && access == JSAccess::Method) {
        if (m_waiting.size() >= maximumWaiting)
            return failure(OperationFailed, QStringLiteral("too many dialogs"));
        const int ticket = ++m_lastTicket;
        m_waiting.emplace(ticket, std::move(call));
        m_host.waits(ticket);
        WireWriter answer;
        answer.unit('w');
        answer.word(QString::number(ticket));
        return answer.take();
    }
    JSApiArguments view { call.arguments.data(), call.arguments.size() };
    vexlite::Core::instance()->call(
        call.object.get(), m_context, id, access, view, call.result, call.exception);
    return answerOf(call.result, call.exception, access == JSAccess::Method, call.caller.tag);
}

bool Frame::isWaiting(int ticket) const
{
    const auto found = m_waiting.find(ticket);
    return found != m_waiting.end() && !found->second.isDone;
}

void Frame::performWaiting(int ticket)
{
    const std::shared_ptr<Frame> keep = shared_from_this();
    const auto found = m_waiting.find(ticket);
    if (!m_isOpen || found == m_waiting.end())
        return;
    WaitingCall& call = found->second;
    if (call.isAbandoned) {
        m_waiting.erase(found);
        return;
    }
    const Calling calling(m_calling, call.caller);
    JSApiArguments view { call.arguments.data(), call.arguments.size() };
    vexlite::Core::instance()->call(
        call.object.get(), m_context, call.member, JSAccess::Method, view, call.result, call.exception);
    call.isDone = true;
    if (!m_isOpen || call.isAbandoned)
        m_waiting.erase(ticket);
}

QString Frame::collectWaiting(WireReader& reader)
{
    const auto found = m_waiting.find(static_cast<int>(reader.word().toString().toInt()));
    if (found == m_waiting.end() || !found->second.isDone) {
        // The page's wait was ended from outside, or is not allowed.
        if (found != m_waiting.end())
            found->second.isAbandoned = true;
        return failure(OperationFailed, QStringLiteral("the dialog has not ended"));
    }
    const WaitingCall call = std::move(found->second);
    m_waiting.erase(found);
    return answerOf(call.result, call.exception, true, call.caller.tag);
}

QString Frame::answerOf(
    const KJSVariant& result, const KJSVariant& exception, bool isMethod, const QString& tag)
{
    if (!m_isOpen)
        return {};
    WireWriter answer;
    ToWire toWire(*this, tag);
    const bool isThrown = !exception.isEmpty();
    answer.unit(isThrown ? 't' : 'r');
    const MVARIANT& value = isThrown ? exception.raw() : result.raw();
    if (isMethod && !isThrown ? toWire.writeResult(answer, value) : toWire.write(answer, value))
        return answer.take();
    return failure(OperationFailed, toWire.problem());
}

QString Frame::checkName(WireReader& reader)
{
    const QString object = reader.text().toString();
    const QString name = reader.text().toString();
    const Calling calling(m_calling, { {}, placeOf(reader) });
    vexlite::PageChecker* checker = vexlite::Core::instance()->checker();
    const QString refusal =
        checker && !reader.failed() ? checker->checkName(m_context, object, name) : QString();
    WireWriter answer(QStringLiteral("r"));
    if (refusal.isNull())
        answer.unit('u');
    else
        ToWire(*this, QString()).write(answer, vexlite::makeText(refusal).raw());
    return answer.take();
}

QString Frame::scriptRequest(WireReader& reader)
{
    if (!m_isScript)
        return {};
    const QString fault = m_script.report(reader, [this] {
        m_script.closed = nullptr;
        close();
    });
    return fault.isEmpty() ? QString() : failure(1, fault);
}

void Frame::addFunction(FrameFunction& function)
{
    m_functions.insert(&function);
    vexlite::Core::instance()->addLiveFunctions(1);
}

void Frame::removeFunction(FrameFunction& function)
{
    m_functions.erase(&function);
    if (vexlite::Core* core = vexlite::Core::instance())
        core->addLiveFunctions(-1);
    WireWriter message;
    message.unit('d');
    message.count(static_cast<std::uint64_t>(function.id()));
    message.count(1);
    queueLater(message.take());
}

bool Frame::createPromise(std::int64_t promise)
{
    return m_isOpen && m_promises.create(promise, callingMember());
}

} // namespace engine::web
