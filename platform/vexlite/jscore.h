// The JS core: what the suite's script side offers to this library. One per process, or none.
//
// Everything here is [GUI thread] and throws nothing. Interfaces that have no AddRef belong to the JS core
// and live as long as it does.
#pragma once

#include "vexlite/jsextension.h"
#include "vexlite/jsonvalue.h"

#include <QVariant>
#include <functional>
#include <vector>

/// Hands out type ids for classes. The same id is never given twice in a process.
class IJSTypeIdAllocator {
public:
    virtual std::int32_t AllocateTypeId(std::int32_t zero) = 0;

protected:
    ~IJSTypeIdAllocator() = default;
};

/// Binds objects to pages and keeps the layout of member tables.
class IJSRegistry {
public:
    /// Gives an object to the page and place that the two creation values name. Takes over one reference,
    /// whatever the answer; KR_NOT_AVAILABLE when the place has gone meanwhile.
    virtual KResult Bind(IJSExtentionObject* object, std::int64_t creationContext,
        std::int64_t creationTarget, std::int64_t zero) = 0;
    /// Ends a call: called after every method call and property read, whatever its outcome. `value` is what the
    /// call left in its result slot, `extra` the value that came with the call.
    virtual void CallCompleted(const JSContextEnv& context, KJSVariant& value, std::int64_t extra) = 0;
    /// Moves all members of `source` into `destination`; `source` is empty afterwards.
    virtual void AssignTable(JSMemberTable& source, JSMemberTable& destination) = 0;
    /// Makes the list of a table's members that script is to see. `out` gets one reference for the caller;
    /// the list stays valid after the table has gone. Only the entries' `invoke` still points into the
    /// module.
    virtual KResult PublishTable(const JSMemberTable& table, IJSMemberList** out) = 0;
    /// The entry of a member, borrowed from the table, or null when `id` has no such access.
    virtual const JSMemberEntry* FindMember(const JSMemberTable& table, std::int32_t id, JSAccess access) = 0;
    /// Appends a member to a table. `kind` is 0 for a method and 1 for a read-only property, `mask` a set of
    /// category bits, `resultType` a type code. Then follow, in this order: the handler (JSMemberInvoke), the
    /// parameter count (int, 0 to 3), and one JSParameter by value for each. Texts are copied.
    virtual void AddMember(JSMemberTable& table, const char16_t* name, std::int32_t kind, std::uint32_t mask,
        std::int32_t resultType, ...) = 0;
    /// A token that names `object` as handed out by another object; it goes into the IJSSubObject. Takes no
    /// reference.
    virtual std::int64_t SubObjectToken(IJSExtentionObject* object) = 0;

protected:
    ~IJSRegistry() = default;
};

/// Sees every table before it is published and every call before it is made.
class IJSTraceHook {
public:
    /// May fill `replacement` with entries of `table`; true publishes the replacement instead.
    virtual bool FilterTable(const QString& objectName, const JSContextEnv& context,
        const JSMemberTable& table, JSMemberTable& replacement) = 0;
    virtual void CallNotice(
        const QString& objectName, const JSContextEnv& context, const JSMemberEntry* member) = 0;

protected:
    ~IJSTraceHook() = default;
};

/// How a promise stands when it is made or settled.
enum class JSPromiseState : std::int32_t { Resolved = 0, Rejected = 1 };

/// A promise on its way to script. Made by the promise service only; a run-time type check recognises it.
class IJSPromise : public IUnknown { };

/// Makes promises. An answer is given through IJSAnswerChannel.
class IJSPromiseService {
public:
    /// Makes a promise that is settled already. `fill` writes the value, or for a rejection the message text;
    /// it is called once before this returns, and not kept. Failure: `out` stays empty and a code is returned.
    virtual KResult CreateSettled(JSPromiseState state, const JSContextEnv& context,
        const std::function<void(KJSVariant& value)>& fill, KJSVariant& out) = 0;
    /// Makes a pending promise of the page and returns its identifier, never 0. When the page has gone `out`
    /// stays empty and 0 is returned. A promise whose page goes is dropped; its later answer does nothing.
    virtual std::int64_t CreatePending(const JSContextEnv& context, KJSVariant& out) = 0;

protected:
    ~IJSPromiseService() = default;
};

/// Settles pending promises from the list that KJSApiUtil::getAsynRetValList builds.
class IJSAnswerChannel {
public:
    /// Settles `promise` of the page `context`. The list's first entry says which way: true resolves with its
    /// third entry, false rejects with its second entry as the text and the third's "code", where it has one.
    /// `one` must be 1. KR_NOT_AVAILABLE when the promise is settled already or its page has gone.
    virtual KResult Answer(std::int64_t promise, const JSContextEnv& context,
        const std::vector<KJSVariant>& list, std::int32_t one) = 0;

protected:
    ~IJSAnswerChannel() = default;
};

