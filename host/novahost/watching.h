// What the observers of a run share: names, and times since the run began.
#pragma once

#include "host/vexlite/observer.h"

#include <QHash>

namespace novahost {

/// "SettingsManager.Settings#3"
QString nameOf(const QString& object, std::int64_t instance);

/// Pages by numbers, 1 for the first, and the time since that was opened. Before it the time is 0.
class WatchedPages {
public:
    /// Returns the page's number.
    int add(const JSContextEnv& context);
    /// 0 for an unknown one.
    int numberOf(const JSContextEnv& context) const { return m_numbers.value(context.contextId); }
    int count() const { return m_numbers.size(); }
    double millisecondsAt(vexlite::TraceTime time) const;
    double milliseconds() const { return millisecondsAt(std::chrono::steady_clock::now()); }

private:
    QHash<std::int64_t, int> m_numbers;
    vexlite::TraceTime m_start {};
};

double millisecondsBetween(vexlite::TraceTime start, vexlite::TraceTime end);

} // namespace novahost
