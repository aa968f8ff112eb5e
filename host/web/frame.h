// Frame: one document of a page, with the objects, functions and promises that it shares with the suite.
#pragma once

#include "host/web/framefunction.h"
#include "host/web/framescript.h"
#include "host/web/handles.h"
#include "host/web/promises.h"

#include <unordered_set>

namespace engine::web {

/// The code of failures that are no member's.
constexpr int OperationFailed = 3;

/// What a document calls, and from where.
struct Caller {
    /// Of the class and member, "NovaExtension.Network.fetch"; what the call hands out is named by it.
    QString tag;
    QString place; ///< the line of its script, "page.js:5:3"; empty where that is not known
};

/// A member that is called later, since it shows a dialog.
struct WaitingCall {
    vexlite::Ref<IJSExtentionObject> object;
    std::int32_t member = 0;
    std::vector<KJSVariant> arguments;
    bool isDone = false;
    bool isAbandoned = false; ///< the document does not wait any more
    KJSVariant result;
    KJSVariant exception;
    Caller caller;
    Pending::Clock::time_point since = Pending::Clock::now();
};

/// [GUI thread] States: open, closed.
class Frame final : public vexlite::ScriptPage, public std::enable_shared_from_this<Frame> {
public:
    struct Host {
        /// The document has something to fetch. Called from anywhere.
        std::function<void()> wake;
        /// A call waits for performWaiting().
        std::function<void(int ticket)> waits;
    };
    /// What a document may have of each; more is refused.
    static constexpr std::size_t maximumQueuedUnits = std::size_t { 128 } << 20;
    static constexpr std::size_t maximumWaiting = 16;

    Frame(QString name, QString origin, bool isTop, OriginRights rights, Host host);
    ~Frame() override;
    void open(const vexlite::BrowserFacts& browser);
    /// Drops all that belongs to the document.
    void close();

    const QString& name() const { return m_name; }
    QString origin() const override { return m_origin; }
    QString callingPlace() override { return m_calling.place; }
    bool isTop() const { return m_isTop; }
    bool isOpen() const { return m_isOpen; }
    const JSContextEnv& context() const { return m_context; }
    /// Whether something waits to be fetched.
    bool hasMessages() const { return m_messages.count; }

    /// Makes the document that of scripts of the command line.
    void setScript(FrameScript script);
    /// Has the document run a script, but for its declarations; `fileName` is what stacks call it.
    void runScript(int ticket, ScriptKind kind, const QString& fileName, const PageScript& script);
    /// Has the document report, by FrameScript::settled, when it has done all that it has got until now.
    void settle(int ticket);
    PendingList pending() const;
    bool isBusy() const;
    /// Whether a call of the document's waits for a dialog.
    bool hasDialog() const;
    /// The member that the document is calling, "Network.fetch"; empty when it is none.
    QString callingMember() const { return m_calling.tag.section(QLatin1Char('.'), 1); }

    /// What the document gets first.
    QString greeting();
    /// The reply to a request, which may be anything; to an unknown one it is that the document is closed. May close the
    /// frame.
    QString reply(char request, WireReader& reader);
    /// Performs a waiting call; its result is fetched later. May take as long as a dialog.
    void performWaiting(int ticket);
    bool isWaiting(int ticket) const;

    // For what is read from the document and written for it.
    Handles& handles() { return m_handles; }
    bool hasPromise(std::int64_t promise) const { return m_promises.has(promise); }
    void addFunction(FrameFunction& function);
    void removeFunction(FrameFunction& function);
    /// Whether more messages wait than a document may have.
    bool isFull() const { return static_cast<std::size_t>(m_messages.text.size()) > maximumQueuedUnits; }
    /// Hands a message over with the next reply.
    void queue(const QString& message);
    /// The same for what need not come soon, and must not come before the answer of a call under way: it may still name what
    /// goes.
    void queueLater(const QString& message);

    // The page, for the core.
    bool createPromise(std::int64_t promise) override;
    void settlePromise(std::int64_t promise, JSPromiseState state, const KJSVariant& value) override
    {
        m_promises.settle(promise, state, value);
    }
    void releasePromise(std::int64_t promise) override { m_promises.release(promise); }

private:
    /// Puts what is queued after `answer`.
    QString withMessages(QString answer);
    void wake();

    QString bindRoot(WireReader& reader);
    QString callMember(WireReader& reader);
    QString collectWaiting(WireReader& reader);
    QString scriptRequest(WireReader& reader);
    QString checkName(WireReader& reader);
    QString answerOf(
        const KJSVariant& result, const KJSVariant& exception, bool isMethod, const QString& tag);
    QString failure(int code, const QString& message);
    QString typeError(const QString& message) const;

    QString m_name;
    QString m_origin;
    bool m_isTop;
    Host m_host;
    JSContextEnv m_context {};
    bool m_isOpen = false;
    bool m_isReplying = false; ///< what is queued goes with the reply
    bool m_isWoken = false;

    WireBatch m_messages;
    WireBatch m_later; ///< messages that go with the reply after the next one
    Handles m_handles;
    std::unordered_map<QString, std::int64_t> m_roots; ///< the numbers that objects of NovaExtension had last
    std::unordered_set<FrameFunction*> m_functions;
    Promises m_promises { *this };
    std::map<int, WaitingCall> m_waiting;
    int m_lastTicket = 0;
    Caller m_calling; ///< empty when nothing is called

    bool m_isScript = false;
    FrameScript m_script;
};

} // namespace engine::web
