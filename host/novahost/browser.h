// The browser engine of a novahost process: a plug-in, loaded when the first page is opened in a window.
#pragma once

#include "host/engine/webengine.h"

#include <QHash>
#include <QLibrary>

namespace novahost {

/// [GUI thread]
class Browser {
public:
    Browser();
    ~Browser();
    Browser(const Browser&) = delete;
    Browser& operator=(const Browser&) = delete;

    /// Loads the engine when it is not there. Null on failure, with the error and advice in `error`.
    engine::WebEngine* engine(QString& error);
    /// Ends the engine. There must be no view any more.
    void stop();
    /// The directory that is served as nova://app/. A view that is made shows the page of its name there, if there is one.
    void setApplication(const QString& directory) { m_application = directory; }
    /// The directory that is served as nova://script/, from which scripts and inputs import modules.
    void setScripts(const QString& directory) { m_scripts = directory; }
    /// Says what a view shows when it is made: an address, or the page that the engine has opened for it.
    void expect(const QString& viewId, const QUrl& url = {}) { m_expected[viewId] = url; }
    /// The same while the engine runs; false when it does not.
    bool choosePage(const QString& viewId, const QUrl& url);
    /// A view of this identifier; null when there is nothing for it to show, or no engine.
    std::unique_ptr<engine::View> makeView(const QString& viewId, engine::ViewHost host);
    /// Called when the first page has been opened, once.
    std::function<void()> opened;
    /// Called when a view has loaded its page, or failed to.
    std::function<void(const QString& viewId, bool ok)> loaded;

private:
    engine::WebEngineHost host();
    QUrl pageOf(const QString& viewId) const;

    QLibrary m_library;
    std::unique_ptr<engine::WebEngine> m_engine;
    QString m_application;
    QString m_scripts;
    QHash<QString, QUrl> m_expected;
};

} // namespace novahost
