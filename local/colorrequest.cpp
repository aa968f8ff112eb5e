#include "local/colorrequest.h"

#include "framework/libraryowner.h"

#include <QApplication>
#include <cmath>

namespace jsapi {

KColorRequest::KColorRequest(std::unique_ptr<DialogTurn> turn, ColorCallback callback)
    : m_turn(std::move(turn))
    , m_callback(std::move(callback))
{
    connect(&m_watch, &QTimer::timeout, this, &KColorRequest::lookAtPage);
    connect(qApp, &QCoreApplication::aboutToQuit, this, &KColorRequest::cancel);
    m_watch.start(DialogTurn::PageWatchMs);
}

KColorRequest::~KColorRequest() = default;

void KColorRequest::begin(std::unique_ptr<KColorRequest> request)
{
    request.release()->setParent(libraryOwner());
}

void KColorRequest::finish(const QColor& color, bool withAlpha)
{
    if (std::exchange(m_hasFinished, true))
        return;
    m_watch.stop();
    close();
    PickedColor picked { color.isValid(), {}, {} };
    if (picked.accepted) {
        constexpr double Thousand = 1000;
        picked.color = color.name();
        if (withAlpha)
            picked.alpha = std::round(color.alphaF() * Thousand) / Thousand;
    }
    // The function may do anything: show the next dialog, end the application.
    const ColorCallback callback = std::move(m_callback);
    m_turn.reset();
    deleteLater();
    callback(picked);
}

void KColorRequest::cancel()
{
    finish({});
}

void KColorRequest::lookAtPage()
{
    if (m_turn->isPageGone())
        cancel();
}

} // namespace jsapi
