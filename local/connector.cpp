#include "local/connector.h"

#include "local/networkaddress.h"

#include <QSslSocket>
#include <algorithm>

namespace jsapi {

namespace {

constexpr int MostTried = 8;
/// How long an address has for itself before the next one is tried as well.
constexpr int HeadStartMs = 250;

} // namespace

KConnector::KConnector(
    const JSContextEnv& page, const QString& host, quint16 port, bool secure, Done done, QObject* parent)
    : QObject(parent)
    , m_page(page)
    , m_port(port)
    , m_isSecure(secure)
    , m_done(std::move(done))
{
    m_next.setSingleShot(true);
    connect(&m_next, &QTimer::timeout, this, &KConnector::tryNext);
    // To look an address up would be to ask for its name.
    const QHostAddress literal(host);
    if (literal.isNull())
        m_lookup = QHostInfo::lookupHost(host, this, SLOT(onLookedUp(QHostInfo)));
    else
        QMetaObject::invokeMethod(
            this, [this, literal] { judge({ literal }); }, Qt::QueuedConnection);
}

KConnector::~KConnector()
{
    if (m_lookup >= 0)
        QHostInfo::abortHostLookup(m_lookup);
}

void KConnector::stop()
{
    m_done = nullptr;
    m_next.stop();
    deleteLater();
}

void KConnector::onLookedUp(const QHostInfo& info)
{
    m_lookup = -1;
    judge(info.addresses());
}

void KConnector::judge(const QList<QHostAddress>& addresses)
{
    if (!m_done)
        return;
    if (addresses.isEmpty())
        return finish(NetworkError::HostNotFound);
    for (const QHostAddress& address : addresses) {
        if (m_untried.size() < MostTried
            && (!isPrivateAddress(address)
                || isPermitted(m_page, KPagePermission::ReachPrivateNetwork, address.toString())))
            m_untried.push_back(address);
    }
    if (m_untried.empty())
        return finish(NetworkError::NotPermitted);
    std::reverse(m_untried.begin(), m_untried.end());
    tryNext();
}

void KConnector::tryNext()
{
    if (m_untried.empty()) {
        if (m_connecting == 0)
            finish(NetworkError::ConnectionFailed);
        return;
    }
    const QHostAddress address = m_untried.back();
    m_untried.pop_back();
    QTcpSocket* socket = m_isSecure ? new QSslSocket(this) : new QTcpSocket(this);
    connect(socket, &QTcpSocket::connected, this, [this, socket] { finish(socket); });
    connect(
        socket, &QTcpSocket::errorOccurred, this,
        [this] {
            --m_connecting;
            if (m_done)
                tryNext();
        },
        Qt::QueuedConnection);
    ++m_connecting;
    m_next.start(HeadStartMs);
    socket->connectToHost(address, m_port);
}

void KConnector::finish(const Connected& connected)
{
    m_next.stop();
    QTcpSocket* const* taken = std::get_if<QTcpSocket*>(&connected);
    const auto sockets = findChildren<QTcpSocket*>(QString(), Qt::FindDirectChildrenOnly);
    for (QTcpSocket* socket : sockets) {
        socket->disconnect(this);
        if (!taken || socket != *taken)
            socket->abort();
    }
    const Done done = std::exchange(m_done, nullptr);
    if (done)
        done(connected); // destroys this, perhaps
}

} // namespace jsapi
