// The cloud-document service behind its wire: give it each request that arrives, and send what it replies.
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

/// One suite that is connected: who is signed in there.
struct Session {
    bool isTold = false; ///< it has said so
    QString currentUser;
    QStringList signedIn;
    QString companyId;
};

struct Settings {
    QString directory;               ///< absolute; held (Place) as long as the service lives
    qint64 uploadBytesPerSecond = 0; ///< of all uploads together; 0: as fast as it goes
};

class Service : public QObject {
    Q_OBJECT
public:
    /// Called once for each request, from within handle() or later. `result` is the procedure's result
    /// message (borrowed during the call). ok says that its state is 0. When the service is destroyed first
    /// it is not called.
    using Reply = std::function<void(bool ok, const void* result)>;

    /// Opens (or makes) everything below settings.directory; `error` says why it can not, and then nothing
    /// may be called.
    Service(const Settings& settings, QString& error);
    ~Service() override;

    /// True when the service knows the procedure.
    static bool knows(std::string_view procedure);
    /// A procedure that the service knows, with its argument message (borrowed during the call).
    void handle(const std::shared_ptr<Session>& session, std::string_view procedure, const void* argument,
        Reply reply);
    /// True while there is work: the process must not end by itself.
    bool isBusy() const;

Q_SIGNALS:
    /// For every suite in which this user is signed in.
    void notice(const QString& userId, const QMap<QString, QString>& actions);
    /// isBusy() has become false.
    void idle();

private:
    std::unique_ptr<Core> m_core;
};

} // namespace cloudd
