#include "host/jsc/engine.h"

#include "host/jsc/page.h"
#include "host/jsc/pagestate.h"

#include <algorithm>
#include <pthread.h>

namespace engine {

namespace jsc {

namespace {

// Stack that native handlers and Qt may use without a check.
constexpr std::size_t reservedStack = std::size_t { 768 } << 10;

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

} // namespace

Engine::Engine()
    : m_stackEnd(stackEndOfThisThread())
{
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

PageState* Engine::findPage(JSContextRef ctx)
{
    return openPages().find(JSContextGetGlobalContext(ctx));
}

void Engine::collectGarbage()
{
    // A copy: destroying a native object may close pages.
    const std::vector<PageState*> pages = m_pages;
    for (PageState* page : pages) {
        if (std::find(m_pages.begin(), m_pages.end(), page) == m_pages.end())
            continue;
        JSSynchronousGarbageCollectForDebugging(page->ctx());
        page->wrappers().sweep();
    }
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
