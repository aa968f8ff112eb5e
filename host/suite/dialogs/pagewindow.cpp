#include "host/suite/dialogs/pagewindow.h"

#include "host/vexlite/core.h"
#include "suite/kjsapiwebwidget.h"
#include "vexlite/webwidgets.h"

#include <QCoreApplication>
#include <QTimer>

namespace dialogs {

namespace {

constexpr int LookMs = 100;

} // namespace

QWidget* windowOf(const JSContextEnv& page)
{
    IVEXJSCore* core = vexlite::GetVEXJSCore();
    const IVEXBrowser* browser = core ? core->Browser(page.browserId) : nullptr;
    const KJsApiWebWidget* widget = browser ? vexlite::GetWebWidget(browser->BrowserId()) : nullptr;
    return widget ? widget->window() : nullptr;
}

void rejectWithPage(QDialog& dialog, const JSContextEnv& page)
{
    auto* timer = new QTimer(&dialog);
    QObject::connect(timer, &QTimer::timeout, &dialog, [&dialog, page] {
        const vexlite::Core* core = vexlite::Core::instance();
        if (!core || !core->isOpen(page))
            dialog.reject();
    });
    timer->start(LookMs);
}

void whenEnded(QDialog& dialog, std::function<void(int result)> ended)
{
    const auto once = std::make_shared<std::function<void(int)>>(std::move(ended));
    const auto end = [once](int result) {
        if (const auto call = std::exchange(*once, {}))
            call(result);
    };
    QObject::connect(&dialog, &QDialog::finished, qApp, end);
    QObject::connect(
        &dialog, &QObject::destroyed, qApp, [end] { end(QDialog::Rejected); }, Qt::QueuedConnection);
}

} // namespace dialogs
