#include "host/novahost/libraries.h"

#include <QCoreApplication>
#include <QDir>

namespace novahost {

QString findLibrary(const QString& name, const QString& installed)
{
    const QDir programs(QCoreApplication::applicationDirPath());
    for (const QString& place : { QStringLiteral("../lib"), QStringLiteral("../") + installed, QString() }) {
        QString file = QDir::cleanPath(programs.filePath(place + QLatin1Char('/') + name));
        if (QFile::exists(file))
            return file;
    }
    return {};
}

} // namespace novahost
