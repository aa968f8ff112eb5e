// Values as JSON, for services that take them as one string.
#pragma once

#include <QString>
#include <QVariantMap>

namespace JsonHelper {

/// A map as JSON without white space, the keys in order.
QString variantMapSerialize(const QVariantMap& map);

} // namespace JsonHelper
