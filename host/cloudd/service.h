// The cloud-document service without its socket: pass each request to it, and send what it replies.
//
//     QString error;
//     cloudd::Service service({ directory }, error);
//     service.handle(session, "syncFolder", &argument, [](bool ok, const void* result) { ... });
//
// docs/cloud-service.md describes the procedures. Everything happens on the thread that made the service,
// which has an event loop.
#pragma once

#include <QMap>
#include <QObject>
#include <QStringList>
#include <functional>
#include <memory>
#include <string_view>

namespace cloudd {

struct Core;

/// Who is signed in in one connected suite.
struct Session {
    bool hasReportedUsers = false; ///< the members below are known
    QString currentUser;
    QStringList signedIn;
    QString companyId;
};

struct Settings {
    QString directory;               ///< absolute; locked (DirectoryLock) while the service lives
    qint64 uploadBytesPerSecond = 0; ///< of all uploads together; 0: no limit
    QStringList closedToUploads {};  ///< see UploadRule
    QStringList openToUploads {};
    int syncIntervalMs = 0; ///< between syncs of a sync folder that nobody requests; 0: there are none
};

class Service : public QObject {
    Q_OBJECT
public:
    /// Called once for each request, from within handle() or later. `result` is the procedure's result
    /// message (borrowed during the call); ok means that its state is 0. Not called any more when the service
    /// is destroyed.
    using Reply = std::function<void(bool ok, const void* result)>;

    /// Opens the files in settings.directory and makes missing ones. Sets `error` when that fails; nothing
    /// else may be called then.
    Service(const Settings& settings, QString& error);
    ~Service() override;

    /// Whether there is such a procedure.
    static bool knows(std::string_view procedure);
    /// Calls a procedure that the service knows, with its argument message (borrowed during the call).
    void handle(const std::shared_ptr<Session>& session, std::string_view procedure, const void* argument,
        Reply reply);
    /// True while there is work, during which the process must not end.
    bool isBusy() const;

Q_SIGNALS:
    /// An event for every suite in which this user is signed in.
    void notice(const QString& userId, const QMap<QString, QString>& actions);
    /// isBusy() has become false.
    void idle();

private:
    std::unique_ptr<Core> m_core;
};

} // namespace cloudd
