#include "suite/kfilefilter.h"

#include "host/profile/profile.h"
#include "host/suite/skin/icontheme.h"
#include "host/suite/skin/skinfiles.h"
#include "suite/kdrawhelper.h"

#include <QMimeDatabase>

namespace {

bool hasIcon(const QString& name)
{
    return !suite::IconTheme::instance().find(name).empty();
}

/// The MIME type of the files with an extension; folders count as one. Invalid when it is not known.
QMimeType findType(const QString& type)
{
    constexpr int LongestExtension = 32;
    if (type.compare(QLatin1String("folder"), Qt::CaseInsensitive) == 0)
        return QMimeDatabase().mimeTypeForName(QStringLiteral("inode/directory"));
    if (type.isEmpty() || type.size() > LongestExtension || type.contains(QLatin1Char('/')))
        return {};
    const QMimeType found = QMimeDatabase().mimeTypeForFile(
        QStringLiteral("file.") + type.toLower(), QMimeDatabase::MatchExtension);
    return found.isDefault() ? QMimeType() : found;
}

} // namespace

KFileFilter* KFileFilter::instance()
{
    static KFileFilter filter;
    return profile::serviceOn(QStringLiteral("fileFilter")) ? &filter : nullptr;
}

bool KFileFilter::hasFileTypeIcon(const QString& type, const QString& skin, bool all) const
{
    const QMimeType found = findType(type);
    // All skins have the same icons.
    const bool isSkin = skin == KDrawHelper::getCurrentSkinNameFromTheme() || suite::isSkinKnown(skin);
    if (!found.isValid() || !isSkin)
        return false;
    return hasIcon(found.iconName()) || (all && hasIcon(found.genericIconName()));
}

QString KFileFilter::fileTypeIcon(const QString& type) const
{
    const QMimeType found = findType(type);
    if (found.isValid()) {
        for (const QString& name : { found.iconName(), found.genericIconName() }) {
            if (hasIcon(name))
                return name;
        }
    }
    return QStringLiteral("unknown");
}

QStringList KFileFilter::extensions(const QString& type) const
{
    QStringList extensions;
    const QMimeType found = findType(type);
    for (const QString& suffix : found.isValid() ? found.suffixes() : QStringList())
        extensions << suffix.toLower();
    extensions.removeDuplicates();
    return extensions;
}
