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
    /// The directory that is served as nova://app/.
    void setApplication(const QString& directory) { m_application = directory; }
    /// What a view shows when it is made.
    void setFirstPage(const QString& viewId, const QUrl& url) { m_firstPages[viewId] = url; }
    /// Called when a view has loaded its page, or failed to.
    std::function<void(const QString& viewId, bool ok)> loaded;

private:
    engine::WebEngineHost host();

    QLibrary m_library;
    std::unique_ptr<engine::WebEngine> m_engine;
    QString m_application;
    QHash<QString, QUrl> m_firstPages;
};

} // namespace novahost
