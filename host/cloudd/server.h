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

/// The connection of one suite, or of any other program of this user: nothing that it sends is trusted. To
/// limit memory, no more is read while many of its requests have no reply or it does not read its replies. It
/// has to call setCurrentUser soon.
class Connection final : public QObject {
    Q_OBJECT

public:
    Connection(QLocalSocket* socket, Service& service, cloudwire::FrameCodec& codec);

    bool hasUser(const QString& userId) const { return m_session->signedIn.contains(userId); }
    /// Sends an event that is no reply.
    void sendNotice(const QMap<QString, QString>& actions);

Q_SIGNALS:
    void ended();

private:
    void read();
    bool canRead() const;
    void handle(std::string_view frame);
    void reply(const cloudwire::Head& call, bool ok, const void* result);
    void reportError(const cloudwire::Head& head, int number, const std::string& text);
    /// Drops the connection when the other side does not read.
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
    /// Returns the error, or an empty string. Replaces the socket of a process that has ended.
    QString listen(const QString& directory);

Q_SIGNALS:
    /// For a while nobody has been connected and there has been no work.
    void unused();

private:
    void acceptConnections();
    void sendNotice(const QString& userId, const QMap<QString, QString>& actions);
    void restartUnusedTimer();

    Service& m_service;
    std::unique_ptr<cloudwire::SocketPlace> m_place;
    QLocalServer m_server;
    cloudwire::FrameCodec m_codec;
    std::vector<Connection*> m_connections;
    QTimer m_unusedTimer;
};

} // namespace cloudd
