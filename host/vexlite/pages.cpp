#include "host/vexlite/pages.h"

namespace vexlite {

namespace {

/// Two ranges, so that a mix-up of the two kinds of id is noticed.
std::int64_t lastContextId = 0;
std::int64_t lastBrowserId = std::int64_t { 1 } << 32;

} // namespace

JSContextEnv Pages::open(ScriptPage* page, std::unique_ptr<Browser> browser)
{
    const JSContextEnv context { ++lastBrowserId, ++lastContextId };
    m_pages.emplace(context.browserId, Entry { context, page, std::move(browser) });
    return context;
}

bool Pages::close(const JSContextEnv& context)
{
    return isOpen(context) && m_pages.erase(context.browserId) != 0;
}

ScriptPage* Pages::find(const JSContextEnv& context) const
{
    const auto found = m_pages.find(context.browserId);
    return found != m_pages.end() && found->second.context == context ? found->second.page : nullptr;
}

Browser* Pages::browser(std::int64_t browserId) const
{
    const auto found = m_pages.find(browserId);
    return found != m_pages.end() ? found->second.browser.get() : nullptr;
}

JSContextEnv Pages::any() const
{
    return m_pages.begin()->second.context;
}

} // namespace vexlite
