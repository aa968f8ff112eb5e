#include "local/httptransfer.h"

#include "framework/libraryowner.h"
#include "local/transferqueue.h"

#include <QNetworkAccessManager>

namespace jsapi {

namespace {

constexpr int MostRedirects = 20;
/// What Qt may read ahead of us.
constexpr qint64 ReadAheadBytes = 4 << 20;

/// Made with the first request. Has no cookies, no cache and no credentials.
QNetworkAccessManager& networkManager()
{
    static QPointer<QNetworkAccessManager> manager;
    if (!manager)
        manager = new QNetworkAccessManager(libraryOwner());
    return *manager;
}

QNetworkRequest makeRequest(
    const HttpRequest& request, const QHostAddress& address, const QByteArray& acceptEncoding)
{
    QUrl url = request.url;
    QString name = url.host(QUrl::FullyEncoded);
    if (name.endsWith(QLatin1Char('.')))
        name.chop(1);
    const bool isLiteral = !QHostAddress(name).isNull();
    url.setHost(address.toString());
    QNetworkRequest made(url);
    made.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    made.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    made.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    made.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    made.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    made.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
    // There the header Host would be another one.
    made.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    for (const auto& [header, value] : request.headers)
        made.setRawHeader(header, value);
    // Qt would undo the compression without a limit, if this were its own.
    made.setRawHeader("Accept-Encoding", acceptEncoding);
    if (!isLiteral) {
        const int port = request.url.port();
        made.setRawHeader(
            "Host", name.toLatin1() + (port < 0 ? QByteArray() : ':' + QByteArray::number(port)));
        made.setPeerVerifyName(name);
    }
    return made;
}

QNetworkReply* sendRequest(const HttpRequest& request, const QNetworkRequest& made)
{
    QNetworkAccessManager& manager = networkManager();
    // Qt knows of the responses to these alone that they have no content, or that nothing is sent.
    if (request.method == "GET")
        return manager.get(made);
    if (request.method == "HEAD")
        return manager.head(made);
    if (request.body.isEmpty() && request.method == "DELETE")
        return manager.deleteResource(made);
    return manager.sendCustomRequest(made, request.method, request.body);
}

NetworkError toNetworkError(QNetworkReply::NetworkError error, bool hasHead)
{
    switch (error) {
    case QNetworkReply::SslHandshakeFailedError:
        return NetworkError::TlsFailed;
    case QNetworkReply::TimeoutError:
        return NetworkError::TimedOut;
    case QNetworkReply::ProtocolFailure:
    case QNetworkReply::ProtocolUnknownError:
        return NetworkError::ResponseIsBroken;
    default:
        return hasHead ? NetworkError::ResponseIsBroken : NetworkError::ConnectionFailed;
    }
}

/// Whether an error of Qt's is no more than a status of the server's.
bool isStatus(QNetworkReply::NetworkError error)
{
    return error == QNetworkReply::ProxyAuthenticationRequiredError
        || (error > QNetworkReply::UnknownProxyError && error != QNetworkReply::ProtocolUnknownError
            && error != QNetworkReply::ProtocolFailure);
}

} // namespace

QByteArray HttpHead::value(const char* name) const
{
    for (const auto& [header, value] : headers) {
        if (header.compare(name, Qt::CaseInsensitive) == 0)
            return value;
    }
    return {};
}

KHttpTransfer::KHttpTransfer(Options options)
    : QObject(libraryOwner())
    , m_watch(options.page)
    , m_id(std::move(options.id))
    , m_first(options.request)
    , m_request(std::move(options.request))
    , m_acceptEncoding(std::move(options.acceptEncoding))
    , m_isDownload(options.isDownload)
{
    m_patience.setSingleShot(true);
    m_patience.setInterval(options.timeoutMs);
    connect(&m_patience, &QTimer::timeout, this, [this] { finish(NetworkError::TimedOut); });
}

void KHttpTransfer::start()
{
    m_hasStarted = true;
    if (const Outcome outcome = prepare())
        return finish(outcome);
    hop();
}

void KHttpTransfer::sendAgain()
{
    dropReply();
    m_request = m_first;
    hop();
}

void KHttpTransfer::hop()
{
    if (!isPermitted(page(), KPagePermission::ReachNetwork, originOf(m_request.url)))
        return finish(NetworkError::NotPermitted);
    if (++m_hops > MostRedirects + 1)
        return finish(NetworkError::TooManyRedirects);
    m_hasHead = false;
    m_patience.start();
    const int port = m_request.url.port(m_request.url.scheme() == QLatin1String("https") ? 443 : 80);
    m_finder = std::make_unique<KAddressFinder>(
        page(), m_request.url.host(QUrl::FullyEncoded), static_cast<quint16>(port),
        [this](const FoundAddress& found) {
            if (const auto* error = std::get_if<NetworkError>(&found))
                finish(*error);
            else
                send(std::get<QHostAddress>(found));
        },
        this);
}

void KHttpTransfer::send(const QHostAddress& address)
{
    m_reply = sendRequest(m_request, makeRequest(m_request, address, m_acceptEncoding));
    m_reply->setReadBufferSize(ReadAheadBytes);
    connect(m_reply, &QNetworkReply::metaDataChanged, this, &KHttpTransfer::readHead);
    connect(m_reply, &QNetworkReply::readyRead, this, &KHttpTransfer::readContent);
    connect(m_reply, &QNetworkReply::finished, this, &KHttpTransfer::readEnd);
    connect(m_reply, &QNetworkReply::uploadProgress, this, [this] { m_patience.start(); });
}

void KHttpTransfer::readHead()
{
    const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (status < 200 || std::exchange(m_hasHead, true))
        return;
    m_patience.start();
    HttpHead head;
    head.headers = m_reply->rawHeaderPairs();
    const QByteArray location = head.value("location");
    const bool isRedirect = status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
    if (isRedirect && !location.isEmpty()) {
        dropReply();
        if (!redirectRequest(m_request, status, location))
            return finish(NetworkError::RedirectIsIllegal);
        return hop();
    }
    head.status = status;
    head.statusText = m_reply->attribute(QNetworkRequest::HttpReasonPhraseAttribute).toString();
    head.url = m_request.url;
    head.redirected = m_hops > 1;
    bool isNumber = false;
    const qint64 length = head.value("content-length").toLongLong(&isNumber);
    if (isNumber && length >= 0)
        head.length = length;
    if (const Outcome outcome = begin(head))
        finish(outcome);
}

void KHttpTransfer::readContent()
{
    if (!m_hasHead || !m_reply)
        return;
    m_patience.start();
    if (const Outcome outcome = take(m_reply->readAll()))
        finish(outcome);
}

void KHttpTransfer::readEnd()
{
    const QNetworkReply::NetworkError error = m_reply->error();
    if (error != QNetworkReply::NoError && !(m_hasHead && isStatus(error)))
        return finish(toNetworkError(error, m_hasHead));
    if (!m_hasHead)
        return finish(NetworkError::ResponseIsBroken);
    if (m_reply->bytesAvailable() > 0)
        readContent();
    finish(std::nullopt);
}

void KHttpTransfer::dropReply()
{
    m_patience.stop();
    if (m_finder)
        m_finder.release()->deleteLater(); // it may be what calls
    if (!m_reply)
        return;
    QNetworkReply* reply = std::exchange(m_reply, nullptr);
    reply->disconnect(this);
    reply->abort();
    reply->deleteLater();
}

void KHttpTransfer::endIfNotPermitted()
{
    if (m_watch.isGone()
        || (m_hasStarted && !isPermitted(page(), KPagePermission::ReachNetwork, originOf(m_request.url))))
        finish(NetworkError::NotPermitted);
}

void KHttpTransfer::finish(Outcome outcome)
{
    if (std::exchange(m_hasEnded, true))
        return;
    dropReply();
    outcome = settle(outcome);
    QMetaObject::invokeMethod(
        this,
        [this, outcome] {
            deleteLater();
            report(outcome);
        },
        Qt::QueuedConnection);
    transferQueue().remove(this);
}

} // namespace jsapi
