// KAddressFinder: from the name of a server to the address to which a page's request is sent.
#pragma once

#include "local/network/networkerror.h"
#include "vexlite/jsvariant.h"

#include <QHostAddress>
#include <QHostInfo>
#include <QTimer>
#include <QUrl>
#include <functional>
#include <variant>
#include <vector>

namespace jsapi {

using FoundAddress = std::variant<QHostAddress, NetworkError>;

/// Looks a host up and leaves out the addresses that the page may not reach. Of several others, the one is taken that is known
/// to be alive, or that accepts a connection first: they are tried a moment after each other, so a dead one costs no time to
/// speak of, and no request is sent before one is chosen. Calls `done` once, never before the constructor has returned, and
/// not after it has been destroyed. [GUI thread]
class KAddressFinder final : public QObject {
    Q_OBJECT

public:
    using Done = std::function<void(const FoundAddress&)>;
    KAddressFinder(
        const JSContextEnv& page, const QUrl& url, const QHostAddress& alive, Done done, QObject* parent);
    ~KAddressFinder() override;
    /// Calls nothing any more, and goes later.
    void stop();

private:
    void judge(const QList<QHostAddress>& addresses);
    void tryNext();
    void finish(const FoundAddress& found);

    JSContextEnv m_page;
    QUrl m_url;
    QHostAddress m_alive;
    Done m_done;
    int m_lookup = -1;
    std::vector<QHostAddress> m_untried; ///< the next one is the last
    int m_connecting = 0;
    QTimer m_next;

public Q_SLOTS:
    // By name: a function would be held in the threads that look hosts up, whatever becomes of the library.
    void onLookedUp(const QHostInfo& info);
};

} // namespace jsapi
