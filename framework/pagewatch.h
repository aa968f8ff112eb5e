// PageWatch: whether a page is still shown, for work that lasts longer than a call.
#pragma once

#include "vexlite/jscore.h"

/// The browser that shows a page, null when there is none. Borrowed until the caller returns. [GUI thread]
IVEXBrowser* browserOf(const JSContextEnv& page);

/// Watches the browser of a page; one that had none when its watch began is never gone. Whoever shows another
/// page in the same browser keeps it there: what is sent to the page that has gone is dropped by the JS core.
/// [GUI thread]
class PageWatch {
public:
    explicit PageWatch(const JSContextEnv& page)
        : m_page(page)
        , m_hadBrowser(browserOf(page))
    {
    }
    const JSContextEnv& page() const { return m_page; }
    bool isGone() const { return m_hadBrowser && !browserOf(m_page); }

private:
    JSContextEnv m_page;
    bool m_hadBrowser;
};
