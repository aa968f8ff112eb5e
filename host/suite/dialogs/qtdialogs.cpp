// Answers the dialogs that Qt itself shows: file dialogs, message boxes, and any other modal dialog.
#include "host/suite/dialogs/dialoganswers.h"

#include <QAbstractProxyModel>
#include <QApplication>
#include <QColorDialog>
#include <QDir>
#include <QFileDialog>
#include <QFileSystemModel>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListView>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>

namespace dialogs {

namespace {

using profile::DialogKind;

DialogKind findKind(const QFileDialog& dialog)
{
    switch (dialog.fileMode()) {
    case QFileDialog::AnyFile:
    case QFileDialog::ExistingFile:
        return dialog.acceptMode() == QFileDialog::AcceptSave ? DialogKind::Save : DialogKind::File;
    case QFileDialog::ExistingFiles:
        return DialogKind::Files;
    default: // Directory and the deprecated DirectoryOnly
        return DialogKind::Folder;
    }
}

/// Chooses files in a file dialog as a user would, with clicks and typing.
class FileChooser {
public:
    explicit FileChooser(QFileDialog& dialog)
        : m_dialog(dialog)
        , m_list(dialog.findChild<QListView*>(QStringLiteral("listView")))
        , m_name(dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit")))
        , m_model(dialog.findChild<QFileSystemModel*>(QStringLiteral("qt_filesystem_model")))
    {
    }

    /// Returns why the dialog can not choose the files; empty when they are chosen.
    QString choose(DialogKind kind, const QStringList& files)
    {
        if (!m_list || !m_name || !m_model)
            return QStringLiteral("it is the desktop's own dialog");
        QString fault = findFault(kind, files);
        if (!fault.isEmpty())
            return fault;
        if (kind == DialogKind::Folder) {
            m_dialog.setDirectory(files.first());
            clear();
        } else {
            m_dialog.setDirectory(QFileInfo(files.first()).path());
            click(files);
            if (!isChosen(files))
                type(files);
        }
        return isChosen(files) ? QString() : QStringLiteral("such names can not be chosen in it");
    }

private:
    QString findFault(DialogKind kind, const QStringList& files) const
    {
        if (files.isEmpty())
            return QStringLiteral("the answer has no \"files\"");
        if (files.size() > 1 && kind != DialogKind::Files)
            return QStringLiteral("it takes one of \"files\" only");
        for (const QString& file : files) {
            const QFileInfo info(file);
            if (kind == DialogKind::Save ? !info.dir().exists() : !info.exists())
                return QStringLiteral("\"%1\" is not there")
                    .arg(kind == DialogKind::Save ? info.path() : file);
            if (info.isDir() != (kind == DialogKind::Folder))
                return QStringLiteral("\"%1\" is %2 folder")
                    .arg(file, info.isDir() ? QStringLiteral("a") : QStringLiteral("no"));
            if (info.exists() && kind == DialogKind::Save
                && !m_dialog.testOption(QFileDialog::DontConfirmOverwrite))
                return QStringLiteral("\"%1\" exists; nobody confirms that it may be overwritten").arg(file);
        }
        return {};
    }

    /// In any order.
    bool isChosen(const QStringList& files) const
    {
        const QStringList names = sortTargets(m_dialog.selectedFiles());
        const QString suffix = m_dialog.defaultSuffix();
        return names == sortTargets(files)
            || (!suffix.isEmpty() && names == QStringList { files.first() + QLatin1Char('.') + suffix });
    }

    /// With links resolved, as the dialog may have done.
    static QStringList sortTargets(QStringList files)
    {
        for (QString& file : files)
            file = QFile::exists(file) ? QFileInfo(file).canonicalFilePath() : file;
        files.sort();
        return files;
    }

    void clear()
    {
        m_list->selectionModel()->clear();
        m_name->clear();
    }

    void click(const QStringList& files)
    {
        clear();
        const auto* proxy = qobject_cast<QAbstractProxyModel*>(m_dialog.proxyModel());
        for (const QString& file : files) {
            // An index by path exists before the model has read the folder.
            const QModelIndex index = m_model->index(file);
            m_list->selectionModel()->select(proxy ? proxy->mapFromSource(index) : index,
                QItemSelectionModel::Select | QItemSelectionModel::Rows);
        }
    }

    void type(const QStringList& files)
    {
        m_name->setText(files.size() == 1
                ? QFileInfo(files.first()).fileName()
                : QLatin1Char('"') + files.join(QStringLiteral("\" \"")) + QLatin1Char('"'));
        // Completion selects those files that are listed, while the line has all of them.
        m_list->selectionModel()->clear();
    }

    QFileDialog& m_dialog;
    QListView* m_list;
    QLineEdit* m_name;
    QFileSystemModel* m_model;
};

/// Ends a dialog, even one whose reject() does not close it.
void cancel(const QPointer<QDialog>& dialog)
{
    if (dialog && dialog->isVisible())
        dialog->reject();
    if (dialog && dialog->isVisible())
        dialog->QDialog::done(QDialog::Rejected);
}

void answerFileDialog(QFileDialog* dialog)
{
    const QPointer<QFileDialog> open(dialog);
    const DialogKind kind = findKind(*dialog);
    const std::optional<Answer> answer = takeAnswer(kind);
    QString fault;
    if (answer && answer->accept) {
        fault = FileChooser(*dialog).choose(kind, answer->files);
        if (fault.isEmpty()) {
            static_cast<QDialog*>(dialog)->accept();
            fault =
                QStringLiteral("it did not take \"%1\"").arg(answer->files.join(QStringLiteral("\", \"")));
        }
    }
    if (!open || !open->isVisible())
        return;
    if (!fault.isEmpty())
        warn(
            QStringLiteral("the file dialog \"%1\" is cancelled: %2; change its answer in dialogs.answers of "
                           "the profile")
                .arg(open->windowTitle(), fault));
    cancel(open.data());
}

void answerColorDialog(QColorDialog* dialog)
{
    const QPointer<QColorDialog> open(dialog);
    const std::optional<Answer> answer = takeAnswer(DialogKind::Color);
    if (answer && answer->accept) {
        const QColor color(answer->values.value(QStringLiteral("color")).toString());
        if (color.isValid())
            dialog->setCurrentColor(color);
        static_cast<QDialog*>(dialog)->accept();
    }
    cancel(open.data());
}

/// The button of a message box that an answer names, by its text; null when there is none.
QAbstractButton* findButton(const QMessageBox& box, const QString& name)
{
    for (QAbstractButton* button : box.buttons()) {
        QString text = button->text().replace(QLatin1String("&&"), QString(QChar::Null));
        if (text.remove(QLatin1Char('&')).replace(QChar::Null, QLatin1Char('&')) == name)
            return button;
    }
    warn(QStringLiteral("a message box has no button \"%1\": %2").arg(name, box.text()));
    return nullptr;
}

/// How much of a question is logged.
constexpr int LongestQuestion = 200;

/// With an answer of its own, as a user would, or with its default.
void answerMessageBox(QMessageBox* box)
{
    const QPointer<QMessageBox> open(box);
    const std::optional<Answer> answer = takeOwnAnswer(DialogKind::Confirm);
    QAbstractButton* button = box->defaultButton();
    if (!answer)
        warn(QStringLiteral("a message box is answered with its default: %1")
                 .arg(box->text().left(LongestQuestion)));
    else if (!answer->accept)
        button = nullptr;
    else if (const QString name = answer->values.value(QStringLiteral("button")).toString(); !name.isEmpty())
        button = findButton(*box, name);
    if (button)
        button->click();
    if (open && open->isVisible()) {
        QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
        QCoreApplication::sendEvent(open, &escape);
    }
    cancel(open.data());
}

void answer(QDialog* dialog)
{
    if (auto* files = qobject_cast<QFileDialog*>(dialog)) {
        answerFileDialog(files);
    } else if (auto* box = qobject_cast<QMessageBox*>(dialog)) {
        answerMessageBox(box);
    } else if (auto* colors = qobject_cast<QColorDialog*>(dialog)) {
        answerColorDialog(colors);
    } else {
        warn(QStringLiteral("the dialog \"%1\" is cancelled: no answer of the profile fits it")
                 .arg(dialog->windowTitle()));
        cancel(dialog);
    }
}

bool waitsForUser(const QDialog& dialog)
{
    return dialog.isModal() || qobject_cast<const QFileDialog*>(&dialog)
        || qobject_cast<const QMessageBox*>(&dialog);
}

/// Answers every dialog of the application that is shown, from the event loop.
class Watcher final : public QObject {
public:
    explicit Watcher(QCoreApplication* application)
        : QObject(application)
    {
        application->installEventFilter(this);
    }

    bool eventFilter(QObject* object, QEvent* event) override
    {
        if (event->type() != QEvent::Show || event->spontaneous())
            return false;
        auto* dialog = qobject_cast<QDialog*>(object);
        if (!dialog || !dialog->isWindow() || !waitsForUser(*dialog) || !areAnswered())
            return false;
        const auto answerNow = [shown = QPointer<QDialog>(dialog)] {
            if (shown && shown->isVisible())
                answer(shown);
        };
        QMetaObject::invokeMethod(this, answerNow, Qt::QueuedConnection);
        return false;
    }
};

} // namespace

void install()
{
    if (areAnswered())
        QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    new Watcher(QCoreApplication::instance());
}

} // namespace dialogs
