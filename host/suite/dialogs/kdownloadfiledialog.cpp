#include "suite/kdownloadfiledialog.h"

#include "host/suite/dialogs/dialoganswers.h"
#include "host/suite/dialogs/filedialog.h"
#include "host/suite/fileuse.h"
#include "host/suite/dialogs/modal.h"

namespace {

QString refusalOf(const QStringList& files)
{
    return files.isEmpty() ? QString() : suite::whyNotWritable(files.first());
}

QString answeredName()
{
    const auto answer = dialogs::take(profile::DialogKind::Save);
    if (!answer || !answer->accept)
        return {};
    const QString refusal =
        answer->files.isEmpty() ? QStringLiteral("The answer has no \"files\".") : refusalOf(answer->files);
    if (refusal.isEmpty())
        return answer->files.first();
    dialogs::warn(QStringLiteral("no file is saved: %1 Change its answer in dialogs.answers of the profile")
                      .arg(refusal));
    return {};
}

} // namespace

QString KDownloadFileDialog::getWritableFileName(
    QWidget* parent, const QString& caption, const QString& dir, const QString& filter)
{
    if (dialogs::answered())
        return answeredName();
    const QPointer<suite::FileDialog> dialog(new suite::FileDialog(parent, caption));
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    if (!filter.isEmpty())
        dialog->setNameFilter(filter);
    dialog->begin(dir);
    dialog->setRefusal(refusalOf);
    QString chosen = dialogs::run(dialog) ? dialog->selectedFiles().value(0) : QString();
    delete dialog;
    return chosen;
}
