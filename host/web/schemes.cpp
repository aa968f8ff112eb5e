#include "host/web/schemes.h"

#include "host/web/replies.h"
#include "host/web/webpage.h"

#include <QBuffer>
#include <QFileInfo>
#include <QMimeDatabase>
#include <QWebEngineUrlRequestJob>
#include <QWebEngineUrlScheme>

namespace engine::web {

namespace {

/// What browsers refuse to run as a script under another type is not left to the types that this machine knows.
QByteArray contentTypeOf(const QFileInfo& file)
{
    static const QHash<QString, QByteArray> known {
        { QStringLiteral("css"), "text/css" },
        { QStringLiteral("htm"), "text/html" },
        { QStringLiteral("html"), "text/html" },
        { QStringLiteral("js"), "text/javascript" },
        { QStringLiteral("json"), "application/json" },
        { QStringLiteral("mjs"), "text/javascript" },
        { QStringLiteral("svg"), "image/svg+xml" },
        { QStringLiteral("txt"), "text/plain" },
        { QStringLiteral("wasm"), "application/wasm" },
    };
    const QByteArray type = known.value(file.suffix().toLower());
    return type.isEmpty() ? QMimeDatabase().mimeTypeForFile(file).name().toLatin1() : type;
}

} // namespace

void replyWith(QWebEngineUrlRequestJob& job, const QByteArray& contentType, const QByteArray& content)
{
    auto* buffer = new QBuffer(&job);
    buffer->setData(content);
    buffer->open(QIODevice::ReadOnly);
    job.reply(contentType, buffer);
}

void registerSchemes()
{
    QWebEngineUrlScheme files("nova");
    files.setSyntax(QWebEngineUrlScheme::Syntax::Host);
    // Without CORS: no page of another origin can read what is here.
    files.setFlags(QWebEngineUrlScheme::SecureScheme);
    QWebEngineUrlScheme::registerScheme(files);
    QWebEngineUrlScheme bridge("nova-bridge");
    bridge.setSyntax(QWebEngineUrlScheme::Syntax::Host);
    bridge.setFlags(QWebEngineUrlScheme::SecureScheme | QWebEngineUrlScheme::CorsEnabled
        | QWebEngineUrlScheme::ContentSecurityPolicyIgnored);
    QWebEngineUrlScheme::registerScheme(bridge);
    QWebEngineUrlScheme images(SkinImageScheme);
    images.setSyntax(QWebEngineUrlScheme::Syntax::Host);
    // Pages of all origins show them, and no script can fetch them.
    images.setFlags(QWebEngineUrlScheme::SecureScheme);
    QWebEngineUrlScheme::registerScheme(images);
}

void SkinImagesHandler::requestStarted(QWebEngineUrlRequestJob* job)
{
    const QByteArray image = job->requestMethod() == "GET" ? m_draw(job->requestUrl()) : QByteArray();
    if (image.isEmpty())
        return job->fail(QWebEngineUrlRequestJob::UrlNotFound);
    replyWith(*job, "image/png", image);
}

void FilesHandler::requestStarted(QWebEngineUrlRequestJob* job)
{
    const QUrl url = job->requestUrl();
    // Pages from elsewhere neither go to pages of the application nor show parts of them. Nor do those without an origin:
    // any page can have such a frame.
    const bool isForeign = !job->initiator().isEmpty() && job->initiator().scheme() != QLatin1String("nova");
    if (job->requestMethod() != "GET" || isForeign)
        return job->fail(QWebEngineUrlRequestJob::RequestDenied);
    if (url.host() == QLatin1String("script") && url.path() == QLatin1String("/"))
        return replyWith(*job, "text/html", "<!doctype html><title>script</title>");
    const QString directory = m_directory(url.host());
    if (directory.isEmpty())
        return job->fail(QWebEngineUrlRequestJob::UrlNotFound);
    const QString root = QFileInfo(directory).canonicalFilePath();
    QString path = root + url.path(QUrl::FullyDecoded);
    if (path.endsWith(QLatin1Char('/')))
        path += QStringLiteral("index.html");
    const QFileInfo info(QFileInfo(path).canonicalFilePath());
    const bool isInside = info.filePath().startsWith(root + QLatin1Char('/')) || root == QLatin1String("/");
    // Only files: a pipe or a device would never end.
    if (root.isEmpty() || !isInside || !info.isFile()) {
        m_missing(url, path);
        return job->fail(QWebEngineUrlRequestJob::UrlNotFound);
    }
    auto* file = new QFile(info.filePath(), job);
    if (!file->open(QIODevice::ReadOnly))
        return job->fail(QWebEngineUrlRequestJob::RequestDenied);
    job->reply(contentTypeOf(info), file);
}

void BridgeHandler::requestStarted(QWebEngineUrlRequestJob* job)
{
    const QUrl url = job->requestUrl();
    const QStringList path = url.path().split(QLatin1Char('/'), Qt::SkipEmptyParts);
    Bridge* bridge = path.isEmpty() ? nullptr : m_find(path.first());
    if (!bridge || !bridge->hold(originOf(job->initiator()), url.host(), path, job))
        job->fail(QWebEngineUrlRequestJob::RequestDenied);
}

} // namespace engine::web
