#include "host/suite/dialogs/filedialog.h"

#include "host/suite/dialogs/modal.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <algorithm>

namespace suite {

FileDialog::FileDialog(QWidget* owner, const QString& caption)
    : QFileDialog(owner, caption)
{
    // Asked by this class where it is needed: Qt's question would not survive its owner.
    setOptions(DontUseNativeDialog | DontConfirmOverwrite);
}

void FileDialog::begin(const QString& path)
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
    // In a turn of its own: the widget that called this could not stand that the dialog goes meanwhile.
    const auto acceptNow = [self = QPointer<FileDialog>(this)] {
        if (!self)
            return;
        const QStringList files = self->selectedFiles();
        if ((self->entersFolder(files) || self->goesOn(files)) && self)
            self->QFileDialog::accept();
        if (self)
            self->m_accepting = false;
    };
    QMetaObject::invokeMethod(QCoreApplication::instance(), acceptNow, Qt::QueuedConnection);
}

bool FileDialog::entersFolder(const QStringList& files) const
{
    return fileMode() != Directory && std::any_of(files.begin(), files.end(), [](const QString& file) {
        return QFileInfo(file).isDir();
    });
}

/// Whether nothing is in the way of these files, or the user wants them nonetheless.
bool FileDialog::goesOn(const QStringList& files)
{
    const auto missing = std::find_if(
        files.begin(), files.end(), [](const QString& file) { return !QFileInfo::exists(file); });
    if (missing != files.end() && fileMode() != AnyFile) {
        dialogs::tell(this, windowTitle(), QStringLiteral("\"%1\" does not exist.").arg(*missing));
        return false;
    }
    const QString refusal = m_refusal ? m_refusal(files) : QString();
    if (!refusal.isEmpty()) {
        dialogs::tell(this, windowTitle(), refusal);
        return false;
    }
    if (!m_confirmsOverwrite || acceptMode() != AcceptSave || fileMode() != AnyFile || files.isEmpty()
        || !QFileInfo::exists(files.first()))
        return true;
    return dialogs::ask(this, QMessageBox::Question, windowTitle(),
               QStringLiteral("\"%1\" exists already. Replace it?").arg(files.first()),
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
