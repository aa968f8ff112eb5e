#include "local/network/addressfinder.h"

#include "local/network/httprequest.h"
#include "local/network/networkaddress.h"

#include <QNetworkProxyFactory>
#include <QTcpSocket>
#include <algorithm>

namespace jsapi {

namespace {

constexpr int MostTried = 8;
/// How long an address has for itself before the next one is tried as well.
constexpr int HeadStartMs = 250;

bool goesThroughProxy(const QUrl& url)
{
    const QList<QNetworkProxy> proxies = QNetworkProxyFactory::proxyForQuery(QNetworkProxyQuery(url));
    return !proxies.isEmpty() && proxies.first().type() != QNetworkProxy::NoProxy;
}

} // namespace

KAddressFinder::KAddressFinder(
    const JSContextEnv& page, const QUrl& url, const QHostAddress& alive, Done done, QObject* parent)
    : QObject(parent)
    , m_page(page)
    , m_url(url)
    , m_alive(alive)
    , m_done(std::move(done))
{
    m_next.setSingleShot(true);
    connect(&m_next, &QTimer::timeout, this, &KAddressFinder::tryNext);
    // To look an address up would be to ask for its name.
    const QString host = url.host(QUrl::FullyEncoded);
    const QHostAddress literal(host);
    if (literal.isNull())
        m_lookup = QHostInfo::lookupHost(host, this, SLOT(onLookedUp(QHostInfo)));
    else
        QMetaObject::invokeMethod(
            this, [this, literal] { judge({ literal }); }, Qt::QueuedConnection);
}

KAddressFinder::~KAddressFinder()
{
    if (m_lookup >= 0)
        QHostInfo::abortHostLookup(m_lookup);
}

void KAddressFinder::stop()
{
    m_done = nullptr;
    m_next.stop();
    deleteLater();
}

void KAddressFinder::onLookedUp(const QHostInfo& info)
{
    m_lookup = -1;
    judge(info.addresses());
}

void KAddressFinder::judge(const QList<QHostAddress>& addresses)
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
    if (std::find(m_untried.begin(), m_untried.end(), m_alive) != m_untried.end())
        return finish(m_alive);
    // What a proxy connects to is its own to find out.
    if (m_untried.size() == 1 || goesThroughProxy(m_url))
        return finish(m_untried.front());
    std::reverse(m_untried.begin(), m_untried.end());
    tryNext();
}

void KAddressFinder::tryNext()
{
    if (m_untried.empty()) {
        if (m_connecting == 0)
            finish(NetworkError::ConnectionFailed);
        return;
    }
    const QHostAddress address = m_untried.back();
    m_untried.pop_back();
    auto* socket = new QTcpSocket(this);
    connect(socket, &QTcpSocket::connected, this, [this, address] { finish(address); });
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
    socket->connectToHost(address, portOf(m_url));
}

void KAddressFinder::finish(const FoundAddress& found)
{
    m_next.stop();
    const auto sockets = findChildren<QTcpSocket*>(QString(), Qt::FindDirectChildrenOnly);
    for (QTcpSocket* socket : sockets) {
        socket->disconnect(this);
        socket->abort();
    }
    const Done done = std::exchange(m_done, nullptr);
    if (done)
        done(found); // destroys this, perhaps
}

} // namespace jsapi
