#include "local/network/httptransfer.h"

#include "framework/libraryowner.h"
#include "local/network/transferqueue.h"

#include <QNetworkAccessManager>
#include <algorithm>

namespace jsapi {

namespace {

constexpr int MostRedirects = 20;
constexpr qint64 ReadAheadBytes = 1 << 20;
constexpr int MostHeadBytes = 256 << 10;
constexpr int ErrorStatus = 400;

/// What is sent behind the headers. It can not be read again: of a request that may do something each time it arrives, such
/// as POST, QNetworkAccessManager would send another one when a server closes the connection without a response.
class RequestBody final : public QIODevice {
public:
    explicit RequestBody(QByteArray bytes)
        : m_bytes(std::move(bytes))
    {
        open(ReadOnly | Unbuffered);
    }
    bool isSequential() const override { return true; }
    bool reset() override { return false; }
    bool atEnd() const override { return m_read == m_bytes.size(); }
    qint64 bytesAvailable() const override { return m_bytes.size() - m_read; }

private:
    qint64 readData(char* to, qint64 most) override
    {
        if (atEnd())
            return -1;
        const qint64 count = std::min(most, bytesAvailable());
        std::copy_n(m_bytes.constData() + m_read, count, to);
        m_read += count;
        return count;
    }
    qint64 writeData(const char* /*from*/, qint64 /*count*/) override { return -1; }

