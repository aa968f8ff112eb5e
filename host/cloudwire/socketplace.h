// The address of the socket of the cloud process, which is in its directory.
#pragma once

#include <QString>

namespace cloudwire {

/// The socket's name for QLocalServer and QLocalSocket, valid while this object lives. A socket's name may
/// have about 100 bytes and a directory's 4095, so it begins with the descriptor of the open directory.
class SocketPlace {
public:
    explicit SocketPlace(const QString& directory);
    ~SocketPlace();
    SocketPlace(const SocketPlace&) = delete;
    SocketPlace& operator=(const SocketPlace&) = delete;

    /// Empty when the directory can not be opened.
    QString name() const;

private:
    int m_directory;
};

} // namespace cloudwire
