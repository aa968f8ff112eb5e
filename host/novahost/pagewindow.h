// The window that shows a page on a display.
#pragma once

#include <QWidget>

namespace novahost {

/// A window with a view, which is empty since pages draw nothing here. As in a suite the view is an X window
/// of its own inside the window, which owns the page's dialogs. Closing it ends the application. [GUI thread]
class PageWindow final : public QWidget {
public:
    explicit PageWindow(const QString& title);

    /// The X11 window of the view.
    std::uint32_t viewId() const;

private:
    void closeEvent(QCloseEvent* event) override;

    QWindow* m_view; ///< owned by its container widget
};

} // namespace novahost
