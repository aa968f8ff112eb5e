// Core: the stand-in's JS core, as engines and the command-line tool use it; the library uses IVEXJSCore.
//
// There is one in a process. Everything here runs on the GUI thread.
#pragma once

#include "host/vexlite/jsmemberlist.h"
#include "host/vexlite/observer.h"
#include "host/vexlite/ref.h"
#include "host/vexlite/scriptpage.h"
#include "vexlite/jscore.h"
#include "vexlite/registrymap.h"

#include <functional>
#include <memory>

namespace vexlite {

/// The services that the library gets. All are on by default.
struct CoreServices {
    bool jsCore = true; ///< false: GetVEXJSCore() returns null
    bool promiseService = true;
    bool answerChannel = true;
    bool eventHubs = true;
    bool objectFactory = true;
    bool browsers = true;
    bool browserGroups = true;
    bool traceHook = true; ///< also needs an observer or a deny mask
};

/// What open pages hold. All zero when every page is closed.
struct LiveCounts {
    int pages = 0;
    int objects = 0; ///< native objects held by script wrappers
    int listeners = 0;
    int promises = 0;  ///< pending ones
    int functions = 0; ///< script functions of open pages that native code keeps
};

/// Limits, so that no page can exhaust the process. Beyond them listeners and dispatches are refused with
/// KR_REJECTED, and promises are not made.
struct CoreLimits {
    static constexpr int listenersPerPage = 100'000;
    static constexpr int pendingPromisesPerPage = 100'000;
    static constexpr int eventNameLength = 4'096; ///< UTF-16 units
    static constexpr int nestedDispatches = 64;   ///< over all hubs and pages
};

/// An object that was bound for a page, with the members that the page may see; or the error.
struct BoundObject {
    Ref<IJSExtentionObject> object;
    Ref<IJSMemberList> members;
    KResult status = KR_NOT_AVAILABLE;
    QString name {}; ///< the script name of its class, where the object factory has made it
};

/// The properties of the browser that shows a page; see IVEXBrowser.
struct BrowserFacts {
    QString applicationId;
    QString sessionId;
    QString browserId;
    VEXBrowserTimes times {};
    std::uint32_t window = 0; ///< the X11 window that shows the page; 0: that of its web widget, if any
    bool grouped = true;
    std::int64_t groupMark1 = 0;
    std::int64_t groupMark2 = 0;
};

class Core {
public:
    /// Starts the core of this process; there must be none yet.
    static Core& start(const CoreServices& services);
    /// Ends the core, if there is one, and closes pages that are still open. Hubs stay valid, since native
    /// objects keep them, but are empty and refuse listeners.
    static void stop();
    /// The core, even if `services.jsCore` hides it from the library; null before start() and after stop().
    static Core* instance();

    virtual ~Core() = default;

    /// Copies the factories that GetNovaExtensionJsApiObj filled in.
    virtual void setFactories(const ExtensionFactoryMap& factories) = 0;
    virtual QStringList objectNames() const = 0;

    /// Adds a page. `page` must live until closePage().
    virtual JSContextEnv openPage(ScriptPage* page, const BrowserFacts& browser) = 0;
    /// Replaces the properties of the browser, which may change while its page loads.
    virtual void updateBrowser(const JSContextEnv& context, const BrowserFacts& browser) = 0;
    /// Drops the page's listeners and promises. Later calls for it do nothing.
    virtual void closePage(const JSContextEnv& context) = 0;
    virtual bool isOpen(const JSContextEnv& context) const = 0;
    /// The origin of a page; empty for one that has none, or is closed.
    virtual QString originOf(const JSContextEnv& context) const = 0;

    /// Calls the factory of a short name ("Log") for a page and gets the members of the object.
    virtual BoundObject bindObject(const JSContextEnv& context, const QString& shortName) = 0;
    /// The same for an object that a call returned.
    virtual BoundObject bindSubObject(const JSContextEnv& context, IJSExtentionObject* object) = 0;
    /// Full script names of the classes announced to the object factory, in the order of their announcement.
    virtual QStringList creatableClasses() const = 0;

    /// Calls a method, or reads a property (without arguments), and reports it to observers. Returns KR_OK only with an
    /// empty `exception`; a failure without an exception gets one. The caller must hold a reference to
    /// `object`, and `id` must be in its published table.
    virtual KResult call(IJSExtentionObject* object, const JSContextEnv& context, std::int32_t id,
        JSAccess access, JSApiArguments& arguments, KJSVariant& result, KJSVariant& exception) = 0;

    // Engines count native objects that wrappers hold, and functions that native code keeps.

    virtual void addLiveObjects(int change) = 0;
    virtual void addLiveFunctions(int change) = 0;
    virtual LiveCounts liveCounts() const = 0;

    /// Reports to an observer from now on, until it is removed; it must live until then.
    virtual void addObserver(Observer* observer) = 0;
    virtual void removeObserver(Observer* observer) = 0;
    /// Asks a checker about calls, and about names in pages that are opened from now on; null: none. It must live as long as
    /// the core, or until there is another one.
    /// See ScriptPage; empty for a page that is not open.
    virtual QString callingPlace(const JSContextEnv& context) const = 0;
    virtual void setChecker(PageChecker* checker) = 0;
    virtual PageChecker* checker() const = 0;
    /// Reports that something has happened in the suite, as a play says.
    virtual void reportStep(const QString& step) = 0;
    /// Hides members whose category mask shares a bit with `mask`, in tables published from now on; 0 hides
    /// none.
    virtual void setDenyMask(std::uint32_t mask) = 0;
};

/// For engines: the identifier that ScriptPage::createPromise got for a promise in a result, or 0 when
/// `object` is no promise of this core.
std::int64_t promiseHandle(IUnknown* object);
/// The same for what a call returns.
std::int64_t promiseHandle(const KJSVariant& value);

/// The failure object {"success": false, "code", "msg"} that script sees as an Error.
KJSVariant makeFailure(std::int32_t code, const QString& message);

} // namespace vexlite
