// The dialogs that pages open.
#pragma once

#include "framework/call.h"

#include <QFileDialog>
#include <QPointer>

/// A page's turn to show a dialog. Script can run while a dialog is open; a page that asks for a second one
/// gets no turn, so that it can not pile them up. Answer as if the user had cancelled then. [GUI thread]
class DialogTurn {
public:
    explicit DialogTurn(const JSContextEnv& page);
    ~DialogTurn();
    DialogTurn(const DialogTurn&) = delete;
    DialogTurn& operator=(const DialogTurn&) = delete;

    /// Whether the dialog may be shown.
    explicit operator bool() const { return m_granted; }
    /// Whether the page, which had a browser when its turn began, has none any more.
    bool isPageGone() const;
    /// The window above which to show it: the one that shows the page, else the active one; may be null.
    QWidget* owner() const;

private:
    JSContextEnv m_page;
    bool m_hadBrowser;
    bool m_granted;
};

/// Asks for existing files, or for a directory, with {caption, dir, filter} of the call's options. Answers
/// the paths, none when the user cancelled or the owning window has gone. [GUI thread]
QStringList askForFiles(Call& call, QFileDialog::FileMode mode);
