#include "host/plugins/KContractMgrCommand/panel.h"

namespace panels {

namespace {

constexpr int MaxViews = 100;

} // namespace

void Contract::handlePanelNotify(const QVariantMap& notification)
{
    const QString viewId = notification.value(QStringLiteral("viewId")).toString();
    if (viewId.isEmpty())
        return;
    QMetaObject::invokeMethod(
        this, [this, viewId, notification] { Q_EMIT sig_notifyToPanel(answer(viewId, notification)); },
        Qt::QueuedConnection);
}

QVariantMap Contract::answer(const QString& viewId, const QVariantMap& notification)
{
    const QString type = notification.value(QStringLiteral("type")).toString();
    if (type == QLatin1String("contract") && (m_facts.contains(viewId) || m_facts.size() < MaxViews))
        m_facts[viewId] = findFacts(notification.value(QStringLiteral("text")).toString());
    else if (type != QLatin1String("facts"))
        return { { QStringLiteral("type"), QStringLiteral("error") }, { QStringLiteral("viewId"), viewId },
            { QStringLiteral("msg"), QStringLiteral("this panel reads contracts, of 100 views at most") } };
    const Facts facts = m_facts.value(viewId);
    return { { QStringLiteral("type"), QStringLiteral("facts") }, { QStringLiteral("viewId"), viewId },
        { QStringLiteral("dates"), facts.dates }, { QStringLiteral("sums"), facts.sums } };
}

} // namespace panels
