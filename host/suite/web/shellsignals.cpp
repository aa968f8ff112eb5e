#include "host/suite/web/shellsignals.h"

#include <QResizeEvent>

namespace suite {

namespace {

/// The size that listeners know.
constexpr char SizeProperty[] = "_nova_emitted_size";

} // namespace

void emitShellSignal(QWidget& shell, const QEvent& event)
{
    const auto emitLater = [&](const char* signal, auto... arguments) {
        QMetaObject::invokeMethod(&shell, signal, Qt::QueuedConnection, arguments...);
    };
    switch (event.type()) {
    case QEvent::Show:
    case QEvent::Hide:
        // What the window system does by itself is minimising and restoring.
        if (!event.spontaneous())
            emitLater(event.type() == QEvent::Show ? "sigShown" : "sigHidden");
        break;
    case QEvent::Close:
        if (event.isAccepted())
            emitLater("sigClosed");
        break;
    case QEvent::WindowActivate:
    case QEvent::WindowDeactivate:
        emitLater("sigWindowActiveChanged", Q_ARG(bool, event.type() == QEvent::WindowActivate));
        break;
    case QEvent::Resize: {
        const auto& resize = static_cast<const QResizeEvent&>(event);
        // A window that has not been shown has had no size.
        const QSize before = resize.oldSize().isValid() ? resize.oldSize() : QSize(0, 0);
        // Qt sends such an event for its own resize() and one when the window system has done it.
        const bool isKnown = shell.property(SizeProperty) == resize.size();
        shell.setProperty(SizeProperty, resize.size());
        if (before != resize.size() && !isKnown)
            emitLater("sigResized", Q_ARG(QSize, resize.size()), Q_ARG(QSize, before));
        break;
    }
    default:
        break;
    }
}

} // namespace suite