    QByteArray m_bytes;
    qint64 m_read = 0;
};

QNetworkRequest makeRequest(
    const HttpRequest& request, const QHostAddress& address, const QByteArray& acceptEncoding)
{
    QUrl url = request.url;
    url.setHost(address.toString());
    QNetworkRequest made(url);
    const QString name = hostOf(request.url);
    made.setPeerVerifyName(name);
    QByteArray host = name.toLatin1();
    if (host.contains(':'))
        host = '[' + host + ']';
    if (request.url.port() >= 0)
        host += ':' + QByteArray::number(request.url.port());
    made.setRawHeader("Host", host);
    // Given, it is not undone by Qt, which does so without a limit.
    made.setRawHeader("Accept-Encoding", acceptEncoding);
    made.setRawHeader("Accept", "*/*");
    for (const auto& [header, value] : request.headers)
        made.setRawHeader(header, value);
    using Request = QNetworkRequest;
    made.setAttribute(Request::RedirectPolicyAttribute, Request::ManualRedirectPolicy);
    made.setAttribute(Request::CookieLoadControlAttribute, Request::Manual);
    made.setAttribute(Request::CookieSaveControlAttribute, Request::Manual);
    // Nor does Qt send the user's tickets to a server that asks for them.
    made.setAttribute(Request::AuthenticationReuseAttribute, Request::Manual);
    made.setAttribute(Request::Http2AllowedAttribute, false);
    return made;
}

QNetworkReply* sendTo(TransferQueue::PageNetwork& network, QNetworkRequest request, const QByteArray& method,
    const QByteArray& body)
{
    if (method == "GET")
        return network.manager->get(request);
    if (method == "HEAD")
        return network.manager->head(request);
    request.setAttribute(QNetworkRequest::DoNotBufferUploadDataAttribute, true);
    request.setHeader(QNetworkRequest::ContentLengthHeader, body.size());
    auto* device = new RequestBody(body);
    // A connection that was used before may be one that the server is about to close.
    QNetworkReply* reply = transferQueue().managerForOne().sendCustomRequest(request, method, device);
    device->setParent(reply);
    return reply;
}

/// Nothing for one that must not be used.
std::optional<HttpHead> makeHead(const QNetworkReply& reply)
{
    HttpHead head;
    head.status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    head.statusText = reply.attribute(QNetworkRequest::HttpReasonPhraseAttribute).toString();
    head.headers = reply.rawHeaderPairs();
    int size = 0;
    for (const auto& [name, value] : head.headers)
        size += name.size() + value.size();
    if (head.status < OkStatus || size > MostHeadBytes)
        return std::nullopt;
    if (reply.hasRawHeader("Content-Length") && !reply.hasRawHeader("Transfer-Encoding")) {
        bool isNumber = false;
        head.length = reply.rawHeader("Content-Length").toLongLong(&isNumber);
        // Such as two of them.
        if (!isNumber || *head.length < 0)
            return std::nullopt;
    }
    return head;
}

/// Whether a reply's error only says what its status says.
bool isOfStatus(const QNetworkReply& reply)
{
    const QNetworkReply::NetworkError error = reply.error();
    return error > QNetworkReply::UnknownNetworkError && error != QNetworkReply::ProtocolUnknownError
        && error != QNetworkReply::ProtocolFailure
        && reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt() >= ErrorStatus;
}

std::optional<NetworkError> errorOf(const QNetworkReply& reply, bool hasHead)
{
    switch (reply.error()) {
    case QNetworkReply::NoError:
        return hasHead ? std::nullopt : std::optional(NetworkError::ResponseIsBroken);
    case QNetworkReply::SslHandshakeFailedError:
        return NetworkError::TlsFailed;
    case QNetworkReply::TimeoutError:
        return NetworkError::TimedOut;
    case QNetworkReply::ProtocolUnknownError:
    case QNetworkReply::ProtocolFailure:
        return NetworkError::ResponseIsBroken;
    default:
        break;
    }
    if (hasHead)
        return isOfStatus(reply) ? std::nullopt : std::optional(NetworkError::ResponseIsBroken);
    return NetworkError::ConnectionFailed;
}

} // namespace

QByteArray HttpHead::value(const char* name) const
{
    const auto found = std::find_if(headers.begin(), headers.end(),
        [&](const auto& header) { return header.first.compare(name, Qt::CaseInsensitive) == 0; });
    return found == headers.end() ? QByteArray() : found->second;
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
    drop();
    m_request = m_first;
    hop();
}

void KHttpTransfer::hop()
{
    if (!isPermitted(page(), KPagePermission::ReachNetwork, originOf(m_request.url)))
        return finish(NetworkError::NotPermitted);
    if (++m_hops > MostRedirects + 1)
        return finish(NetworkError::TooManyRedirects);
    m_patience.start();
    m_finder = new KAddressFinder(
        page(), m_request.url, transferQueue().networkOf(page()).alive.value(originOf(m_request.url)),
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
    TransferQueue::PageNetwork& network = transferQueue().networkOf(page());
    network.alive.insert(originOf(m_request.url), address);
    m_hasHead = false;
    m_reply =
        sendTo(network, makeRequest(m_request, address, m_acceptEncoding), m_request.method, m_request.body);
    m_reply->setReadBufferSize(ReadAheadBytes);
    const auto restartPatience = [this] { m_patience.start(); };
    connect(m_reply, &QNetworkReply::encrypted, this, restartPatience);
    connect(m_reply, &QNetworkReply::uploadProgress, this, restartPatience);
    connect(m_reply, &QNetworkReply::metaDataChanged, this, &KHttpTransfer::readHead);
    connect(m_reply, &QNetworkReply::readyRead, this, &KHttpTransfer::readContent);
    connect(m_reply, &QNetworkReply::finished, this, &KHttpTransfer::readEnd);
}

void KHttpTransfer::readHead()
{
    if (std::exchange(m_hasHead, true))
        return;
    m_patience.start();
    const std::optional<HttpHead> head = makeHead(*m_reply);
    if (!head) {
        // To Qt, what only says that a response comes is the response, but for 100, and that one would be the next request's.
        transferQueue().renewConnections(page());
        return finish(NetworkError::ResponseIsBroken);
    }
    const int status = head->status;
    const QByteArray location = head->value("location");
    const bool isRedirect = status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
    if (isRedirect && !location.isEmpty()) {
        drop();
        if (!redirectRequest(m_request, status, location))
            return finish(NetworkError::RedirectIsIllegal);
        return hop();
    }
    if (const Outcome outcome = begin(*head))
        finish(outcome);
}

void KHttpTransfer::readContent()
{
    m_patience.start();
    if (const Outcome outcome = take(m_reply->readAll()))
        finish(outcome);
}

void KHttpTransfer::readEnd()
{
    const Outcome outcome = errorOf(*m_reply, m_hasHead);
    if (outcome && !m_hasHead)
        transferQueue().networkOf(page()).alive.remove(originOf(m_request.url));
    else
        readContent();
    finish(outcome);
}

/// Both may be what calls, so they go later.
void KHttpTransfer::drop()
{
    m_patience.stop();
    if (KAddressFinder* finder = std::exchange(m_finder, nullptr))
        finder->stop();
    if (QNetworkReply* reply = m_reply) {
        m_reply = nullptr;
        reply->disconnect(this);
        reply->abort();
        reply->deleteLater();
    }
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
    drop();
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
