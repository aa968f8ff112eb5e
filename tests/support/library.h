// The library's objects, in the stand-in's JS core.
#pragma once

#include "host/vexlite/failurelog.h"
#include "tests/support/exports.h"
#include "tests/support/page.h"

#include <QCoreApplication>

namespace support {

/// Writes down the failures that pages see, where the environment says so: the test types.failures compares them with
/// those that are described.
inline void recordFailures(vexlite::Core& core)
{
    const QString directory = qEnvironmentVariable("VEXLITE_SEEN_FAILURES");
    if (directory.isEmpty())
        return;
    static vexlite::FailureLog log(directory);
    core.addObserver(&log);
}

/// The core of the process: the library announces its classes to one core only.
inline vexlite::Core& libraryCore()
{
    static vexlite::Core& core = []() -> vexlite::Core& {
        ExtensionFactoryMap factories;
        GetNovaExtensionJsApiObj(&factories);
        vexlite::Core::start({}).setFactories(factories);
        recordFailures(*vexlite::Core::instance());
        return *vexlite::Core::instance();
    }();
    return core;
}

/// A page on which members are called, and what its listeners heard.
class LibraryTest : public testing::Test {
protected:
    void listen(Page& by, const char* of, const char* event, const std::string& note)
    {
        by.listen(by.object(of), event, [this, note](const std::string& payload) {
            notes << QString::fromStdString(withPayload ? note + ' ' + payload : note);
            if (const auto called = std::exchange(onEvent, {}))
                called();
        });
    }
    /// What listeners heard since the last call, once the event loop has run.
    std::string heard()
    {
        QCoreApplication::sendPostedEvents();
        return std::exchange(notes, {}).join(QStringLiteral("; ")).toStdString();
    }

    QStringList notes;
    bool withPayload = false;
    std::function<void()> onEvent; ///< called within the next event, once
    vexlite::Core& core = libraryCore();
    Page page { core };
};

} // namespace support
