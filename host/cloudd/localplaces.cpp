#include "host/cloudd/localplaces.h"

#include "host/cloudd/names.h"
#include "host/cloudd/state.h"

#include <QFile>
#include <climits>

namespace cloudd {

QString LocalPlaces::open(const QString& directory)
{
    m_directory = directory;
    m_cache = openFolder(QFile::encodeName(directory + QStringLiteral("/cache")));
    m_documents = openFolder(QFile::encodeName(directory + QStringLiteral("/documents")));
    return m_cache && m_documents
        ? QString()
        : QStringLiteral("\"%1\": its folders can not be made or opened").arg(directory);
}

Descriptor LocalPlaces::openCacheFolder(const QString& fileId) const
{
    return enterFolder(m_cache, fileId.toLatin1());
}

QString LocalPlaces::cachePath(const QString& fileId, const QString& name) const
{
    return checkPathLength(m_directory + QStringLiteral("/cache/") + fileId + QLatin1Char('/') + name);
}

Descriptor LocalPlaces::openDocumentsFolder(const QString& userId, const QString& cloudPath) const
{
    documentsPath(userId, cloudPath);
    Descriptor folder = enterFolder(m_documents, encodeFolderName(userId));
    const QStringList parts = splitCloudPath(cloudPath);
    for (const QString& part : parts)
        folder = enterFolder(folder, QFile::encodeName(part));
    return folder;
}

QString LocalPlaces::documentsPath(const QString& userId, const QString& cloudPath) const
{
    const QString path =
        m_directory + QStringLiteral("/documents/") + QString::fromLatin1(encodeFolderName(userId));
    return checkPathLength(cloudPath.isEmpty() ? path : path + QLatin1Char('/') + cloudPath);
}

QString checkPathLength(const QString& path)
{
    if (QFile::encodeName(path).size() >= PATH_MAX)
        throw Error(State::WrongArguments);
    return path;
}

} // namespace cloudd
