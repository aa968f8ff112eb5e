#include "local/httpexchange.h"

#include <QHostAddress>

namespace jsapi {

namespace {

constexpr qint64 ReadAheadBytes = 1 << 20;
constexpr qint64 WriteAheadBytes = 1 << 20;
constexpr int WrittenAtOnce = 1 << 18;

/// The host as it is written in a certificate.
QString serverName(const QUrl& url)
{
    QString name = url.host(QUrl::FullyEncoded);
    if (name.endsWith(QLatin1Char('.')))
        name.chop(1);
    return name;
}

QByteArray makeHead(const HttpRequest& request, const QByteArray& acceptEncoding)
{
    QByteArray host = serverName(request.url).toLatin1();
    if (host.contains(':'))
        host = '[' + host + ']';
    if (request.url.port() >= 0)
        host += ':' + QByteArray::number(request.url.port());
    HttpHeaders headers { { "Host", host }, { "Accept-Encoding", acceptEncoding },
        { "Connection", "close" } };
    if (!hasHeader(request, "user-agent"))
        headers.emplace_back("User-Agent", "Mozilla/5.0");
    if (!hasHeader(request, "accept"))
        headers.emplace_back("Accept", "*/*");
    if (!request.body.isEmpty() || request.method == "POST" || request.method == "PUT"
        || request.method == "PATCH")
        headers.emplace_back("Content-Length", QByteArray::number(request.body.size()));
    headers.insert(headers.end(), request.headers.begin(), request.headers.end());
    QByteArray head = request.method + ' '
        + request.url.toEncoded(QUrl::RemoveScheme | QUrl::RemoveAuthority | QUrl::RemoveFragment)
        + " HTTP/1.1\r\n";
    for (const auto& [name, value] : headers)
        head += name + ": " + value + "\r\n";
    return head + "\r\n";
}

} // namespace

KHttpExchange::KHttpExchange(QTcpSocket* connection, const HttpRequest& request,
    const QByteArray& acceptEncoding, Receiver receiver, QObject* parent)
    : QObject(parent)
    , m_connection(connection)
    , m_requestHead(makeHead(request, acceptEncoding))
    , m_body(request.body)
    , m_reader(request.method != "HEAD")
    , m_receiver(std::move(receiver))
{
    connection->setParent(this);
    connection->setReadBufferSize(ReadAheadBytes);
    connect(connection, &QTcpSocket::readyRead, this, &KHttpExchange::read);
    connect(connection, &QTcpSocket::errorOccurred, this, &KHttpExchange::closed);
    connect(connection, &QTcpSocket::bytesWritten, this, &KHttpExchange::sendBody);
    auto* secure = qobject_cast<QSslSocket*>(connection);
    m_isSecuring = secure;
    if (!secure) {
        sendHead();
        return;
    }
    connect(secure, &QSslSocket::encrypted, this, &KHttpExchange::sendHead);
    connect(secure, &QSslSocket::encryptedBytesWritten, this, &KHttpExchange::sendBody);
    secure->setPeerVerifyName(serverName(request.url));
    secure->startClientEncryption();
}

void KHttpExchange::stop()
{
    if (std::exchange(m_hasStopped, true))
        return;
    m_connection->disconnect(this);
    m_connection->abort();
    deleteLater();
}

void KHttpExchange::sendHead()
{
    m_isSecuring = false;
    m_connection->write(m_requestHead);
    sendBody();
}

void KHttpExchange::sendBody()
{
    if (m_isSecuring)
        return;
    m_receiver.activity();
    const auto* secure = qobject_cast<QSslSocket*>(m_connection);
    while (!m_hasStopped && m_sent < m_body.size()
        && m_connection->bytesToWrite() + (secure ? secure->encryptedBytesToWrite() : 0) < WriteAheadBytes) {
        const qint64 written =
            m_connection->write(m_body.constData() + m_sent, std::min(WrittenAtOnce, m_body.size() - m_sent));
        if (written <= 0)
            return;
        m_sent += static_cast<int>(written);
    }
}

void KHttpExchange::read()
{
    m_receiver.activity();
    m_reader.add(m_connection->readAll());
    while (!m_hasStopped) {
        switch (m_reader.next()) {
        case HttpResponseReader::Step::NeedsMore:
            return;
        case HttpResponseReader::Step::Head:
            m_hasHead = true;
            m_receiver.head(m_reader.head());
            break;
        case HttpResponseReader::Step::Content:
            m_receiver.content(m_reader.takeContent());
            break;
        case HttpResponseReader::Step::End:
            stop();
            m_receiver.end(std::nullopt);
            return;
        case HttpResponseReader::Step::Broken:
            fail(NetworkError::ResponseIsBroken);
            return;
        }
    }
}

void KHttpExchange::closed()
{
    if (m_isSecuring)
        return fail(NetworkError::TlsFailed);
    if (m_connection->error() == QAbstractSocket::RemoteHostClosedError) {
        m_reader.addEnd();
        read();
    }
    if (!m_hasStopped)
        fail(m_hasHead ? NetworkError::ResponseIsBroken : NetworkError::ConnectionFailed);
}

void KHttpExchange::fail(NetworkError error)
{
    stop();
    m_receiver.end(error);
}

} // namespace jsapi
