#include "local/screencolor.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QScreen>
#include <QWindow>
#include <QX11Info>
#include <cmath>
#include <vector>

namespace jsapi {

namespace {

constexpr int SmallestZoom = 2;
constexpr int LargestZoom = 20;
constexpr int IdleMs = 60'000;
/// Another program may have the mouse for a moment, while a menu is open for one.
constexpr int GrabMs = 50;
constexpr int MaxGrabs = 40;
// Of the magnifier, in pixels of the screen's picture on each side of the one in the middle, and of the widget.
constexpr int Around = 7;
constexpr int Distance = 24;
constexpr int LabelHeight = 24;

class KScreenColorRequest;

/// Covers one screen with a picture of it, so that what is under the mouse stays as it is while the user looks for it.
class ScreenCover final : public QWidget {
public:
    ScreenCover(QScreen& screen, int zoom, KScreenColorRequest& request)
        : QWidget(nullptr, Qt::Window | Qt::FramelessWindowHint | Qt::BypassWindowManagerHint)
        , m_request(request)
        , m_picture(screen.grabWindow(0).toImage().convertToFormat(QImage::Format_RGB32))
        , m_zoom(zoom)
    {
        setAttribute(Qt::WA_OpaquePaintEvent);
        setMouseTracking(true);
        setCursor(Qt::CrossCursor);
        setGeometry(screen.geometry());
        m_ratio = m_picture.devicePixelRatio();
        m_picture.setDevicePixelRatio(1);
    }

    /// The pixel at a place of the desktop; nothing if that is on another screen.
    std::optional<QPoint> pixelAt(const QPointF& place) const
    {
        const QPointF local = (place - geometry().topLeft()) * m_ratio;
        const QPoint pixel(static_cast<int>(std::floor(local.x())), static_cast<int>(std::floor(local.y())));
        return m_picture.rect().contains(pixel) ? std::optional(pixel) : std::nullopt;
    }
    QColor colorOf(const QPoint& pixel) const { return m_picture.pixelColor(pixel); }

    /// Moves the magnifier there, or takes it away.
    void magnify(const std::optional<QPoint>& pixel)
    {
        update(magnifier());
        m_magnified = pixel;
        update(magnifier());
    }

private:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.drawImage(QRectF(rect()), m_picture, QRectF(m_picture.rect()));
        if (!m_magnified)
            return;
        constexpr int Pixels = 2 * Around + 1;
        const QRect frame = magnifier().adjusted(1, 1, -1, -1);
        const QRect view(frame.topLeft(), QSize(Pixels, Pixels) * m_zoom);
        const QRect source(*m_magnified - QPoint(Around, Around), QSize(Pixels, Pixels));
        const QColor color = colorOf(*m_magnified);
        painter.fillRect(frame, Qt::white);
        painter.drawImage(view, m_picture.copy(source));
        const QRect middle(view.topLeft() + QPoint(Around, Around) * m_zoom, QSize(m_zoom, m_zoom));
        painter.setPen(Qt::black);
        painter.drawRect(middle.adjusted(-1, -1, 0, 0));
        painter.drawRect(frame.adjusted(-1, -1, 0, 0));
        painter.drawText(frame.adjusted(0, view.height(), 0, 0), Qt::AlignCenter, color.name());
    }

    /// Where it is painted: beside the mouse, on the side that has room.
    QRect magnifier() const
    {
        if (!m_magnified)
            return {};
        const int side = (2 * Around + 1) * m_zoom + 2;
        const QSize size(side, side + LabelHeight);
        const QPoint mouse = (QPointF(*m_magnified) / m_ratio).toPoint();
        QRect place(mouse + QPoint(Distance, Distance), size);
        if (place.right() > width())
            place.moveRight(mouse.x() - Distance);
        if (place.bottom() > height())
            place.moveBottom(mouse.y() - Distance);
        return place;
    }

    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

    KScreenColorRequest& m_request;
    QImage m_picture; ///< in physical pixels
    double m_ratio = 1;
    int m_zoom;
    std::optional<QPoint> m_magnified;
};

class KScreenColorRequest final : public KColorRequest {
public:
    KScreenColorRequest(std::unique_ptr<DialogTurn> turn, const ColorCallback& callback, int zoom)
        : KColorRequest(std::move(turn), callback)
    {
        // All pictures before the first cover.
        for (QScreen* screen : QGuiApplication::screens())
            m_covers.push_back(std::make_unique<ScreenCover>(*screen, zoom, *this));
        connect(&m_idle, &QTimer::timeout, this, [this] { finish({}); });
        connect(&m_grabbing, &QTimer::timeout, this, [this] { grab(); });
        for (const char* change : { SIGNAL(screenAdded(QScreen*)), SIGNAL(screenRemoved(QScreen*)) })
            connect(qApp, change, this, SLOT(cancel()));
    }
    ~KScreenColorRequest() override { KScreenColorRequest::close(); }

    static void show(std::unique_ptr<KScreenColorRequest> request)
    {
        KScreenColorRequest& own = *request;
        begin(std::move(request));
        own.m_idle.start(IdleMs);
        own.m_grabbing.start(GrabMs);
        for (const auto& cover : own.m_covers)
            cover->show();
        own.moveTo(QCursor::pos());
    }

    void moveTo(const QPointF& place)
    {
        m_idle.start();
        for (const auto& cover : m_covers)
            cover->magnify(cover->pixelAt(place));
    }

    void pick(const QPointF& place)
    {
        for (const auto& cover : m_covers) {
            if (const auto pixel = cover->pixelAt(place))
                return finish(cover->colorOf(*pixel));
        }
    }

    void giveUp() { finish({}); }

private:
    void close() override
    {
        m_idle.stop();
        m_grabbing.stop();
        // The covers may be handling an event. Without an application their windows have gone already.
        for (std::unique_ptr<ScreenCover>& cover : m_covers) {
            if (!QCoreApplication::instance()) {
                static_cast<void>(cover.release());
            } else {
                cover->hide();
                cover.release()->deleteLater();
            }
        }
        m_covers.clear();
    }

    /// The first cover gets all that the mouse and the keyboard do, once the window system shows it.
    void grab()
    {
        QWindow* window = m_covers.front()->windowHandle();
        if (window && window->isExposed() && window->setMouseGrabEnabled(true)
            && window->setKeyboardGrabEnabled(true))
            m_grabbing.stop();
        else if (++m_grabs == MaxGrabs)
            finish({});
    }

    std::vector<std::unique_ptr<ScreenCover>> m_covers;
    QTimer m_idle;
    QTimer m_grabbing;
    int m_grabs = 0;
};

void ScreenCover::mouseMoveEvent(QMouseEvent* event)
{
    m_request.moveTo(event->screenPos());
}

void ScreenCover::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        m_request.pick(event->screenPos());
    else
        m_request.giveUp();
}

void ScreenCover::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape)
        m_request.giveUp();
    else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        m_request.pick(QCursor::pos());
}

} // namespace

Answer<bool> pickScreenColor(
    const JSContextEnv& page, const ScreenColorOptions& options, const ColorCallback& callback)
{
    if (options.zoom < SmallestZoom || options.zoom > LargestZoom)
        return WrongParameters;
    if (!QX11Info::isPlatformX11())
        return false;
    auto turn = std::make_unique<DialogTurn>(page);
    if (!*turn)
        return false;
    KScreenColorRequest::show(std::make_unique<KScreenColorRequest>(std::move(turn), callback, options.zoom));
    return true;
}

} // namespace jsapi
