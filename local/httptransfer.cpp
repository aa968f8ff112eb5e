#include "local/httptransfer.h"

#include "framework/libraryowner.h"
#include "local/transferqueue.h"

namespace jsapi {

namespace {

constexpr int MostRedirects = 20;
} // namespace

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
    const bool isSecure = m_request.url.scheme() == QLatin1String("https");
    m_connector = new KConnector(
        page(), m_request.url.host(QUrl::FullyEncoded),
        static_cast<quint16>(m_request.url.port(isSecure ? 443 : 80)), isSecure,
        [this](const Connected& connected) {
            if (const auto* error = std::get_if<NetworkError>(&connected))
                finish(*error);
            else
                send(std::get<QTcpSocket*>(connected));
        },
        this);
}

void KHttpTransfer::send(QTcpSocket* connection)
{
    m_exchange = new KHttpExchange(connection, m_request, m_acceptEncoding,
        { [this](const HttpHead& head) { readHead(head); },
            [this](const QByteArray& content) {
                if (const Outcome outcome = take(content))
                    finish(outcome);
            },
            [this](Outcome outcome) { finish(outcome); }, [this] { m_patience.start(); } },
        this);
}

void KHttpTransfer::readHead(const HttpHead& head)
{
    const int status = head.status;
    const QByteArray location = head.value("location");
    const bool isRedirect = status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
    if (isRedirect && !location.isEmpty()) {
        drop();
        if (!redirectRequest(m_request, status, location))
            return finish(NetworkError::RedirectIsIllegal);
        return hop();
    }
    if (const Outcome outcome = begin(head))
        finish(outcome);
}

/// Both may be what calls, so they go later.
void KHttpTransfer::drop()
{
    m_patience.stop();
    if (KConnector* connector = std::exchange(m_connector, nullptr))
        connector->stop();
    if (KHttpExchange* exchange = std::exchange(m_exchange, nullptr))
        exchange->stop();
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
