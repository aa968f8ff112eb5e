// Runs modal dialogs that may be destroyed while they are shown: a dialog lives on the heap, and its owner
// deletes it with itself.
#pragma once

#include <QDialog>
#include <QMessageBox>
#include <QPointer>

namespace dialogs {

/// Shows the dialog until it has ended. True when it was accepted; false also when it was destroyed, so check
/// `dialog` before using it, or when the application exits.
template <typename Dialog> bool run(const QPointer<Dialog>& dialog)
{
    return dialog->exec() == QDialog::Accepted && dialog;
}

/// Returns the button that the user clicked; NoButton for none. `parent` may be null, or be destroyed before
/// this returns.
inline QMessageBox::StandardButton ask(QWidget* parent, QMessageBox::Icon icon, const QString& title,
    const QString& text, QMessageBox::StandardButtons buttons, QMessageBox::StandardButton preferred)
{
    const QPointer<QMessageBox> box(new QMessageBox(icon, title, text, buttons, parent));
    box->setTextFormat(Qt::PlainText);
    box->setDefaultButton(preferred);
    box->exec();
    const auto answer = box ? box->standardButton(box->clickedButton()) : QMessageBox::NoButton;
    delete box;
    return answer;
}

inline void inform(QWidget* parent, const QString& title, const QString& text)
{
    ask(parent, QMessageBox::Warning, title, text, QMessageBox::Ok, QMessageBox::Ok);
}

} // namespace dialogs
