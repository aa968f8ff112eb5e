#include "host/suite/network.h"

#include "host/profile/directories.h"
#include "host/profile/profile.h"

#include <QSslConfiguration>

QString suite::trustCertificates()
{
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    const auto profile = profile::current();
    for (const QString& given : profile->network.caCertificates) {
        const QList<QSslCertificate> found = QSslCertificate::fromPath(profile::expandPath(given));
        if (found.isEmpty())
            return QStringLiteral("network.caCertificates: %1 has no certificate").arg(given);
        configuration.addCaCertificates(found);
    }
    if (!profile->network.caCertificates.isEmpty())
        QSslConfiguration::setDefaultConfiguration(configuration);
    return {};
}
