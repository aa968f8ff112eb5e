#include "krt/dirs.h"

#include "host/krt/pathinside.h"
#include "host/profile/directories.h"
#include "host/profile/profile.h"

#include <QFileInfo>
#include <QMimeDatabase>
#include <algorithm>
#include <iterator>

namespace krt {

QString dirs::officeInstallRoot()
{
    return profile::expandPath(profile::current()->directories.officeInstallRoot);
}

QString dirs::officeData()
{
    return profile::expandPath(profile::current()->directories.officeData);
}

QString dirs::officeHome()
{
    return profile::expandPath(profile::current()->directories.officeHome);
}

QString dirs::velmoraHome()
{
    return profile::expandPath(profile::current()->directories.velmoraHome);
}

bool dirs::isFileFormatSafe(const QString& path)
{
    const QFileInfo info(path);
    if (!info.isFile() || !info.isReadable())
        return false;
    const QMimeDatabase types;
    // By content and by name: a program may have a harmless name, and a script may have no "#!" line.
    const QMimeType found[] { types.mimeTypeForFile(info, QMimeDatabase::MatchContent),
        types.mimeTypeForFile(info, QMimeDatabase::MatchExtension) };
    const QStringList unsafe = profile::current()->files.unsafeTypes;
    return std::none_of(unsafe.begin(), unsafe.end(), [&](const QString& type) {
        return std::any_of(
            std::begin(found), std::end(found), [&](const QMimeType& known) { return known.inherits(type); });
    });
}

bool dirs::inBlackDownloadDir(const QString& path)
{
    static ProfilePlaces closed;
    const auto profile = profile::current();
    return closed.contain(path, profile->directories.blacklistedDownloads, profile->directories.officeData);
}

} // namespace krt
