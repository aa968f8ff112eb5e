// Access to files: a page may use those that the process can use and the profile or the user has granted.
#include "suite/kaccessmanager.h"

#include "host/krt/pathinside.h"
#include "host/profile/directories.h"
#include "host/suite/dialogs/dialoganswers.h"
#include "host/suite/dialogs/modal.h"
#include "host/suite/fileuse.h"
#include "host/suite/showntext.h"

#include <QDir>
#include <QFileInfo>
#include <algorithm>
#include <vector>

namespace {

using suite::FileUse;

FileUse toFileUse(int accessType)
{
    return accessType == 0 ? FileUse::Exists : accessType == 1 ? FileUse::Reads : FileUse::Writes;
}

/// Where an absolute path leads: links and parent steps are followed as far as it exists.
QString resolveTarget(const QString& path)
{
    QString existing = path;
    while (!QFileInfo::exists(existing) && existing != QFileInfo(existing).path())
        existing = QFileInfo(existing).path();
    return QDir::cleanPath(
        QFileInfo(existing).canonicalFilePath() + QLatin1Char('/') + path.mid(existing.size()));
}

/// Parent steps can be resolved before or after links; both ways must lead into the directory.
bool isInside(const QString& path, const QString& directory)
{
    return krt::isPathInside(resolveTarget(path), directory)
        && krt::isPathInside(QDir::cleanPath(path), directory);
}

QString describeUse(FileUse use)
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
        const FileUse use = toFileUse(accessType);
        if (suite::canUse(file, use)
            && (isGranted(file, use) || (requestIfNoPermission && request(file, use))))
            return true;
        if (showRequestFailedTip)
            reportRefusal(file);
        return false;
    }

private:
    struct Grant {
        QString path; ///< resolved when it was granted
        FileUse use;
    };

    bool isGranted(const QString& file, FileUse use) const
    {
        const auto profile = profile::current();
        const QStringList& directories = profile->access.granted;
        return std::any_of(directories.begin(), directories.end(),
                   [&](const QString& directory) { return isInside(file, profile::expandPath(directory)); })
            || std::any_of(m_grants.begin(), m_grants.end(),
                [&](const Grant& grant) { return use <= grant.use && isInside(file, grant.path); });
    }

    bool request(const QString& file, FileUse use)
    {
        // Resolved once: the user is asked about this target, which may have changed afterwards.
        const QString target = resolveTarget(file);
        if (!askUser(target, use))
            return false;
        m_grants.push_back({ target, use });
        return true;
    }

    static bool askUser(const QString& target, FileUse use)
    {
        if (dialogs::areAnswered()) {
            const auto answer = dialogs::takeAnswer(profile::DialogKind::Access);
            return answer && answer->accept;
        }
        const QString question = QStringLiteral("A page wants to %1 %2. Allow this?")
                                     .arg(describeUse(use), suite::showPath(target));
        return dialogs::ask(nullptr, QMessageBox::Question, QStringLiteral("Access to files"), question,
                   QMessageBox::Yes | QMessageBox::No, QMessageBox::No)
            == QMessageBox::Yes;
    }

    static void reportRefusal(const QString& file)
    {
        const QString text = QStringLiteral("A page gets no access to %1.").arg(suite::showPath(file));
        if (dialogs::areAnswered())
            dialogs::warn(text);
        else
            dialogs::inform(nullptr, QStringLiteral("Access to files"), text);
    }

    std::vector<Grant> m_grants;
};

} // namespace

IKAccessManager* GetAccessManager()
{
    static AccessManager manager;
    return profile::serviceOn(QStringLiteral("accessManager")) ? &manager : nullptr;
}
