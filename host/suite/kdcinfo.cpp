// Data collection of the stand-in: nothing leaves the machine. Every event becomes a line of telemetry.jsonl
// in the data directory, including those that sampling drops: "sent" is true for those that a real service
// would get.
#include "suite/kdcinfo.h"

#include "host/profile/directories.h"
#include "host/profile/profile.h"

#include <QDateTime>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLoggingCategory>
#include <QRandomGenerator>
#include <QStringList>
#include <algorithm>

namespace {

Q_LOGGING_CATEGORY(dataLog, "suite.kdcinfo")

/// The limit of the names and values of one event's fields together, in UTF-16 units.
constexpr int MaxRecordedUnits = 1 << 20;

/// The fields in the order of their names, without the `omitted` ones that have no available.
QJsonObject collectFields(const QHash<QString, QString>& fields, int& omitted)
{
    // QJsonObject is sorted: inserting in order only appends.
    QStringList names = fields.keys();
    std::sort(names.begin(), names.end());
    QJsonObject recorded;
    int available = MaxRecordedUnits;
    for (const QString& name : names) {
        const QString value = fields.value(name);
        if (name.size() > available || value.size() > available - name.size()) {
            ++omitted;
            continue;
        }
        available -= name.size() + value.size();
        recorded.insert(name, value);
    }
    return recorded;
}

/// True once in `probability` times; always for 1 and less.
bool isSampled(int probability)
{
    return probability <= 1 || QRandomGenerator::global()->bounded(probability) == 0;
}

class DataCollection final : public KDcInfoC {
public:
    void postGeneralEvent(const QString& eventName, const QHash<QString, QString>& fields, int, int,
        int probability, bool immediately) override
    {
        int omitted = 0;
        const QJsonObject recorded = collectFields(fields, omitted);
        QJsonObject record {
            { QStringLiteral("time"), QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs) },
            { QStringLiteral("event"), eventName },
            { QStringLiteral("fields"), recorded },
            { QStringLiteral("probability"), probability },
            { QStringLiteral("immediately"), immediately },
            { QStringLiteral("sent"), isSampled(probability) },
        };
        if (omitted > 0)
            record.insert(QStringLiteral("omitted"), omitted);
        const QByteArray line = QJsonDocument(record).toJson(QJsonDocument::Compact) + '\n';
        QFile file(profile::dataDirectory() + QStringLiteral("/telemetry.jsonl"));
        if (!file.open(QIODevice::WriteOnly | QIODevice::Append) || file.write(line) != line.size()
            || !file.flush())
            qCWarning(dataLog, "%s can not be written: %s", qPrintable(file.fileName()),
                qPrintable(file.errorString()));
    }
};

} // namespace

KDcInfoC* KDcInfoC::instance()
{
    static DataCollection service;
    return profile::serviceOn(QStringLiteral("dataCollection")) ? &service : nullptr;
}

QString KDcInfoCDetail::getVersion()
{
    return profile::current()->installation.version;
}
QString KDcInfoCDetail::getGuid()
{
    return profile::current()->installation.guid;
}
QString KDcInfoCDetail::getUuid()
{
    return profile::current()->installation.uuid;
}
QString KDcInfoCDetail::getHdid3()
{
    return profile::current()->installation.hdid;
}
QString KDcInfoCDetail::getMC()
{
    return profile::current()->installation.channel;
}
