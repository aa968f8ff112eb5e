#include "suite/kdownloadfiledialog.h"

#include "host/suite/dialogs/dialoganswers.h"
#include "host/suite/dialogs/filedialog.h"
#include "host/suite/dialogs/modal.h"
#include "host/suite/fileuse.h"

namespace {

QString validate(const QStringList& files)
{
    return files.isEmpty() ? QString() : suite::findWriteError(files.first());
}

QString takeAnsweredName()
{
    const auto answer = dialogs::takeAnswer(profile::DialogKind::Save);
    if (!answer || !answer->accept)
        return {};
    const QString error =
        answer->files.isEmpty() ? QStringLiteral("The answer has no \"files\".") : validate(answer->files);
    if (error.isEmpty())
        return answer->files.first();
    dialogs::warn(QStringLiteral("no file is saved: %1 Change its answer in dialogs.answers of the profile")
                      .arg(error));
    return {};
}

} // namespace

QString KDownloadFileDialog::getWritableFileName(
    QWidget* parent, const QString& caption, const QString& dir, const QString& filter)
{
    if (dialogs::areAnswered())
        return takeAnsweredName();
    const QPointer<suite::FileDialog> dialog(new suite::FileDialog(parent, caption));
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    if (!filter.isEmpty())
        dialog->setNameFilter(filter);
    dialog->openAt(dir);
    dialog->setValidator(validate);
    QString chosen = dialogs::run(dialog) ? dialog->selectedFiles().value(0) : QString();
    delete dialog;
    return chosen;
}
