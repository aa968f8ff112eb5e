// Engine: the script heap that all pages share, and what keeps calls into it within bounds.
#pragma once

#include "host/engine/page.h"
#include "host/jsc/api.h"
#include "host/jsc/pointermap.h"

#include <QObject>
#include <vector>

namespace engine::jsc {

class PageState;

/// One heap. Pages hold it, so it lasts until the last of them has closed. [GUI thread]
class Engine {
public:
    /// Calls that may lie on top of each other: host to script or script to native, each counts one.
    static constexpr int maximumNesting = 200;

    Engine();
    ~Engine();
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;

    JSContextGroupRef group() const { return m_group; }
    /// The function that hears of promises whose rejection nobody handles. It lives outside every page,
    /// because a page would never go away with a root of its own.
    JSObjectRef rejectionListener() const { return m_rejectionListener; }

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
    static void collected(JSContextGroupRef group, void* engine);
    void sweep();

    JSContextGroupRef m_group;
    JSGlobalContextRef m_service;
    JSObjectRef m_rejectionListener;
    const char* m_stackEnd;
    int m_nesting = 0;
    bool m_sweepPosted = false;
    std::vector<PageState*> m_pages;
    QObject m_mailbox;
};

} // namespace engine::jsc
