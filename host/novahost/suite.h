// The stand-in suite of one novahost process: profile, state, JS core, the library, and the script engine.
#pragma once

#include "host/engine/page.h"
#include "host/novahost/browser.h"
#include "host/novahost/options.h"
#include "host/novahost/pageplays.h"
#include "host/suite/web/webshell.h"

#include <QLibrary>
#include <QPointer>

namespace novahost {

/// Started once; shuts down in the order of a suite: pages, engine, library, core. [GUI thread]
class Suite {
public:
    /// Loads the profile and makes the data directory, before there is an application. Returns the error,
    /// with advice, or an empty string.
    static QString prepare(const Options& options);
    /// Starts everything. Null on failure, with the error and advice in `error`, and nothing left running.
    static std::unique_ptr<Suite> start(const Options& options, QString& error);
    ~Suite();
    Suite(const Suite&) = delete;
    Suite& operator=(const Suite&) = delete;

    engine::ScriptEngine& scriptEngine() { return *m_engine; }
    /// Opens a page in a browser with the properties of the profile, ready to run script, which may use
    /// process.play.
    std::unique_ptr<engine::Page> openPage(const QStringList& arguments, engine::PageHost host);
    /// Makes a window with a page at this address, not shown. It ends the event loop when it goes. Null on failure, with the
    /// error and advice in `error`.
    suite::WebShell* openWindow(const QUrl& url, const QString& title, QString& error);
    /// Ends what is written down meanwhile. Returns false, after a message, when it could not all be written.
    bool finishWatching();
    /// Destroys all windows with their pages.
    void closeWindows();
    Browser& browser() { return m_browser; }
    /// Called once, when a script in the browser engine has returned to the event loop for the first time.
    std::function<void()> scriptBegan;
    /// The windows that are shown on a display, but for that of the page that openPage() has opened.
    QStringList shownWindows() const;
    /// The steps that are left of what that page plays.
    QStringList playsLeft() const;
    /// The library's function of members that are not built; null if the library does not export it.
    JSMemberInvoke notSupported() const { return m_notSupported; }

private:
    Suite();
    /// Makes the window of a page; a null title: none.
    void makeWindow(const QString& title, const QString& viewId);
    bool loadLibrary(const QString& file, QString& error);
    /// Begins to trace, record and check what pages do. Returns the error, with advice, or an empty string.
    QString watch(const Options& options);
    /// Shows the window of a page that is about to be opened.

    QLibrary m_library;
    JSMemberInvoke m_notSupported = nullptr;
    std::unique_ptr<engine::ScriptEngine> m_engine;
    struct Watchers;
    std::unique_ptr<Watchers> m_watchers;
    QString m_windowTitle;              ///< null without --window
    QPointer<suite::WebShell> m_window; ///< of the last page; a page may have destroyed it
    Browser m_browser;
    bool m_isEvaluation = false;
    bool m_inBrowser = false;
    int m_timeLimitMs = 0;
    int m_pages = 0;
    std::weak_ptr<PagePlays> m_plays; ///< of the last page
};

} // namespace novahost
