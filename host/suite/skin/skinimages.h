// The addresses of icons in the colours of a skin, nova-skin://SKIN/AREA/ICON?width=W&height=H, and their images.
#pragma once

#include <QByteArray>
#include <QString>

class QUrl;

namespace suite {

/// "SKIN/AREA/ICON" for the current skin, "SKIN/ICON" for an empty area. Empty when there is no such icon.
QString nameSkinImage(const QString& icon, const QString& area);

/// The image of an address, as PNG; empty when it has none. The skin of the address decides, so what it shows never changes.
/// [GUI thread]
QByteArray drawSkinImage(const QUrl& url);

} // namespace suite
