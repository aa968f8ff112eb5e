// Frame: one document of a page, with the objects, functions and promises that it shares with the suite.
#pragma once

#include "host/engine/page.h"
#include "host/engine/webengine.h"
#include "host/vexlite/pagefunction.h"
#include "host/web/wire.h"

#include <map>
#include <unordered_map>
#include <unordered_set>

namespace engine::web {

class Frame;

/// A function of a document that native code keeps. It is never waited for: a call is handed over with the next reply
/// that the document gets, in the order of the calls.
class FrameFunction final : public vexlite::PageFunction {
public:
    /// KR_REJECTED for a call whose arguments have no script form, and when more calls wait than a document may have.
    /// `result` stays empty.
    KResult Call(const JSApiArguments& arguments, KJSVariant* result) override;
    std::uintptr_t Identity() const override { return static_cast<std::uintptr_t>(m_id); }
    JSContextEnv Context() const override { return m_context; }

    /// The number of the function, when it is one of `frame`; else 0.
    std::int64_t idIn(const Frame& frame) const { return m_frame == &frame ? m_id : 0; }

private:
    friend class Frame;
    FrameFunction(Frame& frame, std::int64_t id);
    ~FrameFunction() override;

    Frame* m_frame; ///< null once the document has gone
    std::int64_t m_id;
    JSContextEnv m_context;
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
    QString tag; ///< of the object's class and member, for what the call hands out
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
    const QString& origin() const { return m_origin; }
    bool isTop() const { return m_isTop; }
    bool isOpen() const { return m_isOpen; }
    const JSContextEnv& context() const { return m_context; }
    /// Whether something waits to be fetched.
    bool hasMessages() const { return m_messageCount; }

    /// Makes the document that of a script of PageHost, with these arguments.
    void setScript(PageHost host, const QStringList& arguments);
    /// Has the document run a script; finished() gets its outcome.
    void runScript(int ticket, bool isExpression, const QString& fileName, const QString& source);
    std::function<void(int ticket, const Outcome& outcome)> finished;
    std::function<void()> closed; ///< the document has gone, but not by exit()

    /// What the document gets first.
    QString greeting();
    /// The reply to a request, which may be anything; to an unknown one it is that the document is closed. May close the
    /// frame.
    QString reply(char request, WireReader& reader);
    /// Performs a waiting call; its result is fetched later. May take as long as a dialog.
    void performWaiting(int ticket);
    bool isWaiting(int ticket) const;

    // The page, for the core.
    bool createPromise(std::int64_t promise) override;
    void settlePromise(std::int64_t promise, JSPromiseState state, const KJSVariant& value) override;
    void releasePromise(std::int64_t promise) override;

private:
    friend class FrameFunction;
    friend class ToWire;
    friend class FromWire;

    struct NativeClass {
        int id;
        std::int64_t typeId;
        QString tag;
        std::map<std::int32_t, std::pair<JSAccess, QString>> members; ///< that the document may use, by id
    };
    struct PromiseState {
        bool isSettled = false;
        bool isReleased = false;
    };
    struct Handle {
        vexlite::Ref<IJSExtentionObject> object;
        const NativeClass* nativeClass;
        std::int64_t sent = 0; ///< how often the document has got it
    };

    QString closedReply() const;
    /// Puts what is queued after `answer`.
    QString withMessages(QString answer);
    void queue(const QString& message);
    void queueLater(const QString& message);
    void wake();

    QString bindRoot(WireReader& reader);
    QString callMember(WireReader& reader);
    QString collectWaiting(WireReader& reader);
    QString scriptRequest(WireReader& reader);
    QString answerOf(
        const KJSVariant& result, const KJSVariant& exception, bool isMethod, const QString& tag);
    QString failure(int code, const QString& message);
    QString typeError(const QString& message) const;

    /// The number of an object for the document, which gets its class with the next reply. 0 when it can not be bound.
    std::int64_t share(IJSExtentionObject* object, const QString& name, KResult& status);
    std::int64_t share(vexlite::BoundObject bound, const QString& name);
    const NativeClass& classOf(IJSExtentionObject* object, IJSMemberList& members, const QString& tag);
    void releaseHandle(std::int64_t id, std::int64_t sent);
    FrameFunction* keepFunction(std::int64_t id);
    void forgetFunction(FrameFunction* function);

    QString m_name;
    QString m_origin;
    bool m_isTop;
    OriginRights m_rights;
    Host m_host;
    JSContextEnv m_context {};
    bool m_isOpen = false;
    bool m_isReplying = false; ///< what is queued goes with the reply
    bool m_isWoken = false;

    QString m_messages;
    int m_messageCount = 0;
    QString m_later;
    int m_laterCount = 0;
    QString m_newClasses;
    int m_newClassCount = 0;

    std::vector<std::unique_ptr<NativeClass>> m_classes;
    std::unordered_map<std::int64_t, Handle> m_handles;
    std::unordered_map<IJSExtentionObject*, std::int64_t> m_handleIds;
    std::int64_t m_lastHandle = 0;
    std::unordered_map<QString, std::int64_t> m_rootHandles;
    std::unordered_set<FrameFunction*> m_functions;
    std::unordered_map<std::int64_t, PromiseState> m_promises;
    std::map<int, WaitingCall> m_waiting;
    int m_lastTicket = 0;

    bool m_isScript = false;
    PageHost m_script;
    QStringList m_arguments;
};

} // namespace engine::web
