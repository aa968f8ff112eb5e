// The contract panel: knows the dates and sums of the contract that a view shows.
#pragma once

#include "host/plugins/KContractMgrCommand/facts.h"
#include "host/suite/plugins/pluginfactory.h"

#include <QObject>
#include <QVariantMap>

namespace panels {

/// The plugin's instance object. A page sends, with the identifier of its view,
///
///     { type: "contract", viewId, text }      and gets { type: "facts", viewId, dates, sums }
///     { type: "facts", viewId }               and gets the same once more, empty without a contract
///
/// and for all else { type: "error", viewId, msg }, always from the event loop. What has no `viewId` gets nothing.
class Contract final : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    Q_INVOKABLE void handlePanelNotify(const QVariantMap& notification);

Q_SIGNALS:
    void sig_notifyToPanel(const QVariantMap& notification);

private:
    QVariantMap answer(const QString& viewId, const QVariantMap& notification);

    QMap<QString, Facts> m_facts; ///< by view
};

class ContractFactory final : public QObject, public suite::PluginFactory {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID NovaPluginFactoryId)
    Q_INTERFACES(suite::PluginFactory)

public:
    QObject* makeInstance(QObject* parent) override { return new Contract(parent); }
};

} // namespace panels
