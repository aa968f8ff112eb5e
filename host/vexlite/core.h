// Core: the stand-in's JS core. Engines and the command-line tool use this face of it; the library sees
// IVEXJSCore.
//
// One a process. Everything here runs on the GUI thread.
#pragma once

#include "host/vexlite/ref.h"
#include "host/vexlite/scriptpage.h"
#include "vexlite/jscore.h"
#include "vexlite/jsmemberlist.h"
#include "vexlite/registrymap.h"

#include <functional>
#include <memory>

namespace vexlite {

/// Which services the library finds. All but the trace hook are there unless switched off.
struct CoreServices {
    bool jsCore = true; ///< false: GetVEXJSCore() answers null
    bool promiseService = true;
    bool answerChannel = true;
    bool eventHubs = true;
    bool objectFactory = true;
    bool browsers = true;
    bool browserGroups = true;
    bool traceHook = true; ///< there only while a tracer or a deny mask is set as well
};

/// What pages hold at the moment. All zero once every page is closed.
struct LiveCounts {
    int pages = 0;
    int objects = 0; ///< native objects held by script wrappers
    int listeners = 0;
    int promises = 0;  ///< pending ones
    int functions = 0; ///< script functions that native code keeps and could still call
};

/// What script can make the core hold or do, so that no page can exhaust the process. What would exceed a
/// limit is refused: a listener and a dispatch with KR_REJECTED, a promise by not being made.
struct CoreLimits {
    static constexpr int listenersPerPage = 100'000;
    static constexpr int pendingPromisesPerPage = 100'000;
    static constexpr int eventNameLength = 4'096; ///< UTF-16 units
    static constexpr int nestedDispatches = 64;   ///< over all hubs and pages
};

/// One finished call, as the trace hook saw it; or later, that the promise which it returned was rejected.
struct TracedCall {
    QString object; ///< "NovaExtension.Log"
    QString member;
    qint64 nanoseconds;
    bool succeeded;
    QString message;       ///< of a failure
    std::int32_t code = 0; ///< of a failure
    bool isRejection = false;
};

/// What script got by touching an object: the object and the members that the page may see, or why not.
struct BoundObject {
    Ref<IJSExtentionObject> object;
    Ref<IJSMemberList> members;
    KResult status = KR_NOT_AVAILABLE;
};

/// The facts of the browser that shows a page; see IVEXBrowser.
struct BrowserFacts {
    QString applicationId;
    QString sessionId;
    QString browserId;
    VEXBrowserTimes times {};
    std::uint32_t window = 0; ///< the X11 window that shows the page, or 0
    bool grouped = true;
    std::int64_t groupMark1 = 0;
    std::int64_t groupMark2 = 0;
};

class Core {
public:
    /// Starts the core of this process. There must be none.
    static Core& start(const CoreServices& services);
    /// Ends it; all pages should be closed, those that are not are closed now. Does nothing when there is
    /// none. Hubs stay valid without a core, since native objects keep them, but hold and accept nothing.
    static void stop();
    /// The core, also when `services.jsCore` hides it from the library; null before start and after stop.
    static Core* instance();

    virtual ~Core() = default;

    /// The factories that GetNovaExtensionJsApiObj filled in; copied deeply.
    virtual void setFactories(const ExtensionFactoryMap& factories) = 0;
    virtual QStringList objectNames() const = 0;

    /// Adds a page. `page` must stay until closePage.
    virtual JSContextEnv openPage(ScriptPage* page, const BrowserFacts& browser) = 0;
    /// The browser's facts may change while its page loads.
    virtual void updateBrowser(const JSContextEnv& context, const BrowserFacts& browser) = 0;
    /// Drops the page's listeners and promises; what comes for it later does nothing.
    virtual void closePage(const JSContextEnv& context) = 0;
    virtual bool isOpen(const JSContextEnv& context) const = 0;

    /// Calls the factory of a short name ("Log") for a page and asks the object for its members.
    virtual BoundObject bindObject(const JSContextEnv& context, const QString& shortName) = 0;
    /// The same for an object that a call handed out.
    virtual BoundObject bindSubObject(const JSContextEnv& context, IJSExtentionObject* object) = 0;
    /// Full script names of the classes announced to the object factory, in the order of their announcement.
    virtual QStringList creatableClasses() const = 0;
    /// An object of such a class, not initialised: for looking at its members.
    virtual Ref<IJSExtentionObject> createUninitialised(const QString& scriptName) = 0;

    /// Calls a method or reads a property (no arguments are looked at then), tracing it. The status is 0 when
    /// `exception` is empty; a failure that filled no exception gets one here. The caller holds a reference
    /// to `object` meanwhile, and `id` is one of its published table.
    virtual KResult call(IJSExtentionObject* object, const JSContextEnv& context, std::int32_t id,
        JSAccess access, JSApiArguments& arguments, KJSVariant& result, KJSVariant& exception) = 0;

    /// Counted by the engines: native objects that script wrappers hold, functions that native code keeps.
    virtual void addLiveObjects(int change) = 0;
    virtual void addLiveFunctions(int change) = 0;
    virtual LiveCounts liveCounts() const = 0;

    /// Called after each call, and when a promise is rejected; an empty function ends tracing. Without the
    /// trace hook's service nothing is traced.
    virtual void setTracer(std::function<void(const TracedCall&)> tracer) = 0;
    /// Hides members whose category mask shares a bit with `mask`; 0 hides none. Holds for tables published
    /// from now on.
    virtual void setDenyMask(std::uint32_t mask) = 0;
};

/// The promise behind a result value, for engines: the identifier that ScriptPage::createPromise got, or 0
/// when `object` is no promise of this core.
std::int64_t promiseHandle(IUnknown* object);

/// The failure object {"success": false, "code", "msg"} that script sees as an Error.
KJSVariant makeFailure(std::int32_t code, const QString& message);

} // namespace vexlite
