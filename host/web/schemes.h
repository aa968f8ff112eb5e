// The schemes: nova://HOST/ serves the application's pages from directories, nova-bridge:// holds requests of the bridge,
// nova-skin:// serves images of the suite's theme.
#pragma once

#include "host/engine/webengine.h"
#include "host/web/bridge.h"

#include <QWebEngineUrlSchemeHandler>

namespace engine::web {

/// Makes the schemes known. Before the browser engine starts.
void registerSchemes();

/// Serves files. A page sees what lies in its host's directory, wherever links lead; an address without a file name stands
/// for index.html. nova://script/ is an empty document.
class FilesHandler final : public QWebEngineUrlSchemeHandler {
public:
    /// `missing` is called for a file that there is not, with the path where it would be.
    FilesHandler(std::function<QString(const QString& host)> directory,
        std::function<void(const QUrl& url, const QString& path)> missing)
        : m_directory(std::move(directory))
        , m_missing(std::move(missing))
    {
    }
    void requestStarted(QWebEngineUrlRequestJob* job) override;

private:
    std::function<QString(const QString& host)> m_directory;
    std::function<void(const QUrl& url, const QString& path)> m_missing;
};

/// Serves what the suite draws for addresses of SkinImageScheme.
class SkinImagesHandler final : public QWebEngineUrlSchemeHandler {
public:
    explicit SkinImagesHandler(std::function<QByteArray(const QUrl& url)> draw)
        : m_draw(std::move(draw))
    {
    }
    void requestStarted(QWebEngineUrlRequestJob* job) override;

private:
    std::function<QByteArray(const QUrl& url)> m_draw;
};

/// Finds the bridge of the document for nova-bridge://KIND/FRAME/NUMBER.
class BridgeHandler final : public QWebEngineUrlSchemeHandler {
public:
    explicit BridgeHandler(std::function<Bridge*(const QString& frame)> find)
        : m_find(std::move(find))
    {
    }
    void requestStarted(QWebEngineUrlRequestJob* job) override;

private:
    std::function<Bridge*(const QString& frame)> m_find;
};

} // namespace engine::web
