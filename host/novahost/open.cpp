#include "host/novahost/open.h"

#include "host/novahost/output.h"
#include "host/suite/web/scale.h"
#include "host/suite/web/webwidget.h"
#include "suite/klitestyle.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QGuiApplication>
#include <QPixmap>
#include <QTimer>

namespace novahost {

namespace {

constexpr int LargestWindow = 16'384; ///< as for pages

/// Takes the picture of a page that has loaded: when the page says that it is ready, or when it has looked the same for a
/// second. The first pictures after that are of what was painted before.
class Photographer final : public QObject {
public:
    Photographer(suite::WebShell& shell, QString file)
        : m_shell(&shell)
        , m_file(std::move(file))
    {
        connect(&m_timer, &QTimer::timeout, this, &Photographer::look);
    }

    void begin() { m_timer.start(IntervalMs); }
    /// Ends with an error when the page has not loaded by then.
    void limit()
    {
        QTimer::singleShot(LoadMs, this, [this] {
            if (!m_timer.isActive())
                QCoreApplication::exit(
                    fail(Failure, QStringLiteral("--screenshot: the page does not finish loading")));
        });
    }
    bool isDone() const { return m_isDone; }

private:
    static constexpr int LoadMs = 60'000;
    static constexpr int IntervalMs = 100;
    static constexpr int LooksWhenReady = 3;
    static constexpr int LooksWhenStill = 10;
    static constexpr int MaximumLooks = 200;

    void look()
    {
        KJsApiWebWidget* widget = m_shell ? m_shell->webWidget() : nullptr;
        if (!widget)
            return m_timer.stop();
        const QImage picture = m_shell->grab().toImage();
        m_same = picture == m_last ? m_same + 1 : 0;
        m_last = picture;
        const bool isReady = KJsApiWebWidgetPrivate::of(*widget).isPageReady();
        if (m_same < (isReady ? LooksWhenReady : LooksWhenStill) && ++m_looks < MaximumLooks)
            return;
        m_timer.stop();
        m_isDone = true;
        QCoreApplication::exit(picture.save(m_file)
                ? 0
                : fail(Failure, QStringLiteral("--screenshot: no picture can be written to %1").arg(m_file)));
    }

    QPointer<suite::WebShell> m_shell;
    QString m_file;
    QTimer m_timer;
    QImage m_last;
    int m_same = 0;
    int m_looks = 0;
    bool m_isDone = false;
};

/// Where a page is: an address, or a file, whose directory becomes that of the application.
struct Target {
    QUrl url; ///< empty when there is no such file
    QString directory;
};

Target findTarget(const QString& given)
{
    const QUrl address(given, QUrl::StrictMode);
    if (address.isValid() && !address.host().isEmpty() && address.scheme().size() > 1
        && address.scheme() != QLatin1String("file"))
        return { address, {} };
    const QString named = address.scheme() == QLatin1String("file") ? address.toLocalFile()
                                                                    : given.section(QLatin1Char('#'), 0, 0);
    const bool hasFragment = !QFileInfo::exists(given);
    const QFileInfo file(hasFragment ? named : given);
    if (!file.isFile())
        return {};
    QUrl url;
    url.setScheme(QStringLiteral("nova"));
    url.setHost(QStringLiteral("app"));
    url.setPath(QLatin1Char('/') + file.fileName());
    if (hasFragment && given.contains(QLatin1Char('#')))
        url.setFragment(given.section(QLatin1Char('#'), 1));
    return { url, file.absolutePath() };
}

} // namespace

int openInWindow(Suite& suite, const Options& options)
{
    const Target target = findTarget(options.page);
    if (target.url.isEmpty())
        return fail(
            UsageError, QStringLiteral("%1: there is no such file, and it is no address").arg(options.page));
    if (QGuiApplication::platformName() == QLatin1String("offscreen") && options.screenshot.isEmpty()
        && options.devToolsPort == 0)
        return fail(UsageError,
            QStringLiteral("open: there is no X display; set DISPLAY, or have a picture with --screenshot"));
    if (options.scale > 0)
        suite::setScale(options.scale);
    const QSize size = KLiteStyle::dpiScaledSize(options.width, options.height);
    if (size != size.boundedTo({ LargestWindow, LargestWindow }))
        return fail(UsageError,
            QStringLiteral("--size: a window has at most %1x%1 physical pixels").arg(LargestWindow));
    suite.browser().setApplication(target.directory);
    QString error;
    suite::WebShell* shell = suite.openWindow(target.url, options.page, error);
    if (!shell)
        return fail(UsageError, error);
    Photographer photographer(*shell, options.screenshot);
    if (!options.screenshot.isEmpty())
        photographer.limit();
    const QString viewId = shell->webWidget()->viewId();
    suite.browser().loaded = [&](const QString& loadedView, bool ok) {
        if (loadedView != viewId)
            return;
        if (!ok)
            fail(Failure, QStringLiteral("%1 can not be loaded").arg(target.url.toString()));
        if (!options.screenshot.isEmpty() && ok)
            photographer.begin();
        else if (!options.screenshot.isEmpty())
            QCoreApplication::exit(Failure);
    };
    shell->resize(size);
    shell->show();
    int code = QCoreApplication::exec();
    suite.browser().loaded = {};
    if (code == 0 && !options.screenshot.isEmpty() && !photographer.isDone())
        code = fail(Failure, QStringLiteral("--screenshot: the window has gone, there is no picture"));
    if (options.liveCounts)
        printLiveCounts("open");
    suite.closeWindows();
    if (options.liveCounts)
        printLiveCounts("closed");
    return code;
}

} // namespace novahost
