// Engine: what all pages share, which is little: every page has a script heap of its own, so that its tasks
// run and its memory goes whatever the other pages do. What is common is the stack.
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
    /// Calls that may lie on top of each other: host to script or script to native, each counts one.
    static constexpr int maximumNesting = 200;

    Engine();
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;

    void addPage(JSGlobalContextRef ctx, PageState* page);
    void removePage(JSGlobalContextRef ctx, PageState* page);
    /// The page that a running function belongs to; null when it has closed.
    static PageState* pageOf(JSContextRef ctx);

    /// False when one more call could run out of stack.
    bool canNest() const { return m_nesting < maximumNesting && !stackIsShort(); }
    /// True when less stack is left than native code may count on.
    bool stackIsShort() const { return static_cast<const char*>(__builtin_frame_address(0)) < m_stackEnd; }
    void enter() { ++m_nesting; }
    void leave() { --m_nesting; }

    /// Collects everything now and gives back what wrappers held.
    void collectGarbage();

private:
    const char* m_stackEnd;
    int m_nesting = 0;
    std::vector<PageState*> m_pages;
};

} // namespace engine::jsc