/// The listeners of one class of objects, or of one object.
class IJSEventHub {
public:
    /// Adds a listener of a page. `callback` must hold a function (KR_REJECTED otherwise); adding the same
    /// function twice keeps one. The hub drops it with its page.
    virtual KResult Add(const QString& event, const JSContextEnv& context, const KJSVariant& callback) = 0;
    /// Removes that page's listener; an empty callback removes all of the page's listeners of the event.
    /// Nothing to remove is no failure. KR_REJECTED when `callback` is neither empty nor a function.
    virtual KResult Remove(const QString& event, const JSContextEnv& context, const KJSVariant& callback) = 0;
    /// Calls the listeners of `target`, or of every page for JSContextEnv::everyContext(), in the order of
    /// their adding, with `payload` as arguments. Listeners added meanwhile are not called, those removed are
    /// not either.
    virtual KResult Dispatch(
        const QString& event, const JSContextEnv& target, const std::vector<KJSVariant>& payload) = 0;
    /// Writes an array into `result`, which script gets as it is: what is known of the events.
    virtual KResult Report(KJSVariant& result) = 0;

protected:
    ~IJSEventHub() = default;
};

class IJSEventHubFactory {
public:
    /// The hub that all objects of a class share. Owned by the JS core.
    virtual IJSEventHub* ClassHub(std::int32_t typeId) = 0;
    /// The hub of one object. Owned by the JS core until ReleaseInstanceHub.
    virtual IJSEventHub* InstanceHub(std::int32_t typeId, IJSExtentionObject* object) = 0;
    /// Ends the hub of an object with all its listeners; the pointer is dead afterwards.
    virtual void ReleaseInstanceHub(IJSEventHub* hub) = 0;

protected:
    ~IJSEventHubFactory() = default;
};

/// When a browser and its page were made and loaded: milliseconds since 1970 (UTC), 0 for what has not
/// happened.
struct VEXBrowserTimes {
    std::int64_t creationStart;
    std::int64_t creationFinish;
    std::int64_t loadStart;
    std::int64_t loadReady;
    std::int64_t loadFinish;
};

/// Browsers that belong together, with two time marks in milliseconds since 1970 (UTC).
class IVEXBrowserGroup {
public:
    virtual std::int64_t Mark1() const = 0;
    virtual std::int64_t Mark2() const = 0;

protected:
    ~IVEXBrowserGroup() = default;
};

/// A browser that shows pages. Borrowed: use it within the call that asked for it.
class IVEXBrowser {
public:
    virtual std::int64_t ProcessId() const = 0;
    virtual QString ApplicationId() const = 0;
    virtual QString SessionId() const = 0;
    virtual QString BrowserId() const = 0;
    virtual VEXBrowserTimes Times() const = 0;
    /// The X11 window in which the page is drawn, a window of the suite's or one inside it; 0 when it is
    /// drawn nowhere.
    virtual std::uint32_t Window() const = 0;
    /// Null when it is in no group.
    virtual IVEXBrowserGroup* Group() const = 0;

protected:
    ~IVEXBrowser() = default;
};

/// An object of a class that script reaches through another object only.
class IJSCreatable {
public:
    /// Prepares a new object with the options of its maker (may be null). Called once before script sees it,
    /// and again whenever the maker wants to replace its state.
    virtual void Initialise(IJSONValue* options) = 0;

protected:
    ~IJSCreatable() = default;
};

/// Makes such objects by their full script name.
class IJSObjectFactory {
public:
    /// A new object with one reference; `creatable` receives its other face, or null when there is nothing to
    /// prepare.
    using Creator = IJSExtentionObject* (*)(IJSCreatable** creatable);

    /// Announces a class, before the first object of it is made; a second call with the same name replaces
    /// the creator.
    virtual void RegisterClass(const QString& scriptName, Creator creator) = 0;
    /// Forgets a class, so that its module can go.
    virtual void UnregisterClass(const QString& scriptName) = 0;
    /// Makes an object and initialises it. The caller owns the one reference. Null when no such class is
    /// known.
    virtual IJSExtentionObject* Create(
        const QString& scriptName, const JSContextEnv& context, IJSONValue* options) = 0;

protected:
    ~IJSObjectFactory() = default;
};

/// The JS core itself. Every accessor but the first two may answer null: that service is not there.
class IVEXJSCore {
public:
    virtual IJSTypeIdAllocator* TypeIds() = 0;
    virtual IJSRegistry* Registry() = 0;
    virtual IJSTraceHook* TraceHook() = 0;
    virtual IJSPromiseService* PromiseService() = 0;
    virtual IJSAnswerChannel* AnswerChannel() = 0;
    virtual IJSEventHubFactory* EventHubs() = 0;
    virtual IJSObjectFactory* Objects() = 0;
    /// The browser that shows a context, by JSContextEnv::browserId; null when there is none.
    virtual IVEXBrowser* Browser(std::int64_t browserId) = 0;

protected:
    ~IVEXJSCore() = default;
};

namespace vexlite {
/// The JS core of this process, or null before it has started and after it has ended. Cheap: ask every time.
IVEXJSCore* GetVEXJSCore();
} // namespace vexlite
