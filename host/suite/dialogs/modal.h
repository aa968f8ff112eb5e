// Showing a dialog until it ends, whatever else ends meanwhile. A dialog lives on the heap: its owner deletes
// it when it goes.
#pragma once

#include <QDialog>
#include <QMessageBox>
#include <QPointer>

namespace dialogs {

/// Shows the dialog and returns when it has ended: true when it was accepted. False as well when it was
/// destroyed or the application was told to exit; look at `dialog` before using it again.
template <typename Dialog> bool run(const QPointer<Dialog>& dialog)
{
    return dialog->exec() == QDialog::Accepted && dialog;
}

/// Asks the user; NoButton when nobody answered. `parent` may be null, or destroyed before this returns.
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

inline void tell(QWidget* parent, const QString& title, const QString& text)
{
    ask(parent, QMessageBox::Warning, title, text, QMessageBox::Ok, QMessageBox::Ok);
}

} // namespace dialogs
