#include "host/novahost/browserfacts.h"

#include "host/profile/profile.h"

#include <QDateTime>

namespace novahost {

vexlite::BrowserFacts makeBrowserFacts(const QString& browserId)
{
    const profile::Browser facts = profile::current()->browser;
    vexlite::BrowserFacts made;
    made.applicationId = facts.applicationId;
    made.sessionId = facts.sessionId;
    made.browserId = browserId;
    made.grouped = facts.grouped;
    made.times.creationStart = QDateTime::currentMSecsSinceEpoch();
    made.groupMark1 = made.times.creationStart + facts.groupMark1OffsetMs;
    made.groupMark2 = made.times.creationStart + facts.groupMark2OffsetMs;
    return made;
}

} // namespace novahost
