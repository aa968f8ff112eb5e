// The dialogs that pages open.
#pragma once

#include "framework/arguments.h"
#include "framework/pagewatch.h"

#include <QFileDialog>
#include <QPointer>

namespace jsapi {

/// A page's turn to show a dialog. Script can run while a dialog is open; a page that opens a second one
/// gets no turn, so that it can not pile them up. Return what a cancelled dialog returns then. So can the
/// suite, which may unload the library: it stays loaded, since the member is to return. [GUI thread]
class DialogTurn {
public:
    explicit DialogTurn(const JSContextEnv& page);
    ~DialogTurn();
    DialogTurn(const DialogTurn&) = delete;
    DialogTurn& operator=(const DialogTurn&) = delete;

    /// How often an open dialog looks whether its page is still there.
    static constexpr int PageWatchMs = 200;

    /// Whether the dialog may be shown.
    explicit operator bool() const { return m_granted; }
    /// Whether the page, which had a browser when its turn began, has none any more.
    bool isPageGone() const { return m_page.isGone(); }
    /// The window above which to show it: the one that shows the page, else the active one; may be null.
    QWidget* owner() const;

private:
    PageWatch m_page;
    bool m_granted;
};

/// Runs a dialog until the user has ended it, or its page has gone. True when it was accepted; false also when it was
/// destroyed with its owner. [GUI thread]
bool runDialog(const DialogTurn& turn, QDialog* shown);

/// How much of a page's string is shown as the title of a window, a button, a text. More would not leave room on a screen.
inline constexpr int MaxTitle = 100;
inline constexpr int MaxButton = 60;
inline constexpr int MaxText = 2000;
inline constexpr int MaxTextLines = 20;

/// The beginning of a page's string, with an ellipsis if it is not all.
QString shorten(const QString& string, int maxLength, int maxLines = 1);

struct FileDialogOptions {
    QString caption;
    QString dir;
    QString filter;
    static constexpr auto fields()
    {
        return std::tuple(optional("caption", &FileDialogOptions::caption, "the dialog's title"),
            optional("dir", &FileDialogOptions::dir, "the directory to begin in"),
            optional("filter", &FileDialogOptions::filter,
                "which files are shown: `\"Images (*.png *.jpg);;Text (*.txt)\"`"));
    }
};

/// The same, where the dialog begins in an existing directory.
struct OpenDialogOptions : FileDialogOptions {
    static constexpr auto fields()
    {
        using Self = FileDialogOptions;
        return std::tuple(optional("caption", &Self::caption, "the dialog's title"),
            expected("dir", &Self::dir, "the directory to begin in, which must exist"),
            optional("filter", &Self::filter, "which files are shown"));
    }
};

struct FolderDialogOptions {
    QString caption;
    QString dir;
    static constexpr auto fields()
    {
        return std::tuple(optional("caption", &FolderDialogOptions::caption, "the dialog's title"),
            required("dir", &FolderDialogOptions::dir, "the directory to begin in"));
    }
};

/// Has the user choose existing files, or a directory. Returns the paths, none when the user cancelled or the
/// owning window has gone. [GUI thread]
QStringList chooseFiles(
    const JSContextEnv& page, const FileDialogOptions& options, QFileDialog::FileMode mode);

} // namespace jsapi
