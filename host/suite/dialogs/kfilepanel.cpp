// The file panel: a file dialog. It supports the options "caption" (its title), "dir" (the directory shown
// first), "filter" (as for QFileDialog) and "multiple" (true: several files). It returns "files" and the
// "section" it was opened for. It opens files unless the section's entry "IsOpen" is "0".
#include "suite/kfilepanel.h"

#include "host/suite/dialogs/dialoganswers.h"
#include "host/suite/dialogs/filedialog.h"
#include "host/suite/dialogs/modal.h"

namespace {

QVariantMap takeAnsweredPanel()
{
    const auto answer = dialogs::takeAnswer(profile::DialogKind::Panel);
    if (!answer || !answer->accept)
        return {};
    QVariantMap result = answer->values;
    if (!answer->files.isEmpty())
        result.insert(QStringLiteral("files"), answer->files);
    return result;
}

class FilePanel final : public IKFilePanel {
public:
    QVariantMap Show(const QString& section, const QMap<QString, QString>& entries,
        const QVariantMap& options, QWidget* owner) override
    {
        if (dialogs::areAnswered())
            return takeAnsweredPanel();
        const auto text = [&](const char* key) { return options.value(QLatin1String(key)).toString(); };
        const QPointer<suite::FileDialog> dialog(new suite::FileDialog(owner, text("caption")));
        if (entries.value(QStringLiteral("IsOpen")) == QLatin1String("0"))
            dialog->setAcceptMode(QFileDialog::AcceptSave);
        else
            dialog->setFileMode(options.value(QStringLiteral("multiple")).toBool()
                    ? QFileDialog::ExistingFiles
                    : QFileDialog::ExistingFile);
        if (!text("filter").isEmpty())
            dialog->setNameFilter(text("filter"));
        dialog->openAt(text("dir"));
        QVariantMap result;
        if (dialogs::run(dialog))
            result = { { QStringLiteral("files"), dialog->selectedFiles() },
                { QStringLiteral("section"), section } };
        delete dialog;
        return result;
    }
};

} // namespace

IKFilePanel* GetFilePanel()
{
    static FilePanel panel;
    return profile::serviceOn(QStringLiteral("filePanel")) ? &panel : nullptr;
}
