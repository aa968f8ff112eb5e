// The signals of a shell, whichever class of window it is.
#pragma once

#include <QEvent>
#include <QWidget>

namespace suite {
/// Emits the signal of `shell` that belongs to an event which it has just handled, by name. It is emitted from the event
/// loop: a receiver may destroy the window, which Qt still uses after such an event. To be called at the end of
/// QWidget::event(). [GUI thread]
void emitShellSignal(QWidget& shell, const QEvent& event);
} // namespace suite
