// The dialog that asks where to save.
#pragma once

#include <QString>

class QWidget;

class KDownloadFileDialog {
public:
    /// Asks for a file name to save to, beginning in `dir` (a directory, or a file name to propose), with
    /// `filter` as QFileDialog has it. Returns a name that can be written to, or an empty string when the user
    /// cancelled. Returns when the dialog has ended; the event loop runs meanwhile. `parent` may be null.
    /// [GUI thread]
    static QString getWritableFileName(
        QWidget* parent, const QString& caption, const QString& dir, const QString& filter);
};
