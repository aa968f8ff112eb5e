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

Descriptor LocalPlaces::cacheFolder(const QString& fileId) const
{
    return enterFolder(m_cache, fileId.toLatin1());
}

QString LocalPlaces::cachePath(const QString& fileId, const QString& name) const
{
    return usablePath(m_directory + QStringLiteral("/cache/") + fileId + QLatin1Char('/') + name);
}

Descriptor LocalPlaces::documentsFolder(const QString& userId, const QString& cloudPath) const
{
    documentsPath(userId, cloudPath);
    Descriptor folder = enterFolder(m_documents, folderNameOf(userId));
    const QStringList parts = pathParts(cloudPath);
    for (const QString& part : parts)
        folder = enterFolder(folder, QFile::encodeName(part));
    return folder;
}

QString LocalPlaces::documentsPath(const QString& userId, const QString& cloudPath) const
{
    const QString path =
        m_directory + QStringLiteral("/documents/") + QString::fromLatin1(folderNameOf(userId));
    return usablePath(cloudPath.isEmpty() ? path : path + QLatin1Char('/') + cloudPath);
}

QString usablePath(const QString& path)
{
    if (QFile::encodeName(path).size() >= PATH_MAX)
        throw Refusal(State::WrongArguments);
    return path;
}

} // namespace cloudd
