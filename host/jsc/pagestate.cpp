#include "host/jsc/pagestate.h"

#include "host/jsc/natives.h"

#include <QRegularExpression>

namespace engine::jsc {

namespace {

/// How often signals are heard while script runs.
constexpr int TickMs = 100;

JSValueRef rejectionUnhandled(
    JSContextRef ctx, JSObjectRef, JSObjectRef, std::size_t count, const JSValueRef arguments[], JSValueRef*)
{
    PageState* page = Engine::findPage(ctx);
    if (page && count == 2) {
        const std::shared_ptr<PageState> keep = page->shared_from_this();
        const NativeScope scope(*page);
        page->reportThrown(arguments[1], QStringLiteral("in promise"));
    }
    return JSValueMakeUndefined(ctx);
}

/// As a call of its own, whose ticks go on from one microtask to the next; they begin anew with each otherwise.
JSValueRef callMicrotasks(
    JSContextRef ctx, JSObjectRef, JSObjectRef, std::size_t, const JSValueRef[], JSValueRef*)
{
    const Lock lock(ctx);
    JSRunMicrotasks(JSContextGetGroup(ctx));
    return JSValueMakeUndefined(ctx);
}

} // namespace

PageState::PageState(std::shared_ptr<Engine> engine, PageHost host)
    : m_engine(std::move(engine))
    , m_host(std::move(host))
    , m_core(vexlite::Core::instance())
    , m_group(JSContextGroupCreate())
    , m_ctx(JSGlobalContextCreateInGroup(m_group, nullptr))
    , m_wrappers(*this)
    , m_functions(*this)
    , m_promises(*this)
    , m_timers(std::make_unique<Timers>(*this))
{
}

// Called during a collection, in which the API must not be used.
void PageState::onCollected(JSContextGroupRef, void* page)
{
    auto* self = static_cast<PageState*>(page);
    if (self->m_sweepPosted)
        return;
    self->m_sweepPosted = true;
    QMetaObject::invokeMethod(
        self->m_timers->mailbox(),
        [self] {
            self->m_sweepPosted = false;
            if (self->hasContext())
                self->m_wrappers.sweep();
        },
        Qt::QueuedConnection);
}

PageState::~PageState()
{
    tearDown();
}

void PageState::open(const PageOptions& options)
{
    m_clock.start();
    m_timeLimitMs = options.timeLimitMs;
    if (m_host.interrupted || m_timeLimitMs)
        startTicks();
    if ((m_host.interrupted || m_timeLimitMs) && JSRunMicrotasks) {
        m_runMicrotasks = JSObjectMakeFunctionWithCallback(m_ctx, Text(""), callMicrotasks);
        JSValueProtect(m_ctx, m_runMicrotasks);
    }
    m_env = m_core->openPage(this, options.browser);
    m_engine->addPage(m_ctx, this);
    const Entry entry(*this);
    m_prelude.load(m_ctx, makeNatives(m_ctx));
    JSGlobalContextSetUnhandledRejectionCallback(m_ctx,
        JSObjectMakeFunctionWithCallback(m_ctx, Text("rejectionUnhandled"), rejectionUnhandled), nullptr);
    JSContextGroupAddHeapFinalizer(m_group, onCollected, this);

    const auto list = [&](const QStringList& texts) {
        std::vector<JSValueRef> none(static_cast<std::size_t>(texts.size()), JSValueMakeUndefined(m_ctx));
        JSObjectRef array = JSObjectMakeArray(m_ctx, none.size(), none.data(), nullptr);
        for (int i = 0; i < texts.size(); ++i)
            JSObjectSetPropertyAtIndex(
                m_ctx, array, static_cast<unsigned>(i), makeString(m_ctx, texts[i]), nullptr);
        return array;
    };
    m_prelude.call(m_prelude.makeProcess, nullptr, list(options.arguments));
    m_prelude.call(m_prelude.setColors, nullptr, JSValueMakeBoolean(m_ctx, options.colors),
        JSValueMakeBoolean(m_ctx, options.errorColors));
    m_inputName = options.inputName;
    const JSValueRef root = m_prelude.call(m_prelude.makeRoot, nullptr, list(m_core->objectNames()),
        JSValueMakeBoolean(m_ctx, m_core->checker()));
    m_wrappers.setRoot(asObject(root));
}

// Between two steps of the script: the API must not be used.
bool PageState::onTick(JSContextRef, void* page)
{
    auto* self = static_cast<PageState*>(page);
    self->m_ranMs += TickMs;
    if (self->m_hostGone || self->m_isInterrupted)
        return self->m_isInterrupted;
    const bool overran = self->m_timeLimitMs && self->m_ranMs >= self->m_timeLimitMs;
    self->m_isInterrupted = overran || (self->m_host.interrupted && self->m_host.interrupted());
    if (overran && self->m_host.overran)
        self->post(self->m_host.overran);
    if (!self->m_isInterrupted)
        self->startTicks(); // each limit is for one call
    return self->m_isInterrupted;
}

void PageState::startTicks()
{
    JSContextGroupSetExecutionTimeLimit(m_group, TickMs / 1000.0, onTick, this);
}

void PageState::runMicrotasks()
{
    if (m_runMicrotasks)
        JSObjectCallAsFunction(m_ctx, m_runMicrotasks, nullptr, 0, nullptr, nullptr);
}

QString PageState::callingMember() const
{
    return m_calling ? memberName(m_calling->nativeClass->tag, m_calling->name) : QString();
}

PendingList PageState::pending() const
{
    PendingList list;
    if (m_depth > 0)
        list.push_back({ Pending::Kind::Script, callingMember(), {}, m_turnBegan });
    m_timers->addPending(list);
    m_promises.addPending(list);
    m_functions.addPending(list);
    return list;
}

void PageState::close()
{
    if (m_closing)
        return;
    m_closing = true;
    m_host.play = nullptr;
    if (m_depth == 0)
        return tearDown();
    // Microtasks may be running: those that follow have no effect.
    m_prelude.call(m_prelude.afterThis, nullptr,
        JSObjectMakeFunctionWithCallback(m_ctx, Text("mute"),
            [](JSContextRef ctx, JSObjectRef, JSObjectRef, std::size_t, const JSValueRef[], JSValueRef*) {
                if (PageState* page = Engine::findPage(ctx))
                    page->mute();
                return JSValueMakeUndefined(ctx);
            }));
}

void PageState::leaveOutermost()
{
    if (!m_closing)
        return;
    // Queued: script started by the engine itself may still be on the stack.
    m_muted = true;
    const std::shared_ptr<PageState> self = shared_from_this();
    QMetaObject::invokeMethod(
        m_timers->mailbox(),
        [self] {
            if (self->m_depth == 0)
                self->tearDown();
        },
        Qt::QueuedConnection);
}

void PageState::tearDown()
{
    if (!m_ctx)
        return;
    const std::shared_ptr<PageState> self = weak_from_this().lock();
    const JSGlobalContextRef ctx = m_ctx;
    m_closing = m_muted = true;
    m_tickets.clear();
    m_timers->stop();
    if (vexlite::Core::instance())
        vexlite::Core::instance()->closePage(m_env);
    m_functions.clear();
    m_promises.clear();
    m_wrappers.clear();
    m_shapes.clear(ctx);
    m_keyNames.clear(ctx);
    m_engine->removePage(ctx, this);
    if (m_runMicrotasks)
        JSValueUnprotect(ctx, m_runMicrotasks);
    if (m_prelude.keys)
        m_prelude.unload();
    m_ctx = nullptr;
    JSContextGroupRemoveHeapFinalizer(m_group, onCollected, this);
    JSContextGroupClearExecutionTimeLimit(m_group);
    JSGlobalContextRelease(ctx);
    JSContextGroupRelease(m_group);
}

void PageState::print(const QString& line, bool isError)
{
    if (isLive() && !m_hostGone && m_host.console)
        m_host.console(line, isError);
}

void PageState::exitWith(int code)
{
    if (!isLive() || m_closing)
        return;
    if (!m_hostGone && m_host.exitRequested)
        m_host.exitRequested(code);
    close();
}

QString PageState::play(const QString& steps)
{
    if (!isLive() || m_closing || m_hostGone)
        return {};
    return m_host.play ? m_host.play(steps) : QStringLiteral("this page has nothing to play");
}

void PageState::reportThrown(JSValueRef error, const QString& where)
{
    if (isLive())
        reportUncaught(m_prelude.describe(error, where));
}

void PageState::reportUncaught(const ErrorFacts& facts)
{
    if (!isLive() || m_hostGone || m_isInterrupted || !m_host.uncaughtError)
        return;
    Outcome outcome;
    outcome.text = facts.text;
    outcome.stack = facts.stack;
    outcome.code = facts.code;
    outcome.hasCode = facts.hasCode;
    outcome.report = facts.report;
    m_host.uncaughtError(outcome);
}

void PageState::post(std::function<void()> work)
{
    QMetaObject::invokeMethod(
        m_timers->mailbox(),
        [self = shared_from_this(), work = std::move(work)] {
            if (self->isLive() && !self->m_hostGone)
                work();
        },
        Qt::QueuedConnection);
}

int PageState::addTicket(Page::Done done)
{
    m_tickets.emplace(++m_lastTicket, std::move(done));
    return m_lastTicket;
}

void PageState::finish(int ticket, const Outcome& outcome)
{
    const auto found = m_tickets.find(ticket);
    if (found == m_tickets.end() || !isLive())
        return;
    const Page::Done done = std::move(found->second);
    m_tickets.erase(found);
    if (!done || m_isInterrupted || m_closing)
        return;
    if (outcome.ok || m_hostGone || !m_host.scriptFailed)
        return post([done, outcome] { done(outcome); });
    m_host.scriptFailed(outcome);
    close();
    mute();
}

QString PageState::callingPlace()
{
    // The first frame: "    at name (file:line:column)", or without a name.
    static const QRegularExpression place(
        QStringLiteral("^ *at (?:.* \\()?(.+:\\d+:\\d+)\\)?$"), QRegularExpression::MultilineOption);
    return place.match(m_prelude.describe(m_prelude.makeError(1, {}), {}).stack).captured(1);
}

QString PageState::findRead(const QString& request)
{
    if (!m_parser) {
        m_parser = std::make_unique<ToolScript>();
        m_parser->loadParser();
    }
    const QByteArray json = m_parser->call("findRead", request); // a string
    return QString::fromUtf8(json.mid(1, json.size() - 2));
}

bool PageState::createPromise(std::int64_t promise)
{
    const Entry entry(*this);
    return entry && m_promises.create(promise);
}

void PageState::settlePromise(std::int64_t promise, JSPromiseState state, const KJSVariant& value)
{
    if (const Entry entry(*this); entry)
        m_promises.settle(promise, state, value);
}

void PageState::releasePromise(std::int64_t promise)
{
    if (hasContext())
        m_promises.release(promise);
}

Entry::Entry(PageState& page)
{
    if (!page.hasContext() || (page.m_depth == 0 && !page.isLive()))
        return;
    m_page = page.shared_from_this();
    m_entered = true;
    if (page.m_depth == 0) {
        page.m_turnBegan = Pending::Clock::now();
        page.m_ranMs = 0;
        page.m_isInterrupted = false;
    }
    ++page.m_depth;
    page.engine().enter();
    JSLock(page.ctx());
}

Entry::~Entry()
{
    if (!m_entered)
        return;
    PageState& page = *m_page;
    const bool isLast = page.m_depth == 1;
    if (isLast && page.m_closing)
        page.mute();
    if (isLast)
        page.runMicrotasks();
    JSUnlock(page.ctx());
    page.engine().leave();
    if (--page.m_depth)
        return;
    if (page.m_closing)
        page.tearDown();
}

} // namespace engine::jsc
