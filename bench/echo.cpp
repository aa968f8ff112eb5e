// A process that sends back whatever comes to its local socket, the name of which it is given.
#include <QCoreApplication>
#include <QLocalServer>
#include <QLocalSocket>

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    QLocalServer server;
    if (argc != 2 || !server.listen(QString::fromLocal8Bit(argv[1])))
        return 1;
    QObject::connect(&server, &QLocalServer::newConnection, [&] {
        QLocalSocket* socket = server.nextPendingConnection();
        QObject::connect(socket, &QLocalSocket::readyRead, [socket] { socket->write(socket->readAll()); });
        QObject::connect(socket, &QLocalSocket::disconnected, &QCoreApplication::quit);
    });
    return QCoreApplication::exec();
}
