// Formats script source.
#pragma once

#include <QString>
#include <algorithm>

namespace engine::jsc {

/// Formats any property name for an object literal.
inline QString propertyNameText(const QString& name)
{
    const auto isPlain = [](QChar unit) {
        return (unit >= QLatin1Char('a') && unit <= QLatin1Char('z'))
            || (unit >= QLatin1Char('A') && unit <= QLatin1Char('Z'));
    };
    if (!name.isEmpty() && std::all_of(name.begin(), name.end(), isPlain))
        return name;
    QString text = QStringLiteral("\"");
    for (const QChar unit : name)
        text += QStringLiteral("\\u%1").arg(unit.unicode(), 4, 16, QLatin1Char('0'));
    text += QLatin1Char('"');
    // Computed, since a plain "__proto__" would set the prototype.
    return name == QLatin1String("__proto__") ? QLatin1Char('[') + text + QLatin1Char(']') : text;
}

} // namespace engine::jsc
