#include "host/web/frame.h"

#include "host/web/dialogmembers.h"
#include "host/web/fromwire.h"
#include "host/web/towire.h"

namespace engine::web {

namespace {

constexpr int OperationFailed = 3;

QString hex(KResult code)
{
    return QStringLiteral("0x%1").arg(code, 8, 16, QLatin1Char('0'));
}

/// A reply without classes and messages.
QString withNothing(QString answer)
{
    const int place = answer.size();
    WireWriter reply(std::move(answer));
    reply.count(0);
    reply.count(0);
    reply.end(place);
    return reply.take();
}

} // namespace

FrameFunction::FrameFunction(Frame& frame, std::int64_t id)
    : m_frame(&frame)
    , m_id(id)
    , m_context(frame.context())
{
}

FrameFunction::~FrameFunction()
{
    if (m_frame)
        m_frame->forgetFunction(this);
}

KResult FrameFunction::Call(const JSApiArguments& arguments, KJSVariant* result)
{
    if (result)
        *result = {};
    if (!m_frame)
        return KR_NOT_AVAILABLE;
    if (static_cast<std::size_t>(m_frame->m_messages.size()) > Frame::maximumQueuedUnits)
        return KR_REJECTED;
    WireWriter message;
    message.unit('f');
    message.count(static_cast<std::uint64_t>(m_id));
    message.count(arguments.size());
    ToWire toWire(*m_frame, QStringLiteral("NovaExtension"));
    for (const KJSVariant& argument : arguments) {
        if (!toWire.write(message, argument.raw()))
            return KR_REJECTED;
    }
    m_frame->queue(message.take());
    return KR_OK;
}

Frame::Frame(QString name, QString origin, bool isTop, OriginRights rights, Host host)
    : m_name(std::move(name))
    , m_origin(std::move(origin))
    , m_isTop(isTop)
    , m_rights(std::move(rights))
    , m_host(std::move(host))
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
        function->m_frame = nullptr;
    const auto handles = std::exchange(m_handles, {});
    if (core) {
        core->addLiveFunctions(-static_cast<int>(m_functions.size()));
        core->addLiveObjects(-static_cast<int>(handles.size()));
    }
    m_functions.clear();
    m_handleIds.clear();
    m_promises.clear();
    m_messages.clear();
    m_later.clear();
    m_newClasses.clear();
    m_messageCount = m_laterCount = m_newClassCount = 0;
    m_script = {};
    // A call that is being performed is still on the stack.
    for (auto waiting = m_waiting.begin(); waiting != m_waiting.end();)
        waiting = waiting->second.isDone ? m_waiting.erase(waiting) : std::next(waiting);
    if (const auto report = std::exchange(closed, nullptr))
        report();
}

void Frame::setScript(PageHost host, const QStringList& arguments)
{
    m_isScript = true;
    m_script = std::move(host);
    m_arguments = arguments;
}

void Frame::runScript(int ticket, bool isExpression, const QString& fileName, const QString& source)
{
    WireWriter message;
    message.unit('v');
    message.count(static_cast<std::uint64_t>(ticket));
    message.unit(isExpression ? 'e' : 'b');
    message.text(fileName);
    message.text(source);
    queue(message.take());
}

void Frame::queue(const QString& message)
{
    if (!m_isOpen)
        return;
    m_messages += message;
    ++m_messageCount;
    wake();
}

// For what need not come soon, and must not come before the answer of a call under way: it may still name what goes.
void Frame::queueLater(const QString& message)
{
    if (!m_isOpen)
        return;
    m_later += message;
    ++m_laterCount;
}

void Frame::wake()
{
    if (m_isReplying || std::exchange(m_isWoken, true))
        return;
    m_host.wake();
}

QString Frame::closedReply() const
{
    return withNothing(QStringLiteral("c"));
}

