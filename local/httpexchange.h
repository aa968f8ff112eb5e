// KHttpExchange: one request and its response on a connection of its own.
#pragma once

#include "local/httprequest.h"
#include "local/httpresponsereader.h"
#include "local/networkerror.h"

#include <QSslSocket>
#include <functional>

namespace jsapi {

/// No connection serves two requests: so pages share none, and nothing of one response is taken for part of another. [GUI
/// thread]
class KHttpExchange final : public QObject {
    Q_OBJECT

public:
    /// What is called, never after stop(). Each may stop the exchange.
    struct Receiver {
        std::function<void(const HttpHead&)> head;
        std::function<void(const QByteArray&)> content;
        std::function<void(std::optional<NetworkError>)> end; ///< the last call
        std::function<void()> activity;                       ///< something has come or gone
    };

    /// Sends a request through a connection, which it takes over: a QSslSocket for https, before anything has been sent.
    KHttpExchange(QTcpSocket* connection, const HttpRequest& request, const QByteArray& acceptEncoding,
        Receiver receiver, QObject* parent);

    /// Closes the connection. The object goes later.
    void stop();

private:
    void sendHead();
    void sendBody();
    void read();
    void closed();
    void fail(NetworkError error);

    QTcpSocket* m_connection;
    QByteArray m_requestHead;
    QByteArray m_body;
    int m_sent = 0;
    HttpResponseReader m_reader;
    Receiver m_receiver;
    bool m_isSecuring = false;
    bool m_hasHead = false;
    bool m_hasStopped = false;
};

} // namespace jsapi
