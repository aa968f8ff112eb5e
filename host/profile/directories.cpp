#include "host/profile/directories.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <memory>
#include <mutex>

namespace profile {

namespace {

struct DataDirectory {
    std::mutex mutex;
    QString chosen;
    std::unique_ptr<QTemporaryDir> temporary;
};

DataDirectory& directoryState()
{
    static DataDirectory directory;
    return directory;
}

} // namespace

QString setDataDirectory(const QString& directory)
{
    const QString path = directory.isEmpty() ? QString() : QDir::cleanPath(QDir(directory).absolutePath());
    if (!path.isEmpty()) {
        QDir().mkpath(path);
        const QFileInfo info(path);
        if (!info.isDir())
            return QStringLiteral(
                "data directory \"%1\": can not be made; choose one in a place that you may write to")
                .arg(directory);
        if (!info.isWritable() || !info.isExecutable())
            return QStringLiteral("data directory \"%1\": may not be written to; choose another one")
                .arg(directory);
    }
    std::lock_guard lock(directoryState().mutex);
    directoryState().chosen = path;
    return {};
}

QString dataDirectory()
{
    DataDirectory& directory = directoryState();
    std::lock_guard lock(directory.mutex);
    if (!directory.chosen.isEmpty())
        return directory.chosen;
    if (!directory.temporary)
        directory.temporary =
            std::make_unique<QTemporaryDir>(QDir::tempPath() + QStringLiteral("/novasuite-XXXXXX"));
    return directory.temporary->isValid() ? directory.temporary->path() : QString();
}

bool isDataTemporary()
{
    std::lock_guard lock(directoryState().mutex);
    return directoryState().chosen.isEmpty();
}

QString expandPath(const QString& path)
{
    if (path.isEmpty())
        return {};
    QString result = path;
    // Only one variable, and only at the beginning: names of directories may contain "${".
    if (path.startsWith(QLatin1String("${DATA}")))
        result.replace(0, 7, dataDirectory());
    else if (path.startsWith(QLatin1String("${HOME}")))
        result.replace(0, 7, QDir::homePath());
    return QDir::cleanPath(result);
}

} // namespace profile
