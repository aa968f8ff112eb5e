#include "host/cloudd/server.h"

#include "cloud/schema/lark_types.h"

#include <QLoggingCategory>
#include <QPointer>
#include <sys/socket.h>
#include <unistd.h>

namespace cloudd {

namespace {

using cloudwire::FrameCodec;
using cloudwire::Head;
using cloudwire::Kind;

Q_LOGGING_CATEGORY(serverLog, "cloud.server")

constexpr std::size_t MaxConnections = 32;
constexpr int MaxUnanswered = 20'000;
constexpr std::size_t MaxUnansweredBytes = 16 << 20;
/// Bytes waiting for the other side to read them: beyond the first no request is read, beyond the second the
/// connection is dropped.
constexpr qint64 PauseWaitingBytes = 1 << 20;
constexpr qint64 MaxWaitingBytes = 32 << 20;
constexpr qint64 ReadBytes = 64 << 10;
/// Frames handled for one connection before the event loop continues with others.
constexpr int FramesPerTurn = 256;
constexpr int UnusedAfterMs = 5000;
/// A connection that has not called setCurrentUser by then is dropped: their number is limited.
constexpr int ReportTimeoutMs = 10'000;

// NotifyLarkRpcExceptionArg::exceptionNum
constexpr int UnknownProcedure = 1;
constexpr int WrongMessage = 2;

bool isOwnUser(qintptr socket)
{
    ucred peer {};
    socklen_t size = sizeof(peer);
    return getsockopt(static_cast<int>(socket), SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0
        && peer.uid == geteuid();
}

} // namespace

Connection::Connection(QLocalSocket* socket, Service& service, FrameCodec& codec)
    : m_socket(socket)
    , m_service(service)
    , m_codec(codec)
{
    socket->setParent(this);
    socket->setReadBufferSize(ReadBytes);
    connect(socket, &QLocalSocket::readyRead, this, &Connection::read);
    connect(socket, &QLocalSocket::bytesWritten, this, &Connection::read);
    connect(socket, &QLocalSocket::disconnected, this, &Connection::ended);
    QMetaObject::invokeMethod(this, &Connection::read, Qt::QueuedConnection);
    QTimer::singleShot(ReportTimeoutMs, this, [this] {
        if (m_session->hasReportedUsers)
            return;
        qCWarning(serverLog, "dropped a connection: it does not say who is signed in");
        m_socket->abort();
    });
}

bool Connection::canRead() const
{
    return m_unanswered < MaxUnanswered && m_unansweredBytes < MaxUnansweredBytes
        && m_socket->bytesToWrite() < PauseWaitingBytes && m_socket->state() == QLocalSocket::ConnectedState;
}

void Connection::read()
{
    if (m_reading)
        return;
    m_reading = true;
    int frames = 0;
    while (canRead()) {
        if (const auto frame = m_reader.next()) {
            handle(*frame);
            if (++frames == FramesPerTurn) {
                QMetaObject::invokeMethod(this, &Connection::read, Qt::QueuedConnection);
                break;
            }
            continue;
        }
        if (m_reader.isBroken()) {
            qCWarning(serverLog, "dropped a connection: a frame of no length or too long");
            m_socket->abort();
            break;
        }
        const QByteArray bytes = m_socket->read(ReadBytes);
        if (bytes.isEmpty())
            break;
        m_reader.add(bytes);
    }
    m_reading = false;
}

void Connection::handle(std::string_view frame)
{
    const std::optional<Head> head = FrameCodec::takeHead(frame);
    if (!head) {
        qCWarning(serverLog, "dropped a connection: a frame without a head");
        m_socket->abort();
        return;
    }
    if (head->kind != Kind::Call && head->kind != Kind::Notice)
        return;
    const cloudwire::MessageType* type = cloudwire::findArgumentType(head->procedure);
    if (!type || !cloudwire::findResultType(head->procedure) || !Service::knows(head->procedure))
        return reportError(*head, UnknownProcedure, "there is no such procedure");
    const std::shared_ptr<void> argument = type->make();
    if (const auto fault = m_codec.decode(*type, frame, argument.get())) {
        reportError(*head, WrongMessage, *fault);
        if (head->kind == Kind::Call)
            reply(*head, false, nullptr);
        return;
    }
    ++m_unanswered;
    m_unansweredBytes += frame.size();
    m_service.handle(m_session, head->procedure, argument.get(),
        [connection = QPointer<Connection>(this), call = *head, bytes = frame.size()](
            bool ok, const void* result) {
            if (!connection)
                return;
            --connection->m_unanswered;
            connection->m_unansweredBytes -= bytes;
            if (call.kind == Kind::Call)
                connection->reply(call, ok, result);
            if (!connection->m_reading)
                QMetaObject::invokeMethod(connection.data(), &Connection::read, Qt::QueuedConnection);
        });
}

void Connection::reply(const Head& call, bool ok, const void* result)
{
    const cloudwire::MessageType& type = *cloudwire::findResultType(call.procedure);
    Head head { ok ? Kind::Reply : Kind::Failure, call.procedure, call.number };
    QByteArray frame = result ? m_codec.encode(head, type, result) : QByteArray();
    if (frame.isEmpty()) {
        // There is no result, or it is too big for a frame.
        head.kind = Kind::Failure;
        frame = m_codec.encode(head, type, type.make().get());
    }
    send(frame);
}

void Connection::reportError(const Head& head, int number, const std::string& text)
{
    nova::lark::NotifyLarkRpcExceptionArg complaint;
    complaint.exceptionNum = number;
    complaint.extraParam = { { "procedure", head.procedure }, { "number", std::to_string(head.number) },
        { "message", text } };
    send(m_codec.encode({ Kind::Notice, "notifyLarkRpcException", head.number },
        *cloudwire::findMessageType("NotifyLarkRpcExceptionArg"), &complaint));
}

void Connection::sendNotice(const QMap<QString, QString>& actions)
{
    nova::lark::LarkIpcArg notice;
    notice.method = "notifyActionsMap";
    for (auto action = actions.begin(); action != actions.end(); ++action)
        notice.argMap[action.key().toStdString()] = action.value().toStdString();
    send(m_codec.encode(
        { Kind::Notice, "larkIpcCall", 0 }, *cloudwire::findArgumentType("larkIpcCall"), &notice));
}

void Connection::send(const QByteArray& frame)
{
    if (m_socket->state() != QLocalSocket::ConnectedState)
        return;
    if (m_socket->bytesToWrite() > MaxWaitingBytes) {
        qCWarning(serverLog, "dropped a connection: it does not read");
        m_socket->abort();
        return;
    }
    m_socket->write(frame);
}

Server::Server(Service& service)
    : m_service(service)
{
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    m_unusedTimer.setSingleShot(true);
    m_unusedTimer.setInterval(UnusedAfterMs);
    connect(&m_server, &QLocalServer::newConnection, this, &Server::acceptConnections);
    connect(&service, &Service::notice, this, &Server::sendNotice);
    connect(&service, &Service::idle, this, &Server::restartUnusedTimer);
    connect(&m_unusedTimer, &QTimer::timeout, this, [this] {
        if (!m_connections.empty() || m_service.isBusy())
            return;
        // Nobody can connect from here on. One who has just done so sees the connection end, and tries again.
        m_server.close();
        Q_EMIT unused();
    });
}

QString Server::listen(const QString& directory)
{
    m_place = std::make_unique<cloudwire::SocketPlace>(directory);
    QLocalServer::removeServer(m_place->name());
    if (!m_server.listen(m_place->name()))
        return m_server.errorString();
    restartUnusedTimer();
    return {};
}

void Server::acceptConnections()
{
    while (QLocalSocket* socket = m_server.nextPendingConnection()) {
        if (m_connections.size() >= MaxConnections || !isOwnUser(socket->socketDescriptor())) {
            qCWarning(serverLog, "refused a connection");
            delete socket;
            continue;
        }
        auto* connection = new Connection(socket, m_service, m_codec);
        connection->setParent(this);
        m_connections.push_back(connection);
        connect(connection, &Connection::ended, this, [this, connection] {
            if (std::erase(m_connections, connection) > 0)
                connection->deleteLater();
            restartUnusedTimer();
        });
    }
}

void Server::sendNotice(const QString& userId, const QMap<QString, QString>& actions)
{
    // A copy: a connection that is dropped leaves the list.
    const std::vector<Connection*> connections = m_connections;
    for (Connection* connection : connections) {
        if (connection->hasUser(userId))
            connection->sendNotice(actions);
    }
}

void Server::restartUnusedTimer()
{
    m_unusedTimer.start();
}

} // namespace cloudd
