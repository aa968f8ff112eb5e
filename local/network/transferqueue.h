// The transfers of all pages: which of them run, and which wait.
#pragma once

#include "local/network/httptransfer.h"

#include <QHash>

class QNetworkAccessManager;

namespace jsapi {

inline constexpr Failure RequestIdInUse { ErrorCode::BadArgument, "Request id is in use." };
inline constexpr Failure TooManyRequests { ErrorCode::OperationFailed, "Too many requests." };

/// Bounded, so that no page keeps the others from the network or the process from its memory. [GUI thread]
class TransferQueue {
public:
    static constexpr int MostRunning = 32;
    static constexpr int MostRunningOfPage = 6;
    static constexpr int MostOfPage = 256;
    static constexpr qint64 MostBodyBytesOfPage = qint64 { 256 } << 20;

    TransferQueue();

    /// Starts a transfer now, or when it is its turn: it ends by itself. Refused where the page has too much under way, or
    /// something with this id.
    Answer<void> add(std::unique_ptr<KHttpTransfer> transfer);
    /// The page's own one that has not ended; null where there is none.
    KHttpTransfer* find(const JSContextEnv& page, const QString& id) const;
    /// Called by a transfer that has ended: the next one starts.
    void remove(KHttpTransfer* transfer);

    /// What no other page uses, so none waits for another or gets what was meant for it.
    struct PageNetwork {
        PageWatch watch;
        QNetworkAccessManager* manager;        ///< the library's, until the page has gone
        QHash<QString, QHostAddress> alive {}; ///< of origins
    };
    /// The page's own, from its first transfer on. Valid until the caller returns.
    PageNetwork& networkOf(const JSContextEnv& page);
    /// Has the page use none of its present connections for further requests.
    void renewConnections(const JSContextEnv& page);
    /// One with no connections yet, which goes after its only request.
    QNetworkAccessManager& managerForOne();

private:
    void startNext();
    void endWhatIsNotPermitted();
    void forgetPages();
    void forgetUsedManagers();

    std::vector<KHttpTransfer*> m_transfers; ///< in their order; destroyed with the library
    std::vector<PageNetwork> m_networks;
    std::vector<QNetworkAccessManager*> m_used; ///< those that get no further request
    QTimer m_watch;
};

TransferQueue& transferQueue();

} // namespace jsapi
