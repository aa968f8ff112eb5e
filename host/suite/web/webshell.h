// A window of the suite that shows a page.
#pragma once

#include "suite/kjsapiwebwidget.h"

namespace suite {

/// The shell of a web widget, which fills it. While it lives it is a parent that pages may give to their windows. [GUI
/// thread]
class WebShell final : public QWidget {
    Q_OBJECT

public:
    WebShell(const QString& title, const QString& viewId);
    ~WebShell() override;

    /// Null when somebody has destroyed it.
    KJsApiWebWidget* webWidget() const;

Q_SIGNALS:
    void sigHidden();
    void sigShown();
    void sigClosed();
    void sigWindowActiveChanged(bool active);
    void sigResized(const QSize& size, const QSize& oldSize);
    /// The user, not a page, has closed the window.
    void closedByUser();

private:
    bool event(QEvent* event) override;
};

} // namespace suite
