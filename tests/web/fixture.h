// Pages of the browser engine with NovaExtension.Probe. The engine is one for all tests of the process.
#pragma once

#include "host/engine/webengine.h"
#include "tests/jsc/fixture.h"

#include <QTemporaryDir>

namespace engine::test {

/// The page of the other engine is closed.
class WebTest : public PageTest {
protected:
    WebTest();
    ~WebTest() override;

    /// Makes a view that runs scripts with `page`, or loads the file of nova://app/ with this content.
    void openScript();
    void openPage(const QString& html);
    /// A file that is served as nova://HOST/NAME.
    void write(const QString& host, const QString& name, const QString& content);
    /// Spins the event loop until the console has so many lines.
    bool waitForLines(int count)
    {
        return waitFor([&] { return lines.size() >= count; });
    }
    /// Waits until nothing of any page is left, and expects that it is so.
    void expectNothingLeft();

    std::unique_ptr<View> view;

    static WebEngine& webEngine();
    static inline WebTest* current = nullptr;

private:
    QTemporaryDir m_files;
};

} // namespace engine::test
