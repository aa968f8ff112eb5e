// The suite's proxy of the cloud-document service: what happens there without having been asked for.
#pragma once

#include <QMap>
#include <QObject>
#include <QString>

/// [GUI thread] for all; signals come on the GUI thread too, from the event loop or from within a call.
/// Throws nothing.
class KCloudSvrProxy : public QObject {
    Q_OBJECT

public:
    /// The object that emits what the service does. Its signal
    ///
    ///     signal_notifyActionsMapDefault(const QMap<QString, QString>&)
    ///
    /// is connected by name. The strings have the key "action", which says what the others are:
    ///   "roamingModeChanged"   "roamingMode": "auto" or "manual", the mode now in force
    ///   "docCloudSyncStatus"   how the transfer of a document stands: "fileId", "cloudPath", "localPath",
    ///                          "status", "taskId", as far as they are known
    /// Owned by the suite, which may end it, make it later, or replace it by another one. Null when there is
    /// none.
    virtual QObject* larkEventObject() = 0;

Q_SIGNALS:
    /// The user has been signed in to the service, or out.
    void loginStatusChanged(bool isLogin);
};
