#include "local/transferqueue.h"

#include <algorithm>

namespace jsapi {

namespace {

constexpr int WatchMs = 1000;

} // namespace

TransferQueue& transferQueue()
{
    static TransferQueue queue;
    return queue;
}

TransferQueue::TransferQueue()
{
    QObject::connect(&m_watch, &QTimer::timeout, [this] { endWhatIsNotPermitted(); });
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
    m_watch.start(WatchMs);
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
    if (m_transfers.empty())
        m_watch.stop();
    startNext();
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

} // namespace jsapi
