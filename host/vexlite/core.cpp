#include "host/vexlite/core.h"

#include "host/vexlite/eventhubs.h"
#include "host/vexlite/objectfactory.h"
#include "host/vexlite/ownedtext.h"
#include "host/vexlite/promises.h"
#include "host/vexlite/registry.h"
#include "host/vexlite/trace.h"

#include <QMap>

namespace vexlite {

namespace {

/// Ids are never reused: classes keep theirs as long as the process runs.
class TypeIds final : public IJSTypeIdAllocator {
public:
    std::int32_t AllocateTypeId(std::int32_t) override
    {
        static std::int32_t last = 0;
        return ++last;
    }
};

/// Combines the services: the JS core of the library, and the Core of engines.
class CoreOfProcess final : public Core, public IVEXJSCore {
public:
    explicit CoreOfProcess(const CoreServices& services)
        : m_services(services)
        , m_pages(std::make_shared<Pages>())
        , m_registry(*m_pages, m_trace)
        , m_promises(m_pages, m_trace)
        , m_hubs(EventHubs::instance())
        , m_objects(m_trace.names())
    {
    }

    const CoreServices& services() const { return m_services; }
    void closeAllPages()
    {
        while (m_pages->count())
            closePage(m_pages->any());
    }

    // IVEXJSCore, for the library.
    IJSTypeIdAllocator* TypeIds() override { return &m_typeIds; }
    IJSRegistry* Registry() override { return &m_registry; }
    IJSTraceHook* TraceHook() override
    {
        return m_services.traceHook && m_trace.isNeeded() ? &m_trace : nullptr;
    }
    IJSPromiseService* PromiseService() override { return m_services.promiseService ? &m_promises : nullptr; }
    IJSAnswerChannel* AnswerChannel() override { return m_services.answerChannel ? &m_promises : nullptr; }
    IJSEventHubFactory* EventHubs() override { return m_services.eventHubs ? &m_hubs : nullptr; }
    IJSObjectFactory* Objects() override { return m_services.objectFactory ? &m_objects : nullptr; }
    IVEXBrowser* Browser(std::int64_t browserId) override
    {
        return m_services.browsers ? m_pages->browser(browserId) : nullptr;
    }

    // Core, for engines.
    void setFactories(const ExtensionFactoryMap& factories) override
    {
        m_factories.clear();
        for (auto entry = factories.begin(); entry != factories.end(); ++entry)
            m_factories.insert(makeOwnedText(entry.key()), entry.value());
    }

    QStringList objectNames() const override { return m_factories.keys(); }

    JSContextEnv openPage(ScriptPage* page, const BrowserFacts& browser) override
    {
        const JSContextEnv context =
            m_pages->open(page, std::make_unique<vexlite::Browser>(browser, m_services.browserGroups));
        m_hubs.addPage(context);
        if (m_trace.isTracing())
            m_trace.reportPage(context, page->origin());
        return context;
    }

    void updateBrowser(const JSContextEnv& context, const BrowserFacts& browser) override
    {
        if (m_pages->isOpen(context))
            m_pages->browser(context.browserId)->update(browser);
    }

    void closePage(const JSContextEnv& context) override
    {
        if (!m_pages->close(context))
            return;
        m_promises.dropPage(context);
        m_hubs.dropPage(context);
    }

    bool isOpen(const JSContextEnv& context) const override { return m_pages->isOpen(context); }

    QString originOf(const JSContextEnv& context) const override
    {
        const ScriptPage* page = m_pages->find(context);
        return page ? page->origin() : QString();
    }

    QString callingPlace(const JSContextEnv& context) const override
    {
        ScriptPage* page = m_pages->find(context);
        return page ? page->callingPlace() : QString();
    }

    BoundObject bindObject(const JSContextEnv& context, const QString& shortName) override
    {
        const ExtensionFactory factory = m_factories.value(shortName);
        if (!factory || !m_pages->isOpen(context))
            return {};
        Registry::PendingBind place(m_registry, context);
        const KResult made = factory(place.creationContext(), place.creationTarget());
        Ref<IJSExtentionObject> object = place.take();
        if (made != KR_OK)
            return { {}, {}, made };
        return addMembers(context, std::move(object), QStringLiteral("NovaExtension.") + shortName);
    }

    BoundObject bindSubObject(const JSContextEnv& context, IJSExtentionObject* object) override
    {
        const QString name = m_objects.nameOf(object);
        BoundObject bound = addMembers(context, Ref<IJSExtentionObject>::share(object), name);
        bound.name = name;
        return bound;
    }

    QStringList creatableClasses() const override { return m_objects.classes(); }

    KResult call(IJSExtentionObject* object, const JSContextEnv& context, std::int32_t id, JSAccess access,
        JSApiArguments& arguments, KJSVariant& result, KJSVariant& exception) override
    {
        if (m_isWatched) [[unlikely]]
            return callWatched(object, context, id, access, arguments, result, exception);
        return invoke(object, context, id, access, arguments, result, exception, 0);
    }

    void addLiveObjects(int change) override { m_liveObjects += change; }
    void addLiveFunctions(int change) override { m_liveFunctions += change; }

