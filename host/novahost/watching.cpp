#include "host/novahost/watching.h"

#include <algorithm>

namespace novahost {

QString nameOf(const QString& object, std::int64_t instance)
{
    const QString name = object.mid(object.indexOf(QLatin1Char('.')) + 1);
    return instance ? QStringLiteral("%1#%2").arg(name).arg(instance) : name;
}

double millisecondsBetween(vexlite::TraceTime start, vexlite::TraceTime end)
{
    return std::chrono::duration<double, std::milli>(end - start).count();
}

int WatchedPages::add(const JSContextEnv& context)
{
    if (m_numbers.isEmpty())
        m_start = std::chrono::steady_clock::now();
    const int number = m_numbers.size() + 1;
    m_numbers.insert(context.contextId, number);
    return number;
}

double WatchedPages::millisecondsAt(vexlite::TraceTime time) const
{
    return m_numbers.isEmpty() ? 0 : std::max(0.0, millisecondsBetween(m_start, time));
}

} // namespace novahost
