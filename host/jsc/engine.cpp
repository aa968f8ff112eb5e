#include "host/jsc/engine.h"

#include "host/jsc/page.h"
#include "host/jsc/pagestate.h"

#include <algorithm>
#include <pthread.h>

namespace engine {

namespace jsc {

namespace {

// What native handlers, and the toolkit below them, may use without asking.
constexpr std::size_t reservedStack = 768 * 1024;

const char* stackEndOfThisThread()
{
    pthread_attr_t attributes;
    void* lowest = nullptr;
    std::size_t size = 0;
    if (pthread_getattr_np(pthread_self(), &attributes) == 0) {
        pthread_attr_getstack(&attributes, &lowest, &size);
        pthread_attr_destroy(&attributes);
    }
    return static_cast<const char*>(lowest) + std::min(reservedStack, size / 4);
}

PointerMap<OpaqueJSContext, PageState>& openPages()
{
    static PointerMap<OpaqueJSContext, PageState> pages;
    return pages;
}

JSValueRef rejectionUnhandled(
    JSContextRef ctx, JSObjectRef, JSObjectRef, std::size_t count, const JSValueRef arguments[], JSValueRef*)
{
    if (count == 2 && JSValueIsObject(ctx, arguments[0])) {
        const JSContextRef owner = JSObjectGetGlobalContext(asObject(arguments[0]));
        if (PageState* page = Engine::pageOf(owner))
            page->reportThrown(arguments[1]);
    }
    return JSValueMakeUndefined(ctx);
}

} // namespace

Engine::Engine()
    : m_group(JSContextGroupCreate())
    , m_service(JSGlobalContextCreateInGroup(m_group, nullptr))
    , m_rejectionListener(
          JSObjectMakeFunctionWithCallback(m_service, Text("rejectionUnhandled"), rejectionUnhandled))
    , m_stackEnd(stackEndOfThisThread())
{
    JSValueProtect(m_service, m_rejectionListener);
    JSContextGroupAddHeapFinalizer(m_group, collected, this);
}

Engine::~Engine()
{
    JSContextGroupRemoveHeapFinalizer(m_group, collected, this);
    JSValueUnprotect(m_service, m_rejectionListener);
    JSGlobalContextRelease(m_service);
    JSContextGroupRelease(m_group);
}

void Engine::addPage(JSGlobalContextRef ctx, PageState* page)
{
    openPages().insert(ctx, page);
    m_pages.push_back(page);
}

void Engine::removePage(JSGlobalContextRef ctx, PageState* page)
{
    openPages().erase(ctx);
    std::erase(m_pages, page);
}

PageState* Engine::pageOf(JSContextRef ctx)
{
    return openPages().find(JSContextGetGlobalContext(ctx));
}

// Runs inside a collection, where nothing of the API may be called.
void Engine::collected(JSContextGroupRef, void* engine)
{
    auto* self = static_cast<Engine*>(engine);
    if (self->m_sweepPosted)
        return;
    self->m_sweepPosted = true;
    QMetaObject::invokeMethod(
        &self->m_mailbox, [self] { self->sweep(); }, Qt::QueuedConnection);
}

void Engine::sweep()
{
    m_sweepPosted = false;
    // A native object that goes may close pages.
    const std::vector<PageState*> pages = m_pages;
    for (PageState* page : pages) {
        if (std::find(m_pages.begin(), m_pages.end(), page) != m_pages.end())
            page->wrappers().sweep();
    }
}

void Engine::collectGarbage()
{
    JSSynchronousGarbageCollectForDebugging(m_service);
    sweep();
}

} // namespace jsc

namespace {

class JscEngine final : public ScriptEngine {
public:
    std::unique_ptr<Page> openPage(const PageOptions& options, PageHost host) override
    {
        return std::make_unique<jsc::JscPage>(m_engine, options, std::move(host));
    }
    void collectGarbage() override { m_engine->collectGarbage(); }

private:
    std::shared_ptr<jsc::Engine> m_engine = std::make_shared<jsc::Engine>();
};

} // namespace

std::unique_ptr<ScriptEngine> makeJscEngine()
{
    return std::make_unique<JscEngine>();
}

} // namespace engine
