#include "host/cloudwire/socketplace.h"

#include <QFile>
#include <fcntl.h>
#include <unistd.h>

namespace cloudwire {

SocketPlace::SocketPlace(const QString& directory)
    : m_directory(open(QFile::encodeName(directory).constData(), O_PATH | O_DIRECTORY | O_CLOEXEC))
{
}

SocketPlace::~SocketPlace()
{
    if (m_directory >= 0)
        close(m_directory);
}

QString SocketPlace::name() const
{
    return m_directory < 0 ? QString() : QStringLiteral("/proc/self/fd/%1/service.sock").arg(m_directory);
}

} // namespace cloudwire
