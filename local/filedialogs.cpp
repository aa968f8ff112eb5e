#include "local/filedialogs.h"

#include "framework/stayloaded.h"

#include <QApplication>
#include <QTimer>
#include <QX11Info>
#include <algorithm>
#include <cstdlib>
#include <xcb/xcb.h>

namespace jsapi {

namespace {

/// The pages that have a dialog open. Never destroyed: requests that have a turn may end after other statics.
std::vector<JSContextEnv>& pagesWithDialog()
{
    static auto& pages = *new std::vector<JSContextEnv>;
    return pages;
}

/// The window of the suite that an X11 window is or lies in, by the window tree; null when it lies in none.
QWidget* windowAround(xcb_window_t window)
{
    xcb_connection_t* connection = QX11Info::isPlatformX11() ? QX11Info::connection() : nullptr;
    while (connection && window != 0) {
        if (const QWidget* widget = QWidget::find(window))
            return widget->window();
        const std::unique_ptr<xcb_query_tree_reply_t, decltype(&std::free)> place(
            xcb_query_tree_reply(connection, xcb_query_tree(connection, window), nullptr), &std::free);
        window = place ? place->parent : 0;
    }
    return nullptr;
}

} // namespace

DialogTurn::DialogTurn(const JSContextEnv& page)
    : m_page(page)
    , m_granted(qobject_cast<QApplication*>(QCoreApplication::instance())
          && std::find(pagesWithDialog().begin(), pagesWithDialog().end(), page) == pagesWithDialog().end())
{
    if (!m_granted)
        return;
    stayLoaded();
    pagesWithDialog().push_back(page);
}

DialogTurn::~DialogTurn()
{
    if (m_granted)
        std::erase(pagesWithDialog(), m_page.page());
}

QWidget* DialogTurn::owner() const
{
    const IVEXBrowser* browser = browserOf(m_page.page());
    QWidget* window = browser ? windowAround(browser->Window()) : nullptr;
    return window ? window : QApplication::activeWindow();
}

bool runDialog(const DialogTurn& turn, QDialog* shown)
{
    const QPointer<QDialog> dialog(shown);
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, dialog, [&] {
        if (turn.isPageGone())
            dialog->reject();
    });
    watch.start(DialogTurn::PageWatchMs);
    return dialog->exec() == QDialog::Accepted && dialog;
}

QString shorten(const QString& string, int maxLength, int maxLines)
{
    QString shortened = string.section(QLatin1Char('\n'), 0, maxLines - 1).left(maxLength);
    if (!shortened.isEmpty() && shortened.at(shortened.size() - 1).isHighSurrogate())
        shortened.chop(1);
    return shortened.size() < string.size() ? shortened + QChar(0x2026) : shortened;
}

QStringList chooseFiles(
    const JSContextEnv& page, const FileDialogOptions& options, QFileDialog::FileMode mode)
{
    const DialogTurn turn(page);
    if (!turn)
        return {};
    // Its owner, and the dialog with it, or its page may go while the dialog is open.
    const QPointer<QFileDialog> dialog(
        new QFileDialog(turn.owner(), options.caption, options.dir, options.filter));
    dialog->setFileMode(mode);
    dialog->setOption(QFileDialog::ShowDirsOnly, mode == QFileDialog::Directory);
    QStringList chosen;
    if (runDialog(turn, dialog))
        chosen = dialog->selectedFiles();
    delete dialog;
    return chosen;
}

} // namespace jsapi
