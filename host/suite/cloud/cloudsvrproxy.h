// The stand-in's proxy of the cloud-document service: tells the library what the service tells the suite.
#pragma once

#include "suite/kcloudsvrproxy.h"

namespace suite {

/// The event object of a proxy.
class CloudEvents final : public QObject {
    Q_OBJECT

Q_SIGNALS:
    void signal_notifyActionsMapDefault(const QMap<QString, QString>& actions);
};

/// [GUI thread] for all.
class CloudSvrProxy final : public KCloudSvrProxy {
public:
    /// The suite's, switched on or not.
    static CloudSvrProxy& instance();

    QObject* larkEventObject() override { return &m_events; }

    /// Passes on what the service did, as it told it.
    void tellActions(const QMap<QString, QString>& actions);
    /// Whether the user is signed in to the service; told when it changes. Nobody is at first.
    void tellLogin(bool isLogin);

private:
    CloudEvents m_events;
    bool m_isLogin = false;
};

} // namespace suite
