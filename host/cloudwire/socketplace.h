// Where the cloud process listens: a socket in its directory.
#pragma once

#include <QString>

namespace cloudwire {

/// The name of the socket of a directory, for QLocalServer and QLocalSocket, while this lives. A socket's
/// name has room for some 100 bytes and a directory's for 4095, so the name goes through the open directory.
class SocketPlace {
public:
    explicit SocketPlace(const QString& directory);
    ~SocketPlace();
    SocketPlace(const SocketPlace&) = delete;
    SocketPlace& operator=(const SocketPlace&) = delete;

    /// Empty when there is no such directory.
    QString name() const;

private:
    int m_directory;
};

} // namespace cloudwire
