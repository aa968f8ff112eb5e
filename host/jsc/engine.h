// Engine: what all pages share, mainly the stack. Every page has a script heap of its own, so its microtasks
// and its memory do not depend on other pages.
#pragma once

#include "host/engine/page.h"
#include "host/jsc/api.h"
#include "host/jsc/pointermap.h"

#include <vector>

namespace engine::jsc {

class PageState;

/// Pages hold it, so it lasts until the last of them has closed. [GUI thread]
class Engine {
public:
    /// The limit of nested calls; one from the host into script or from script into native code counts as
    /// one.
    static constexpr int maximumNesting = 200;

    Engine();
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;

    void addPage(JSGlobalContextRef ctx, PageState* page);
    void removePage(JSGlobalContextRef ctx, PageState* page);
    /// The page of a running function; null when the page is closed.
    static PageState* findPage(JSContextRef ctx);

    /// False when one more call could run out of stack.
    bool canNest() const { return m_nesting < maximumNesting && !stackIsShort(); }
    /// True when less stack is left than native code may need.
    bool stackIsShort() const { return static_cast<const char*>(__builtin_frame_address(0)) < m_stackEnd; }
    void enter() { ++m_nesting; }
    void leave() { --m_nesting; }

    /// Collects garbage in all pages now, and releases what collected wrappers held.
    void collectGarbage();

private:
    const char* m_stackEnd;
    int m_nesting = 0;
    std::vector<PageState*> m_pages;
};

} // namespace engine::jsc
