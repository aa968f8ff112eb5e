#include "host/suite/dialogs/dialoganswers.h"

#include "host/profile/directories.h"

#include <QApplication>
#include <QLoggingCategory>
#include <set>

namespace dialogs {

namespace {

using profile::DialogKind;

Q_LOGGING_CATEGORY(dialogLog, "suite.dialogs")

QString toString(DialogKind kind)
{
    switch (kind) {
    case DialogKind::Any:
        break;
    case DialogKind::File:
        return QStringLiteral("file");
    case DialogKind::Files:
        return QStringLiteral("files");
    case DialogKind::Folder:
        return QStringLiteral("folder");
    case DialogKind::Save:
        return QStringLiteral("save");
    case DialogKind::Cloud:
        return QStringLiteral("cloud");
    case DialogKind::Panel:
        return QStringLiteral("panel");
    case DialogKind::Access:
        return QStringLiteral("access");
    case DialogKind::Login:
        return QStringLiteral("login");
    case DialogKind::Upgrade:
        return QStringLiteral("upgrade");
    case DialogKind::Purchase:
        return QStringLiteral("purchase");
    case DialogKind::Color:
        return QStringLiteral("color");
    case DialogKind::Confirm:
        return QStringLiteral("confirm");
    case DialogKind::Sync:
        return QStringLiteral("sync");
    }
    return {};
}

/// The answers of the current profile, and which of them are used.
class AnswerQueue {
public:
    std::optional<Answer> take(DialogKind kind)
    {
        std::optional<Answer> answer = take(kind, DialogKind::Any);
        if (!answer && m_missing.insert(kind).second)
            warn(QStringLiteral("no answer is left for a dialog \"%1\", so it is cancelled; add one to "
                                "dialogs.answers of the profile")
                     .arg(toString(kind)));
        return answer;
    }

    /// The first that is left of one of two kinds.
    std::optional<Answer> take(DialogKind kind, DialogKind other)
    {
        update();
        const std::vector<profile::DialogAnswer>& answers = m_profile->dialogs.answers;
        for (std::size_t i = 0; i < answers.size(); ++i) {
            const profile::DialogAnswer& found = answers[i];
            if (m_used[i] || (found.dialog != other && found.dialog != kind))
                continue;
            m_used[i] = true;
            Answer answer { found.accept, {}, found.values };
            for (const QString& file : found.files)
                answer.files << profile::expandPath(file);
            return answer;
        }
        return std::nullopt;
    }

private:
    /// Starts anew when another profile was loaded.
    void update()
    {
        const auto current = profile::current();
        if (m_profile == current)
            return;
        m_profile = current;
        m_used.assign(current->dialogs.answers.size(), false);
        m_missing.clear();
    }

    std::shared_ptr<const profile::Profile> m_profile; ///< owned, so that no other profile has its address
    std::vector<bool> m_used;
    std::set<DialogKind> m_missing; ///< already warned of
};

AnswerQueue& queue()
{
    static AnswerQueue queue;
    return queue;
}

} // namespace

bool hasDisplay()
{
    const QString platform = QGuiApplication::platformName();
    return platform != QLatin1String("offscreen") && platform != QLatin1String("minimal");
}

bool areAnswered()
{
    if (!qobject_cast<QApplication*>(QCoreApplication::instance()))
        return true;
    switch (profile::current()->dialogs.mode) {
    case profile::DialogMode::Show:
        return false;
    case profile::DialogMode::Answer:
        return true;
    case profile::DialogMode::Auto:
        break;
    }
    return !hasDisplay();
}

std::optional<Answer> takeAnswer(DialogKind kind)
{
    return queue().take(kind);
}

std::optional<Answer> takeOwnAnswer(DialogKind kind)
{
    return queue().take(kind, kind);
}

void warn(const QString& text)
{
    qCWarning(dialogLog, "%s", qUtf8Printable(text));
}

} // namespace dialogs
