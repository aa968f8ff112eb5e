// Roaming modes: whether the user's documents follow them to other machines by themselves.
#pragma once

#include <QString>

/// Whether a text names a mode; there is no other.
inline bool isRoamingMode(const QString& text)
{
    return text == QLatin1String("auto") || text == QLatin1String("manual");
}
