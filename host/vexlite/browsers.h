// Browser: the properties of one page's browser, for the library.
#pragma once

#include "host/vexlite/core.h"

namespace vexlite {

class Browser final : public IVEXBrowser, private IVEXBrowserGroup {
public:
    /// Without `groups` the browser is in no group.
    Browser(const BrowserFacts& facts, bool groups)
        : m_facts(facts)
        , m_groups(groups)
    {
    }

    void update(const BrowserFacts& facts) { m_facts = facts; }

    std::int64_t ProcessId() const override;
    QString ApplicationId() const override { return m_facts.applicationId; }
    QString SessionId() const override { return m_facts.sessionId; }
    QString BrowserId() const override { return m_facts.browserId; }
    VEXBrowserTimes Times() const override { return m_facts.times; }
    std::uint32_t Window() const override;
    IVEXBrowserGroup* Group() const override;

private:
    std::int64_t Mark1() const override { return m_facts.groupMark1; }
    std::int64_t Mark2() const override { return m_facts.groupMark2; }

    BrowserFacts m_facts;
    bool m_groups;
};

} // namespace vexlite
