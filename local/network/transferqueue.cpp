#include "local/network/transferqueue.h"

#include "framework/libraryowner.h"

#include <QNetworkAccessManager>
#include <QNetworkProxyFactory>
#include <algorithm>

namespace jsapi {

namespace {

constexpr int WatchMs = 1000;

/// What the application's proxies are, but a direct connection is made as one through a proxy that the socket finds to be none.
/// Otherwise Qt 5 reads plain HTTP past its buffers: of a response in chunks that is cut off it takes some for whole, and one
/// whose headers do not end keeps the thread of all the page's connections.
class BufferedConnections final : public QNetworkProxyFactory {
    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery& query) override
    {
        QList<QNetworkProxy> proxies = QNetworkProxyFactory::proxyForQuery(query);
        for (QNetworkProxy& proxy : proxies) {
            if (proxy.type() == QNetworkProxy::NoProxy)
                proxy = QNetworkProxy(QNetworkProxy::DefaultProxy);
        }
        return proxies;
    }
};

QNetworkAccessManager* makeManager()
{
    auto* manager = new QNetworkAccessManager(libraryOwner());
    manager->setProxyFactory(new BufferedConnections);
    return manager;
}

} // namespace

TransferQueue& transferQueue()
{
    static TransferQueue queue;
    return queue;
}

TransferQueue::TransferQueue()
{
    m_watch.setInterval(WatchMs);
    QObject::connect(&m_watch, &QTimer::timeout, [this] {
        endWhatIsNotPermitted();
        forgetPages();
    });
}

Answer<void> TransferQueue::add(std::unique_ptr<KHttpTransfer> transfer)
{
    if (find(transfer->page(), transfer->id()))
        return RequestIdInUse;
    int count = 0;
    qint64 bytes = transfer->bodySize();
    for (const KHttpTransfer* other : m_transfers) {
        if (other->page() == transfer->page()) {
            ++count;
            bytes += other->bodySize();
        }
    }
    if (count >= MostOfPage || bytes > MostBodyBytesOfPage)
        return TooManyRequests;
    m_transfers.push_back(transfer.release());
    if (!m_watch.isActive())
        m_watch.start();
    startNext();
    return {};
}

KHttpTransfer* TransferQueue::find(const JSContextEnv& page, const QString& id) const
{
    const auto found = std::find_if(m_transfers.begin(), m_transfers.end(),
        [&](const KHttpTransfer* one) { return one->page() == page && one->id() == id; });
    return found == m_transfers.end() ? nullptr : *found;
}

void TransferQueue::remove(KHttpTransfer* transfer)
{
    m_transfers.erase(std::remove(m_transfers.begin(), m_transfers.end(), transfer), m_transfers.end());
    startNext();
}

TransferQueue::PageNetwork& TransferQueue::networkOf(const JSContextEnv& page)
{
    const auto found = std::find_if(m_networks.begin(), m_networks.end(),
        [&](const PageNetwork& one) { return one.watch.page() == page; });
    if (found != m_networks.end())
        return *found;
    return m_networks.emplace_back(PageNetwork { PageWatch(page), makeManager() });
}

void TransferQueue::renewConnections(const JSContextEnv& page)
{
    forgetUsedManagers();
    m_used.push_back(std::exchange(networkOf(page).manager, makeManager()));
}

QNetworkAccessManager& TransferQueue::managerForOne()
{
    forgetUsedManagers();
    return *m_used.emplace_back(makeManager());
}

void TransferQueue::startNext()
{
    const auto countRunning = [&](const auto& isCounted) {
        return std::count_if(m_transfers.begin(), m_transfers.end(),
            [&](const KHttpTransfer* one) { return one->hasStarted() && isCounted(*one); });
    };
    if (countRunning([](const auto&) { return true; }) >= MostRunning)
        return;
    const auto next = std::find_if(m_transfers.begin(), m_transfers.end(), [&](const KHttpTransfer* waiting) {
        return !waiting->hasStarted() && countRunning([&](const KHttpTransfer& one) {
            return one.page() == waiting->page();
        }) < MostRunningOfPage;
    });
    // One that ends at once starts the one after it.
    if (next != m_transfers.end())
        (*next)->start();
}

void TransferQueue::endWhatIsNotPermitted()
{
    const std::vector<KHttpTransfer*> all = m_transfers; // none of them is destroyed here
    for (KHttpTransfer* transfer : all)
        transfer->endIfNotPermitted();
}

/// After the transfers of a page that has gone have ended.
void TransferQueue::forgetPages()
{
    const auto kept = std::partition(
        m_networks.begin(), m_networks.end(), [](const PageNetwork& one) { return !one.watch.isGone(); });
    std::for_each(kept, m_networks.end(), [](const PageNetwork& one) { one.manager->deleteLater(); });
    m_networks.erase(kept, m_networks.end());
    forgetUsedManagers();
    if (m_networks.empty() && m_used.empty() && m_transfers.empty())
        m_watch.stop();
}

void TransferQueue::forgetUsedManagers()
{
    const auto unused = std::partition(m_used.begin(), m_used.end(),
        [](const QNetworkAccessManager* one) { return one->findChild<QNetworkReply*>() != nullptr; });
    std::for_each(unused, m_used.end(), [](QNetworkAccessManager* one) { one->deleteLater(); });
    m_used.erase(unused, m_used.end());
}

} // namespace jsapi
