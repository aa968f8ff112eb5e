// The cloud process's side of the socket.
#pragma once

#include "host/cloudd/service.h"
#include "host/cloudwire/frames.h"
#include "host/cloudwire/socketplace.h"

#include <QLocalServer>
#include <QLocalSocket>
#include <QTimer>
#include <vector>

namespace cloudd {

/// One suite, or whoever else has this user's rights: nothing that it sends is trusted. What it makes the
/// process keep is limited: while it has many requests without an answer, or does not take its replies, no
/// more of its bytes are read. It has to say soon who is signed in.
class Connection final : public QObject {
    Q_OBJECT

public:
    Connection(QLocalSocket* socket, Service& service, cloudwire::FrameCodec& codec);

    bool follows(const QString& userId) const { return m_session->signedIn.contains(userId); }
    /// Sends what nobody asked for.
    void tell(const QMap<QString, QString>& actions);

Q_SIGNALS:
    void ended();

private:
    void read();
    bool mayGoOn() const;
    void take(std::string_view frame);
    void answer(const cloudwire::Head& call, bool ok, const void* result);
    void complain(const cloudwire::Head& head, int number, const std::string& text);
    /// Drops the connection when its other end does not read.
    void send(const QByteArray& frame);

    QLocalSocket* m_socket;
    Service& m_service;
    cloudwire::FrameCodec& m_codec;
    cloudwire::FrameReader m_reader;
    std::shared_ptr<Session> m_session = std::make_shared<Session>();
    int m_unanswered = 0;
    std::size_t m_unansweredBytes = 0; ///< of the requests' frames
    bool m_reading = false;
};

/// Listens in the service's directory, for processes of this user only.
class Server final : public QObject {
    Q_OBJECT

public:
    explicit Server(Service& service);
    /// Empty, or why it can not listen. What another process has left behind there is replaced.
    QString listen(const QString& directory);

Q_SIGNALS:
    /// Nobody has been connected for a while, and nothing is left to do.
    void unused();

private:
    void welcome();
    void tell(const QString& userId, const QMap<QString, QString>& actions);
    void lookForUse();

    Service& m_service;
    std::unique_ptr<cloudwire::SocketPlace> m_place;
    QLocalServer m_server;
    cloudwire::FrameCodec m_codec;
    std::vector<Connection*> m_connections;
    QTimer m_unusedTimer;
};

} // namespace cloudd