QString Frame::withMessages(QString answer)
{
    const int place = answer.size();
    WireWriter reply(std::move(answer));
    reply.count(static_cast<std::uint64_t>(std::exchange(m_newClassCount, 0)));
    reply.append(std::exchange(m_newClasses, {}));
    reply.count(static_cast<std::uint64_t>(std::exchange(m_messageCount, 0)));
    reply.append(std::exchange(m_messages, {}));
    reply.end(place);
    m_messages = std::exchange(m_later, {});
    m_messageCount = std::exchange(m_laterCount, 0);
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
    const QStringList names = vexlite::Core::instance()->objectNames();
    greeting.count(static_cast<std::uint64_t>(names.size()));
    for (const QString& name : names)
        greeting.text(name);
    if (m_isScript) {
        greeting.count(static_cast<std::uint64_t>(m_arguments.size()));
        for (const QString& argument : m_arguments)
            greeting.text(argument);
    }
    return withNothing(greeting.take());
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
            releaseHandle(handle, reader.count());
        }
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
    std::int64_t id = m_rootHandles.count(name) ? m_rootHandles[name] : 0;
    if (!id) {
        vexlite::BoundObject bound = vexlite::Core::instance()->bindObject(m_context, name);
        const KResult status = bound.status;
        if (status == KR_OK && bound.object && bound.members)
            id = share(std::move(bound), tag);
        if (!id)
            return failure(OperationFailed,
                QStringLiteral("%1 can not be bound: %2").arg(tag, hex(status ? status : KR_NOT_AVAILABLE)));
        m_rootHandles[name] = id;
    } else {
        ++m_handles[id].sent;
    }
    WireWriter answer;
    answer.unit('r');
    answer.unit('h');
    answer.count(static_cast<std::uint64_t>(id));
    answer.count(static_cast<std::uint64_t>(m_handles[id].nativeClass->id));
    return answer.take();
}

