// KServiceFollower: what is connected to a service that the suite may end, make later, or replace.
//
//     KServiceFollower<KAccountSdkProxy> m_service { KCoreApplication::getAccountSDK, [this](auto& service) {
//         return Connections { connect(&service, SIGNAL(...), this, SLOT(...)), ... };
//     } };
//
// and m_service.follow() whenever it is used.
#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <functional>
#include <utility>
#include <vector>

namespace jsapi {

/// Follows on use; while there is no service it looks for one once a second. Needs an application. [GUI
/// thread]
///
/// Services are connected to by name (SIGNAL, SLOT). A connection to a function is an object of the library's, which Qt
/// deletes when the signal under way has been emitted, and a slot of the suite's may unload the library before.
template <typename Service> class KServiceFollower {
public:
    using Connections = std::vector<QMetaObject::Connection>;

    /// `find` returns the service that there is now, or null. `connectTo` is called for each new one and
    /// returns its connections, which are taken back when another one is followed.
    KServiceFollower(std::function<Service*()> find, std::function<Connections(Service&)> connectTo)
        : m_find(std::move(find))
        , m_connectTo(std::move(connectTo))
    {
        m_retry.setInterval(RetryMs);
        QObject::connect(&m_retry, &QTimer::timeout, &m_retry, [this] { follow(); });
    }
    ~KServiceFollower() { leave(); }
    KServiceFollower(const KServiceFollower&) = delete;
    KServiceFollower& operator=(const KServiceFollower&) = delete;

    /// Looks which service there is now, and connects to it.
    void follow()
    {
        Service* service = m_find();
        if (service && service == m_service)
            return;
        leave();
        m_service = service;
        if (!service) {
            if (!m_retry.isActive())
                m_retry.start();
            return;
        }
        m_retry.stop();
        m_connections = m_connectTo(*service);
        m_connections.push_back(QObject::connect(service, SIGNAL(destroyed()), &m_retry, SLOT(start())));
    }
    /// The service that is followed, or null.
    Service* service() const { return m_service; }

private:
    static constexpr int RetryMs = 1000;

    void leave()
    {
        for (const QMetaObject::Connection& connection : std::exchange(m_connections, {}))
            QObject::disconnect(connection);
    }

    std::function<Service*()> m_find;
    std::function<Connections(Service&)> m_connectTo;
    QPointer<Service> m_service;
    Connections m_connections;
    QTimer m_retry; ///< runs while there is no service
};

} // namespace jsapi
