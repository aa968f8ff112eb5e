// PageState: one page's script context and all that belongs to it. It outlives the host's Page while a call
// of the page is on the stack.
#pragma once

#include "host/jsc/engine.h"
#include "host/jsc/keynames.h"
#include "host/jsc/prelude.h"
#include "host/jsc/promises.h"
#include "host/jsc/scriptfunction.h"
#include "host/jsc/shapes.h"
#include "host/jsc/timers.h"
#include "host/jsc/toolscript.h"
#include "host/jsc/wrappers.h"

#include <QElapsedTimer>
#include <memory>
#include <unordered_map>

namespace engine::jsc {

/// [GUI thread] States: open, closing (close() was called while script of the page runs), closed.
class PageState final : public vexlite::ScriptPage, public std::enable_shared_from_this<PageState> {
public:
    /// Makes the context; open() does the rest.
    PageState(std::shared_ptr<Engine> engine, PageHost host);
    ~PageState() override;
    /// Adds the page to the core and sets up its global object.
    void open(const PageOptions& options);

    /// Closes now, or when the outermost call of the page has returned.
    void close();
    /// The host is gone; its callbacks are not called any more.
    void forgetHost() { m_hostGone = true; }
    /// False after mute().
    bool isLive() const { return !m_muted; }
    /// False when the context was released.
    bool hasContext() const { return m_ctx; }
    /// Stops all effects of the page, before the microtasks of its last call run.
    void mute() { m_muted = true; }

    Engine& engine() const { return *m_engine; }
    /// The page must be open.
    vexlite::Core& core() const { return *m_core; }
    JSContextGroupRef group() const { return m_group; }
    JSGlobalContextRef ctx() const { return m_ctx; }
    const JSContextEnv& env() const { return m_env; }
    const Prelude& prelude() const { return m_prelude; }
    Shapes& shapes() { return m_shapes; }
    void addKinds(JSObjectRef list) { m_prelude.addKinds(list); } ///< see there
    /// The time since the page was opened.
    double milliseconds() const { return static_cast<double>(m_clock.nsecsElapsed()) / 1e6; }
    KeyNames& keyNames() { return m_keyNames; }
    Wrappers& wrappers() { return m_wrappers; }
    Functions& functions() { return m_functions; }
    Promises& promises() { return m_promises; }
    Timers& timers() { return *m_timers; }
    const QString& inputName() const { return m_inputName; }
    /// The number of calls of the page on the stack.
    int depth() const { return m_depth; }
    /// The member that script is calling, "Network.fetch"; empty when it is none.
    QString callingMember() const;
    PendingList pending() const;
    bool isBusy() const { return m_depth > 0 || m_timers->any() || m_promises.anyPending(); }

    // Callbacks into the host.
    void print(const QString& line, bool isError);
    void exitWith(int code);
    /// Returns the error, or an empty string.
    QString play(const QString& steps);
    /// `where` is what has thrown, such as "in a timer".
    void reportThrown(JSValueRef error, const QString& where);
    void reportUncaught(const ErrorFacts& facts);
    void reportUncaught(const QString& text) { reportUncaught({ text, {}, 0, false }); }

    /// Looks for the place of a name that script reads, see findread.js.
    QString findRead(const QString& request);

    /// Calls `work` from the event loop, unless the page or its host has gone by then.
    void post(std::function<void()> work);
    /// Stores `done` until finish() is called with the ticket.
    int addTicket(Page::Done done);
    /// Calls `done` of the ticket from the event loop.
    void finish(int ticket, const Outcome& outcome);

    QString origin() const override { return QLatin1String(ScriptOrigin); }
    QString callingPlace() override;
    bool createPromise(std::int64_t promise) override;
    void settlePromise(std::int64_t promise, JSPromiseState state, const KJSVariant& value) override;
    void releasePromise(std::int64_t promise) override;

private:
    friend class Entry;
    friend class NativeScope;
    static void onCollected(JSContextGroupRef group, void* page);
    static bool onTick(JSContextRef ctx, void* page);
    void startTicks();
    void runMicrotasks();
    void leaveOutermost();
    void tearDown();

    std::shared_ptr<Engine> m_engine;
    PageHost m_host;
    vexlite::Core* m_core;
    JSContextGroupRef m_group;
    JSGlobalContextRef m_ctx;
    JSContextEnv m_env {};
    QString m_inputName;
    JSObjectRef m_runMicrotasks = nullptr;
    Prelude m_prelude;
    Shapes m_shapes;
    KeyNames m_keyNames;
    Wrappers m_wrappers;
    Functions m_functions;
    Promises m_promises;
    std::unique_ptr<Timers> m_timers;
    std::unique_ptr<ToolScript> m_parser; ///< made when it is first used
    std::unordered_map<int, Page::Done> m_tickets;
    QElapsedTimer m_clock;
    int m_lastTicket = 0;
    int m_depth = 0;
    const NativeMember* m_calling = nullptr;
    Pending::Clock::time_point m_turnBegan;
    int m_timeLimitMs = 0;
    int m_ranMs = 0;              ///< in this turn, of the processor's time
    bool m_isInterrupted = false; ///< script was ended in this turn
    bool m_closing = false;
    bool m_muted = false;
    bool m_hostGone = false;
    bool m_sweepPosted = false;
};

/// A call from the host into the page. When the outermost one ends, microtasks run, and a page that was
/// closed during the call is torn down.
class Entry {
public:
    explicit Entry(PageState& page);
    ~Entry();
    Entry(const Entry&) = delete;
    Entry& operator=(const Entry&) = delete;
    /// False when the page is closed and there is no context.
    explicit operator bool() const { return m_entered; }

private:
    std::shared_ptr<PageState> m_page;
    bool m_entered = false;
};

/// A call from the page's script into native code, which may close the page.
class NativeScope {
public:
    explicit NativeScope(PageState& page, const NativeMember* member = nullptr)
        : m_page(page)
        , m_outer(std::exchange(page.m_calling, member))
    {
        ++m_page.m_depth;
        m_page.engine().enter();
    }
    ~NativeScope()
    {
        m_page.m_calling = m_outer;
        m_page.engine().leave();
        if (--m_page.m_depth == 0)
            m_page.leaveOutermost();
    }
    NativeScope(const NativeScope&) = delete;
    NativeScope& operator=(const NativeScope&) = delete;

private:
    PageState& m_page;
    const NativeMember* m_outer;
};

} // namespace engine::jsc
