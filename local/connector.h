// KConnector: from the name of a host to a connection for a page's request.
#pragma once

#include "local/networkerror.h"
#include "vexlite/jsvariant.h"

#include <QHostAddress>
#include <QHostInfo>
#include <QTcpSocket>
#include <QTimer>
#include <functional>
#include <variant>
#include <vector>

namespace jsapi {

/// A connection, which belongs to whoever gets it; or why there is none.
using Connected = std::variant<QTcpSocket*, NetworkError>;

/// Looks a host up, leaves out the addresses that the page may not reach, and connects to the others, a moment after each
/// other: a dead one costs no time to speak of. The name is not used again, so the connection is to an address that has been
/// judged. Calls `done` once, never before the constructor has returned, and not after it has been destroyed. [GUI thread]
class KConnector final : public QObject {
    Q_OBJECT

public:
    using Done = std::function<void(const Connected&)>;
    /// A connection that is to be `secure` is a QSslSocket, on which nothing has been sent yet.
    KConnector(
        const JSContextEnv& page, const QString& host, quint16 port, bool secure, Done done, QObject* parent);
    ~KConnector() override;
    /// Calls nothing any more, and goes later.
    void stop();

private:
    void judge(const QList<QHostAddress>& addresses);
    void tryNext();
    void finish(const Connected& connected);

    JSContextEnv m_page;
    quint16 m_port;
    bool m_isSecure;
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
