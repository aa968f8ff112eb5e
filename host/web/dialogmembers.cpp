#include "host/web/dialogmembers.h"

#include <QSet>

namespace engine::web {

bool showsDialog(const QString& member)
{
    static const QSet<QString> members {
        QStringLiteral("NovaExtension.FileSystem.getExistingDirectory"),
        QStringLiteral("NovaExtension.FileSystem.getOpenFileName"),
        QStringLiteral("NovaExtension.FileSystem.getOpenFileNames"),
        QStringLiteral("NovaExtension.FileSystem.getWritableSaveFileName"),
        QStringLiteral("NovaExtension.FileSystem.selectFolderx"),
        QStringLiteral("NovaExtension.FileSystem.selectLocalFolder"),
        QStringLiteral("NovaExtension.FileSystem.showSelectFilePanel"),
        QStringLiteral("NovaExtension.FileSystem.startAccess"),
        QStringLiteral("NovaExtension.Tools.showConfirmDlg"),
        QStringLiteral("NovaExtension.Utils.getPictureFilepath"),
    };
    return members.contains(member);
}

} // namespace engine::web
