// KAddressFinder: from the name of a host to the one address that a page's request goes to.
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

/// An address that has been judged: the page may reach it, and what connects to it, and not to the name, goes nowhere else.
using FoundAddress = std::variant<QHostAddress, NetworkError>;

/// Looks a host up, leaves out the addresses that the page may not reach, and of several that are left takes the first that
/// accepts a connection: they are tried a moment after each other, so a dead one costs no time to speak of. Calls `done`
/// once, never before the constructor has returned, and not after it has been destroyed. [GUI thread]
class KAddressFinder final : public QObject {
    Q_OBJECT

public:
    using Done = std::function<void(const FoundAddress&)>;
    KAddressFinder(const JSContextEnv& page, const QString& host, quint16 port, Done done, QObject* parent);
    ~KAddressFinder() override;

private:
    void judge(const QList<QHostAddress>& addresses);
    void tryNext();
    void finish(FoundAddress found);

    JSContextEnv m_page;
    quint16 m_port;
    Done m_done;
    int m_lookup = -1;
    std::vector<QHostAddress> m_untried; ///< the next one is the last
    int m_connecting = 0;
    QTimer m_next;

private Q_SLOTS:
    // By name: a function would be held in the threads that look hosts up, whatever becomes of the library.
    void onLookedUp(const QHostInfo& info);
};

} // namespace jsapi
