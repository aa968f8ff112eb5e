// Access to files: what the process may do, in directories that the profile or the user has granted.
#include "suite/kaccessmanager.h"

#include "host/krt/pathinside.h"
#include "host/profile/directories.h"
#include "host/suite/dialogs/dialoganswers.h"
#include "host/suite/fileuse.h"
#include "host/suite/dialogs/modal.h"

#include <QDir>
#include <QFileInfo>
#include <algorithm>
#include <vector>

namespace {

using suite::FileUse;

FileUse useOf(int accessType)
{
    return accessType == 0 ? FileUse::Exists : accessType == 1 ? FileUse::Reads : FileUse::Writes;
}

/// Where the system takes an absolute path, links and parent steps followed as far as it exists.
QString targetOf(const QString& path)
{
    QString existing = path;
    while (!QFileInfo::exists(existing) && existing != QFileInfo(existing).path())
        existing = QFileInfo(existing).path();
    return QDir::cleanPath(
        QFileInfo(existing).canonicalFilePath() + QLatin1Char('/') + path.mid(existing.size()));
}

/// A path is granted only when all ways to read its parent steps lead into the directory.
bool liesIn(const QString& path, const QString& directory)
{
    return krt::isPathInside(targetOf(path), directory)
        && krt::isPathInside(QDir::cleanPath(path), directory);
}

QString purposeOf(FileUse use)
{
    switch (use) {
    case FileUse::Exists:
        return QStringLiteral("look for");
    case FileUse::Reads:
        return QStringLiteral("read");
    case FileUse::Writes:
        break;
    }
    return QStringLiteral("read and change");
}

class AccessManager final : public IKAccessManager {
public:
    bool StartAccess(
        const char16_t* path, bool requestIfNoPermission, int accessType, bool showRequestFailedTip) override
    {
        const QString file = path ? QString::fromUtf16(path) : QString();
        const FileUse use = useOf(accessType);
        if (suite::processMay(file, use)
            && (granted(file, use) || (requestIfNoPermission && requested(file, use))))
            return true;
        if (showRequestFailedTip)
            tellRefused(file);
        return false;
    }

private:
    struct Grant {
        QString path; ///< where it led when it was granted
        FileUse use;
    };

    bool granted(const QString& file, FileUse use) const
    {
        const auto profile = profile::current();
        const QStringList& directories = profile->access.granted;
        return std::any_of(directories.begin(), directories.end(),
                   [&](const QString& directory) { return liesIn(file, profile::expanded(directory)); })
            || std::any_of(m_grants.begin(), m_grants.end(),
                [&](const Grant& grant) { return use <= grant.use && liesIn(file, grant.path); });
    }

    bool requested(const QString& file, FileUse use)
    {
        // What it leads to before the question is what the user is asked about.
        const QString target = targetOf(file);
        if (!consented(target, use))
            return false;
        m_grants.push_back({ target, use });
        return true;
    }

    static bool consented(const QString& target, FileUse use)
    {
        if (dialogs::answered()) {
            const auto answer = dialogs::take(profile::DialogKind::Access);
            return answer && answer->accept;
        }
        const QString question =
            QStringLiteral("A page wants to %1 \"%2\". Allow this?").arg(purposeOf(use), target);
        return dialogs::ask(nullptr, QMessageBox::Question, QStringLiteral("Access to files"), question,
                   QMessageBox::Yes | QMessageBox::No, QMessageBox::No)
            == QMessageBox::Yes;
    }

    static void tellRefused(const QString& file)
    {
        const QString text = QStringLiteral("A page gets no access to \"%1\".").arg(file);
        if (dialogs::answered())
            dialogs::warn(text);
        else
            dialogs::tell(nullptr, QStringLiteral("Access to files"), text);
    }

    std::vector<Grant> m_grants;
};

} // namespace

IKAccessManager* GetAccessManager()
{
    static AccessManager manager;
    return profile::serviceOn(QStringLiteral("accessManager")) ? &manager : nullptr;
}
