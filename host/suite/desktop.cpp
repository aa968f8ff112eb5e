#include "host/suite/desktop.h"

#include "host/profile/profile.h"
#include "host/suite/dialogs/dialoganswers.h"

#include <QDesktopServices>
#include <QLoggingCategory>
#include <QUrl>

namespace suite {

namespace {

Q_LOGGING_CATEGORY(desktopLog, "suite.desktop")

const char* const Schemes[] = { "http", "https", "mailto" };

} // namespace

Desktop::Desktop()
{
    using profile::AddressMode;
    const AddressMode mode = profile::current()->desktop.openAddresses;
    if (mode == AddressMode::Open || (mode == AddressMode::Auto && dialogs::hasDisplay()))
        return;
    for (const char* scheme : Schemes)
        QDesktopServices::setUrlHandler(QLatin1String(scheme), this, "record");
}

Desktop::~Desktop()
{
    for (const char* scheme : Schemes)
        QDesktopServices::unsetUrlHandler(QLatin1String(scheme));
}

void Desktop::record(const QUrl& address)
{
    qCInfo(desktopLog, "open %s", address.toEncoded().constData());
}

} // namespace suite
