#include "host/cloudd/uploadrule.h"

#include <QFile>
#include <algorithm>
#include <climits>
#include <fcntl.h>
#include <unistd.h>

namespace cloudd {

namespace {

bool isSame(const struct stat& one, const struct stat& other)
{
    return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

QByteArray findPath(const Descriptor& file)
{
    QByteArray path(PATH_MAX, '\0');
    const ssize_t size =
        readlink(descriptorPath(file).constData(), path.data(), static_cast<size_t>(path.size()));
    return path.left(static_cast<int>(qMax<ssize_t>(0, size)));
}

} // namespace

UploadRule::Place::Place(const QString& path, bool isOpen)
    : path(QFile::encodeName(path))
    , held(open(this->path.constData(), O_PATH | O_CLOEXEC))
    , isOpen(isOpen)
{
}

bool UploadRule::Place::is(const QByteArray& there, const struct stat& found) const
{
    struct stat mine { };
    return path == there || (held && fstat(held.get(), &mine) == 0 && isSame(mine, found))
        || (stat(path.constData(), &mine) == 0 && isSame(mine, found));
}

bool UploadRule::Place::isIn(const struct stat& folder, const QByteArray& name) const
{
    struct stat above { };
    return path.endsWith('/' + name) && stat(path.left(path.size() - name.size()).constData(), &above) == 0
        && isSame(above, folder);
}

UploadRule::UploadRule(const QStringList& closed, const QStringList& open)
{
    for (const QString& path : closed)
        m_places.emplace_back(path, false);
    for (const QString& path : open)
        m_places.emplace_back(path, true);
}

bool UploadRule::permits(const Descriptor& file, const QString& alsoOpen) const
{
    const Place also(alsoOpen, true);
    QByteArray path = findPath(file);
    struct stat found { };
    if (!path.startsWith('/') || fstat(file.get(), &found) != 0)
        return false;
    while (path.size() > 1) {
        const auto isHere = [&](const Place& place) { return place.is(path, found); };
        // Closed places come first.
        if (const auto place = std::find_if(m_places.begin(), m_places.end(), isHere);
            place != m_places.end())
            return place->isOpen;
        if (isHere(also))
            return true;
        path.truncate(qMax(1, path.lastIndexOf('/')));
        if (stat(path.constData(), &found) != 0)
            return false;
    }
    return true;
}

bool UploadRule::permits(const Descriptor& folder, const QByteArray& name, const QString& alsoOpen) const
{
    if (const Descriptor file(openat(folder.get(), name.constData(), O_PATH | O_NOFOLLOW | O_CLOEXEC)); file)
        return permits(file, alsoOpen);
    struct stat found { };
    if (fstat(folder.get(), &found) != 0)
        return false;
    const auto place = std::find_if(
        m_places.begin(), m_places.end(), [&](const Place& place) { return place.isIn(found, name); });
    return place != m_places.end() ? place->isOpen : permits(folder, alsoOpen);
}

} // namespace cloudd