    LiveCounts liveCounts() const override
    {
        return { m_pages->count(), m_liveObjects, m_hubs.listenerCount(), m_promises.pendingCount(),
            m_liveFunctions };
    }

    void addObserver(Observer* observer) override
    {
        m_trace.add(observer);
        noteWatched();
    }
    void removeObserver(Observer* observer) override
    {
        m_trace.remove(observer);
        noteWatched();
    }
    void setChecker(PageChecker* checker) override
    {
        m_checker = checker;
        noteWatched();
    }
    PageChecker* checker() const override { return m_checker; }
    void reportStep(const QString& step) override { m_trace.reportStep(step); }
    void setDenyMask(std::uint32_t mask) override { m_trace.setDenyMask(mask); }

private:
    static constexpr std::int32_t operationFailed = 3;
    static constexpr std::int32_t wrongArgument = 1;

    void noteWatched() { m_isWatched = m_checker || m_trace.isTracing(); }

    static KResult invoke(IJSExtentionObject* object, const JSContextEnv& context, std::int32_t id,
        JSAccess access, JSApiArguments& arguments, KJSVariant& result, KJSVariant& exception,
        std::int64_t extra)
    {
        KResult status = KR_REJECTED;
        if (access == JSAccess::Method)
            status = object->InvokeMethod(context, id, arguments, result, extra, exception);
        else if (access == JSAccess::PropertyGet)
            status = object->InvokePropertyGet(context, id, extra, result, exception);
        else
            exception = makeFailure(operationFailed, QStringLiteral("The property can not be written."));
        return status == KR_OK && exception.isEmpty() ? KR_OK : failed(status, exception);
    }

    // Apart from call(), which is to cost no more than the member.
    [[gnu::noinline]] KResult callWatched(IJSExtentionObject* object, const JSContextEnv& context,
        std::int32_t id, JSAccess access, JSApiArguments& arguments, KJSVariant& result,
        KJSVariant& exception)
    {
        const auto perform = [&](std::int64_t extra) -> KResult {
            if (m_checker && access == JSAccess::Method
                && isRefused(object, context, id, access, arguments, exception))
                return KR_REJECTED;
            return invoke(object, context, id, access, arguments, result, exception, extra);
        };
        if (!m_trace.isTracing())
            return perform(0);
        return m_trace.trace(
            m_trace.describe(object, context, id, access, arguments), result, exception, perform);
    }

    bool isRefused(IJSExtentionObject* object, const JSContextEnv& context, std::int32_t id, JSAccess access,
        const JSApiArguments& arguments, KJSVariant& exception) const
    {
        const QString refusal =
            m_checker->checkCall(m_trace.describe(object, context, id, access, arguments));
        if (!refusal.isNull())
            exception = makeFailure(wrongArgument, refusal);
        return !refusal.isNull();
    }

    /// The status of a failed call; makes an exception if there is none.
    static KResult failed(KResult status, KJSVariant& exception)
    {
        if (exception.isEmpty())
            exception = makeFailure(operationFailed,
                QStringLiteral("The call failed with code 0x%1.").arg(status, 8, 16, QLatin1Char('0')));
        return status == KR_OK ? KR_REJECTED : status;
    }

    BoundObject addMembers(const JSContextEnv& context, Ref<IJSExtentionObject> object, const QString& name)
    {
        if (!object || !m_pages->isOpen(context))
            return {};
        IJSMemberList* published = nullptr;
        const KResult status = object->GetMemberTable(context, &published);
        Ref<IJSMemberList> members = Ref<IJSMemberList>::adopt(published);
        if (status != KR_OK || !members)
            return { {}, {}, status == KR_OK ? KR_NOT_AVAILABLE : status };
        // Objects get their type ids when they are asked for the first time.
        if (m_trace.isTracing() || m_checker) {
            const std::int64_t typeId = object->GetTypeId();
            if (!name.isEmpty())
                m_trace.names().add(typeId, name);
            m_trace.names().add(typeId, *members.get());
        }
        return { std::move(object), std::move(members), KR_OK };
    }

    CoreServices m_services;
    std::shared_ptr<Pages> m_pages;
    CallTrace m_trace;
    PageChecker* m_checker = nullptr;
    bool m_isWatched = false; ///< by an observer or the checker
    class Registry m_registry;
    class TypeIds m_typeIds;
    Promises m_promises;
    class EventHubs& m_hubs;
    ObjectFactory m_objects;
    QMap<QString, ExtensionFactory> m_factories;
    int m_liveObjects = 0;
    int m_liveFunctions = 0;
};

/// Never destroyed: modules that are unloaded at exit still use it.
CoreOfProcess* theCore = nullptr;

} // namespace

Core& Core::start(const CoreServices& services)
{
    if (theCore)
        qFatal("The JS core of this process has started already.");
    theCore = new CoreOfProcess(services);
    return *theCore;
}

void Core::stop()
{
    if (!theCore)
        return;
    theCore->closeAllPages();
    delete std::exchange(theCore, nullptr);
}

Core* Core::instance()
{
    return theCore;
}

IVEXJSCore* GetVEXJSCore()
{
    return theCore && theCore->services().jsCore ? theCore : nullptr;
}

} // namespace vexlite
