// A browser whose load finished before it started, in a group.
#pragma once

#include "vexlite/jscore.h"

class FakeBrowser final : public IVEXBrowser, public IVEXBrowserGroup {
public:
    std::int64_t ProcessId() const override { return 11; }
    QString ApplicationId() const override { return QStringLiteral("app"); }
    QString SessionId() const override { return QStringLiteral("session"); }
    QString BrowserId() const override { return QStringLiteral("browser"); }
    VEXBrowserTimes Times() const override { return { 100, 130, 500, 570, 400 }; }
    std::uint32_t Window() const override { return window; }
    IVEXBrowserGroup* Group() const override { return const_cast<FakeBrowser*>(this); }
    std::int64_t Mark1() const override { return 1000; }
    std::int64_t Mark2() const override { return 1025; }

    std::uint32_t window = 0;
};
