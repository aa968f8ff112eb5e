#include "host/suite/dialogs/filedialog.h"

#include "host/suite/dialogs/modal.h"
#include "host/suite/showntext.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <algorithm>

namespace suite {

FileDialog::FileDialog(QWidget* owner, const QString& caption)
    : QFileDialog(owner, caption)
{
    // confirm() asks instead: Qt's message box would be used after the dialog was destroyed.
    setOptions(DontUseNativeDialog | DontConfirmOverwrite);
}

void FileDialog::openAt(const QString& path)
{
    if (path.isEmpty())
        return;
    const QFileInfo info(path);
    setDirectory(info.isDir() ? path : info.path());
    if (!info.isDir())
        selectFile(info.fileName());
}

void FileDialog::embed(std::function<void(int)> ended)
{
    m_ended = std::move(ended);
    setWindowFlags(Qt::Widget);
    setSizeGripEnabled(false);
}

void FileDialog::accept()
{
    if (m_accepting)
        return;
    m_accepting = true;
    // Queued: the caller is a widget of the dialog, which may be destroyed while a message box is shown.
    const auto acceptNow = [self = QPointer<FileDialog>(this)] {
        if (!self)
            return;
        const QStringList files = self->selectedFiles();
        if ((self->containsFolder(files) || self->confirm(files)) && self)
            self->QFileDialog::accept();
        if (self)
            self->m_accepting = false;
    };
    QMetaObject::invokeMethod(QCoreApplication::instance(), acceptNow, Qt::QueuedConnection);
}

bool FileDialog::containsFolder(const QStringList& files) const
{
    return fileMode() != Directory && std::any_of(files.begin(), files.end(), [](const QString& file) {
        return QFileInfo(file).isDir();
    });
}

/// Whether the files may be accepted; shows an error or asks the user where necessary.
bool FileDialog::confirm(const QStringList& files)
{
    const auto missing = std::find_if(
        files.begin(), files.end(), [](const QString& file) { return !QFileInfo::exists(file); });
    if (missing != files.end() && fileMode() != AnyFile) {
        dialogs::inform(
            this, windowTitle(), QStringLiteral("%1 does not exist.").arg(suite::showPath(*missing)));
        return false;
    }
    const QString error = m_validate ? m_validate(files) : QString();
    if (!error.isEmpty()) {
        dialogs::inform(this, windowTitle(), error);
        return false;
    }
    if (!m_confirmsOverwrite || acceptMode() != AcceptSave || fileMode() != AnyFile || files.isEmpty()
        || !QFileInfo::exists(files.first()))
        return true;
    return dialogs::ask(this, QMessageBox::Question, windowTitle(),
               QStringLiteral("%1 exists already. Replace it?").arg(suite::showPath(files.first())),
               QMessageBox::Yes | QMessageBox::No, QMessageBox::No)
        == QMessageBox::Yes;
}

void FileDialog::done(int result)
{
    if (!m_ended)
        return QFileDialog::done(result);
    setResult(result);
    m_ended(result);
}

} // namespace suite
