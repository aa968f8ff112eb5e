#pragma once

#include <QString>

namespace suite {

/// Has all connections of the process trust the authorities of the profile's `network.caCertificates` as well. Returns an
/// error for a file that has no certificate. [GUI thread]
QString trustCertificates();

} // namespace suite
