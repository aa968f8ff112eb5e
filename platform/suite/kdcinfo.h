// Data collection: events about the product's use, and the identity of this installation.
#pragma once

#include <QHash>
#include <QString>

/// The data-collection service. [GUI thread]
class KDcInfoC {
public:
    /// The service, or null when data collection is switched off. Owned by the suite.
    static KDcInfoC* instance();

    /// Sends an event with its fields, one time in `probability`. The two numbers between are reserved and 0;
    /// `immediately` sends it without waiting for others. Delivery is not reported.
    virtual void postGeneralEvent(const QString& eventName, const QHash<QString, QString>& fields,
        int reserved1, int reserved2, int probability, bool immediately) = 0;

protected:
    ~KDcInfoC() = default;
};

/// The identity of this installation; strings, empty when unknown. [any thread]
namespace KDcInfoCDetail {
QString getVersion();
QString getGuid();
QString getUuid();
QString getHdid3();
/// The distribution channel's code.
QString getMC();
} // namespace KDcInfoCDetail