QString Frame::callMember(WireReader& reader)
{
    const auto handle = m_handles.find(reader.count());
    const auto id = static_cast<std::int32_t>(reader.count());
    const std::int64_t count = reader.count();
    constexpr std::int64_t MaximumArguments = 255;
    if (reader.failed() || handle == m_handles.end() || count > MaximumArguments)
        return typeError(QStringLiteral("Illegal invocation"));
    const auto member = handle->second.nativeClass->members.find(id);
    if (member == handle->second.nativeClass->members.end())
        return typeError(QStringLiteral("Illegal invocation"));
    const auto& [access, name] = member->second;
    WaitingCall call;
    call.object = handle->second.object;
    call.member = id;
    call.arguments.resize(static_cast<std::size_t>(count));
    call.tag = handle->second.nativeClass->tag + QLatin1Char('.') + name;
    FromWire fromWire(*this, reader);
    for (KJSVariant& argument : call.arguments) {
        if (!fromWire.read(argument))
            return failure(1, QStringLiteral("the arguments can not be read"));
    }
    if (showsDialog(call.tag) && access == JSAccess::Method) {
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
    return answerOf(call.result, call.exception, access == JSAccess::Method, call.tag);
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
    return answerOf(call.result, call.exception, true, call.tag);
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

QString Frame::scriptRequest(WireReader& reader)
{
    if (!m_isScript)
        return {};
    const auto optionalCode = [&](Outcome& outcome) {
        const QString code = reader.text().toString();
        outcome.hasCode = !code.isEmpty();
        outcome.code = code.toInt();
    };
    QString answer;
    while (!reader.atEnd()) {
        switch (reader.unit()) {
        case 'p': {
            const bool isError = !reader.text().isEmpty();
            const QString line = reader.text().toString();
            if (m_script.console)
                m_script.console(line, isError);
            break;
        }
        case 'x': {
            const int code = reader.text().toString().toInt();
            const auto exitRequested = m_script.exitRequested;
            closed = nullptr;
            close();
            if (exitRequested)
                exitRequested(code);
            break;
        }
        case 'u': {
            Outcome outcome;
            outcome.text = reader.text().toString();
            outcome.stack = reader.text().toString();
            optionalCode(outcome);
            if (m_script.uncaughtError)
                m_script.uncaughtError(outcome);
            break;
        }
        case 'f': {
            const int ticket = reader.text().toString().toInt();
            Outcome outcome;
            outcome.ok = !reader.text().isEmpty();
            outcome.text = reader.text().toString();
            outcome.json = reader.text().toString();
            outcome.stack = reader.text().toString();
            optionalCode(outcome);
            if (finished)
                finished(ticket, outcome);
            break;
        }
        case 's': {
            const QString steps = reader.text().toString();
            const QString fault =
                m_script.play ? m_script.play(steps) : QStringLiteral("this page has nothing to play");
            answer = fault.isEmpty() ? QString() : failure(1, fault);
            break;
        }
        default:
            return answer;
        }
    }
    return answer;
}

std::int64_t Frame::share(IJSExtentionObject* object, const QString& name, KResult& status)
{
    if (const auto known = m_handleIds.find(object); known != m_handleIds.end()) {
        ++m_handles[known->second].sent;
        return known->second;
    }
    if (!m_isOpen)
        return 0;
    vexlite::BoundObject bound = vexlite::Core::instance()->bindSubObject(m_context, object);
    status = bound.status;
    if (status != KR_OK || !bound.object || !bound.members)
        return 0;
    const QString known = bound.name;
    return share(std::move(bound), known.isEmpty() ? name : known);
}

std::int64_t Frame::share(vexlite::BoundObject bound, const QString& name)
{
    IJSExtentionObject* object = bound.object.get();
    if (const auto known = m_handleIds.find(object); known != m_handleIds.end()) {
        ++m_handles[known->second].sent;
        return known->second;
    }
    const NativeClass& nativeClass = classOf(object, *bound.members.get(), name);
    const std::int64_t id = ++m_lastHandle;
    m_handles.emplace(id, Handle { std::move(bound.object), &nativeClass, 1 });
    m_handleIds.emplace(object, id);
    vexlite::Core::instance()->addLiveObjects(1);
    return id;
}

const Frame::NativeClass& Frame::classOf(
    IJSExtentionObject* object, IJSMemberList& members, const QString& tag)
{
    auto made = std::make_unique<NativeClass>();
    made->id = static_cast<int>(m_classes.size());
    made->typeId = object->GetTypeId();
    made->tag = tag;
    WireWriter text;
    int count = 0;
    for (std::int32_t i = 0; i < members.Count(); ++i) {
        const QString name = QString::fromUtf16(members.Name(i));
        if (!m_rights.allows(tag, name, members.Mask(i)))
            continue;
        const JSAccess access = members.Kind(i) == 0 ? JSAccess::Method : JSAccess::PropertyGet;
        made->members.emplace(members.Id(i), std::pair(access, name));
        text.unit(access == JSAccess::Method ? 'm' : 'g');
        text.count(static_cast<std::uint64_t>(members.Id(i)));
        text.text(name);
        ++count;
    }
    for (const auto& known : m_classes) {
        if (known->typeId == made->typeId && known->members == made->members)
            return *known;
    }
    WireWriter whole;
    whole.count(static_cast<std::uint64_t>(made->id));
    whole.text(tag);
    whole.count(static_cast<std::uint64_t>(count));
    whole.append(text.written());
    m_newClasses += whole.written();
    ++m_newClassCount;
    m_classes.push_back(std::move(made));
    return *m_classes.back();
}

// The document has dropped what it had got `sent` times. It may have got the object again meanwhile.
void Frame::releaseHandle(std::int64_t id, std::int64_t sent)
{
    const auto found = m_handles.find(id);
    if (found == m_handles.end() || (found->second.sent -= sent) > 0)
        return;
    const Handle dropped = std::move(found->second);
    m_handles.erase(found);
    m_handleIds.erase(dropped.object.get());
    std::erase_if(m_rootHandles, [id](const auto& root) { return root.second == id; });
    vexlite::Core::instance()->addLiveObjects(-1);
}

FrameFunction* Frame::keepFunction(std::int64_t id)
{
    auto* kept = new FrameFunction(*this, id);
    m_functions.insert(kept);
    vexlite::Core::instance()->addLiveFunctions(1);
    return kept;
}

void Frame::forgetFunction(FrameFunction* function)
{
    if (!m_functions.erase(function))
        return;
    if (vexlite::Core* core = vexlite::Core::instance())
        core->addLiveFunctions(-1);
    WireWriter message;
    message.unit('d');
    message.count(static_cast<std::uint64_t>(function->m_id));
    message.count(1);
    queueLater(message.take());
}

bool Frame::createPromise(std::int64_t promise)
{
    return m_isOpen && m_promises.try_emplace(promise).second;
}

void Frame::settlePromise(std::int64_t promise, JSPromiseState state, const KJSVariant& value)
{
    const auto found = m_promises.find(promise);
    if (found == m_promises.end() || std::exchange(found->second.isSettled, true))
        return;
    if (found->second.isReleased)
        m_promises.erase(found);
    const bool resolves = state == JSPromiseState::Resolved;
    const auto begin = [promise](WireWriter& message, bool isResolved) {
        message.unit('s');
        message.count(static_cast<std::uint64_t>(promise));
        message.unit(isResolved ? 'r' : 'e');
    };
    WireWriter message;
    begin(message, resolves);
    ToWire toWire(*this, QStringLiteral("NovaExtension"));
    if (!toWire.write(message, value.raw())) {
        message.take();
        begin(message, false);
        ToWire(*this, QString())
            .write(message, vexlite::makeFailure(OperationFailed, toWire.problem()).raw());
    }
    queue(message.take());
}

void Frame::releasePromise(std::int64_t promise)
{
    const auto found = m_promises.find(promise);
    if (found == m_promises.end())
        return;
    found->second.isReleased = true;
    if (found->second.isSettled)
        m_promises.erase(found);
    WireWriter message;
    message.unit('p');
    message.count(static_cast<std::uint64_t>(promise));
    queueLater(message.take());
}

} // namespace engine::web
