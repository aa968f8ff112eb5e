// The stand-in's proxy of the cloud-document service: emits the events of the service for the library.
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

    /// Emits an event of the service.
    void notifyActions(const QMap<QString, QString>& actions);
    /// Sets whether the user is signed in to the service, and emits the change. Initially false.
    void setLogin(bool isLogin);

private:
    CloudEvents m_events;
    bool m_isLogin = false;
};

} // namespace suite
