// Pages: the open pages of the core, by context.
#pragma once

#include "host/vexlite/browsers.h"

#include <unordered_map>

namespace vexlite {

class Pages {
public:
    /// Contexts are never reused in a process.
    JSContextEnv open(ScriptPage* page, std::unique_ptr<Browser> browser);
    /// False when there is no such page.
    bool close(const JSContextEnv& context);
    bool isOpen(const JSContextEnv& context) const { return find(context); }
    /// Null when the page is closed.
    ScriptPage* find(const JSContextEnv& context) const;
    /// Null when no open page has that browser.
    Browser* browser(std::int64_t browserId) const;
    int count() const { return static_cast<int>(m_pages.size()); }
    /// The context of any open page; there must be one.
    JSContextEnv any() const;

private:
    struct Entry {
        JSContextEnv context;
        ScriptPage* page;
        std::unique_ptr<Browser> browser;
    };

    std::unordered_map<std::int64_t, Entry> m_pages; ///< by browser, each of which shows one page
};

} // namespace vexlite
