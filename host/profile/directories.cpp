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

DataDirectory& chosenState()
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
    std::lock_guard lock(chosenState().mutex);
    chosenState().chosen = path;
    return {};
}

QString dataDirectory()
{
    DataDirectory& directory = chosenState();
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
    std::lock_guard lock(chosenState().mutex);
    return chosenState().chosen.isEmpty();
}

QString expanded(const QString& path)
{
    if (path.isEmpty())
        return {};
    QString result = path;
    // One variable at most, in front: a directory's own name may then hold whatever it likes.
    if (path.startsWith(QLatin1String("${DATA}")))
        result.replace(0, 7, dataDirectory());
    else if (path.startsWith(QLatin1String("${HOME}")))
        result.replace(0, 7, QDir::homePath());
    return QDir::cleanPath(result);
}

} // namespace profile
