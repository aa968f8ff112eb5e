// The request and the result by which the way the user's documents roam is changed.
#pragma once

#include <QMap>
#include <QString>

/// The request of the procedure "changeRoamingMode", handed to the cloud IPC service under the type name
/// "KIpcLoginInfo". Plain data, owned by whoever made it.
struct KIpcLoginInfo {
    QString action;
    QMap<QString, QString> params;

    /// The request that puts `mode`, "auto" or "manual", in force for a user. [any thread]
    static KIpcLoginInfo makeRomaingMode(const QString& userId, const QString& mode);
};

/// Its result, which comes to the reply slot under the type name "KRpcResponse".
struct KRpcResponse {
    int code = 0;                  ///< 0: done
    QString message;               ///< for a person; may be empty
    QMap<QString, QString> values; ///< "roamingMode": the mode now in force; may be left out
};
