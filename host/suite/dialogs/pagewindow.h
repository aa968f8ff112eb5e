// Dialogs that are shown while script of their page goes on.
#pragma once

#include "vexlite/jsvariant.h"

#include <QDialog>
#include <functional>

namespace dialogs {

// All [GUI thread].

/// The window that shows a page; null when none does.
QWidget* windowOf(const JSContextEnv& page);

/// Rejects a dialog when the page that wanted it has gone.
void rejectWithPage(QDialog& dialog, const JSContextEnv& page);

/// Calls `ended` once, unless the application ends first: when the dialog has ended, or, with QDialog::Rejected, when it has
/// been destroyed with its owner. Accepted: the dialog is still there.
void whenEnded(QDialog& dialog, std::function<void(int result)> ended);

} // namespace dialogs
