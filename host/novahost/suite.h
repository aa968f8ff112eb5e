// The stand-in suite of one novahost process: profile, state, JS core, the library, and the script engine.
#pragma once

#include "host/engine/page.h"
#include "host/novahost/options.h"
#include "host/novahost/pagewindow.h"

#include <QLibrary>

namespace novahost {

/// Started once, and ended in the order that a suite ends: pages, engine, library, core. [GUI thread]
class Suite {
public:
    /// Loads the profile and makes the data directory, before there is an application. Returns an empty text
    /// or what to do about the failure.
    static QString prepare(const Options& options);
    /// Starts everything; on failure `error` says what to do about it and nothing is left running.
    static std::unique_ptr<Suite> start(const Options& options, QString& error);
    ~Suite();
    Suite(const Suite&) = delete;
    Suite& operator=(const Suite&) = delete;

    engine::ScriptEngine& scriptEngine() { return *m_engine; }
    /// A page in a browser as the profile describes it, loaded and ready to run script, which may play.
    std::unique_ptr<engine::Page> openPage(const QStringList& arguments, engine::PageHost host);
    /// The library's function behind members that are not built; null when it does not say.
    JSMemberInvoke notSupported() const { return m_notSupported; }

private:
    Suite() = default;
    bool loadLibrary(const QString& file, QString& error);

    QLibrary m_library;
    JSMemberInvoke m_notSupported = nullptr;
    std::unique_ptr<engine::ScriptEngine> m_engine;
    std::unique_ptr<PageWindow> m_window; ///< null without --window
    int m_pages = 0;
};

} // namespace novahost
