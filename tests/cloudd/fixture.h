// A service in a directory of its own, a suite in which "ann" and "bob" are signed in, and files to upload.
#pragma once

#include "cloud/schema/lark_types.h"
#include "host/cloudd/directorylock.h"
#include "host/cloudd/service.h"
#include "host/cloudd/state.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTimer>
#include <functional>
#include <string>

namespace cloudd_test {

using namespace nova::lark;
using Texts = std::map<std::string, std::string>;

inline QString q(const std::string& text)
{
    return QString::fromStdString(text);
}

inline std::string bytesOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : "(no file)";
}

inline bool writeBytes(const QString& path, const std::string& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly)
        && file.write(bytes.data(), static_cast<qint64>(bytes.size())) >= 0;
}

inline std::string sha256(const std::string& bytes)
{
    return QCryptographicHash::hash(QByteArray::fromStdString(bytes), QCryptographicHash::Sha256)
        .toHex()
        .toStdString();
}

/// Of directories in memory where that is possible: each is synced some hundred times, and nobody pulls the
/// plug.
inline QString placeTemplate()
{
    const bool inMemory = QFileInfo(q("/dev/shm")).isWritable();
    return (inMemory ? q("/dev/shm") : QDir::tempPath()) + q("/cloudd-XXXXXX");
}

/// All files below a folder, relative, sorted; links are files.
inline QStringList filesBelow(const QString& folder)
{
    QStringList files;
    QDirIterator all(folder, QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
    while (all.hasNext())
        files.append(QDir(folder).relativeFilePath(all.next()));
    files.sort();
    return files;
}

/// "userId=ann, taskId=t0"; "<300*u>" stands for 300 times an "u", "\\0" and "\\n" for themselves.
inline Texts texts(const QString& line)
{
    Texts all;
    static const QRegularExpression repeated(q("<(\\d+)\\*([^>]+)>"));
    for (const QString& pair : line.split(q(", "), Qt::SkipEmptyParts)) {
        QString value = pair.section(QLatin1Char('='), 1).replace(q("\\n"), q("\n"));
        value.replace(q("\\0"), QChar());
        for (auto match = repeated.match(value); match.hasMatch(); match = repeated.match(value))
            value.replace(match.capturedStart(), match.capturedLength(),
                match.captured(2).repeated(match.captured(1).toInt()));
        all[pair.section(QLatin1Char('='), 0, 0).toStdString()] = value.toStdString();
    }
    return all;
}

/// Different bytes for each seed.
inline std::string content(size_t size, char seed)
{
    std::string bytes(size, seed);
    for (size_t i = 0; i < size; i += 997)
        bytes[i] = static_cast<char>(i / 997 + static_cast<size_t>(seed));
    return bytes;
}

template <typename Result> struct Answered {
    bool came = false;
    bool ok = false;
    Result result;
    int state() const { return came && ok == (result.state == 0) ? result.state : -1; }
};

class World {
public:
    explicit World(QString directory, qint64 bytesPerSecond = 0)
        : session(std::make_shared<cloudd::Session>())
        , m_directory(std::move(directory))
    {
        session->currentUser = q("ann");
        session->signedIn = QStringList { q("ann"), q("bob") };
        restart(bytesPerSecond);
    }

    void restart(qint64 bytesPerSecond = 0)
    {
        service.reset();
        place.reset();
        place = std::make_unique<cloudd::DirectoryLock>(state());
        error = q("the place is taken");
        if (place->lock() != cloudd::DirectoryLock::Outcome::Locked)
            return;
        service = std::make_unique<cloudd::Service>(
            cloudd::Settings { m_directory + q("/state"), bytesPerSecond, closed }, error);
        QObject::connect(service.get(), &cloudd::Service::notice,
            [this](const QString& user, const QMap<QString, QString>& actions) {
                if (onNotice)
                    onNotice(user.toStdString(), actions);
            });
    }

    QString state(const char* path = "") const { return m_directory + q("/state/") + q(path); }
    /// Writes a source file, and returns its path.
    std::string source(const std::string& name, const std::string& bytes) const
    {
        const QString path = m_directory + QLatin1Char('/') + q(name);
        if (!writeBytes(path, bytes))
            abort();
        return path.toStdString();
    }

    /// Lets the service work until it is so; false after a minute.
    template <typename Condition> static bool until(Condition isSo)
    {
        QElapsedTimer timer;
        QTimer tick;
        tick.start(100);
        for (timer.start(); !isSo() && !timer.hasExpired(60'000);)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        return isSo();
    }
    bool rest() const
    {
        return until([this] { return !service->isBusy(); });
    }

    /// Sends the request; the answer may come later.
    template <typename Result, typename Request>
    std::shared_ptr<Answered<Result>> send(const char* procedure, const Request& request)
    {
        auto answered = std::make_shared<Answered<Result>>();
        service->handle(session, procedure, &request, [answered](bool ok, const void* result) {
            if (answered->came)
                abort();
            *answered = { true, ok, *static_cast<const Result*>(result) };
        });
        return answered;
    }
    template <typename Result, typename Request>
    Answered<Result> ask(const char* procedure, const Request& request)
    {
        const auto answered = send<Result>(procedure, request);
        until([&] { return answered->came; });
        return *answered;
    }
    Answered<LarkIpcResult> call(const char* method, const char* arguments)
    {
        return call(method, texts(q(arguments)));
    }
    Answered<LarkIpcResult> call(
        const std::string& method, const Texts& arguments, const std::string& nameSpace = {})
    {
        LarkIpcArg request;
        request.nameSpace = nameSpace;
        request.method = method;
        request.argMap = arguments;
        return ask<LarkIpcResult>("larkIpcCall", request);
    }

    /// The id of the task.
    std::string upload(const std::string& file, const char* folder = "/", const char* autoRename = "false")
    {
        return call("uploadFileToCloud",
            { { "userId", "ann" }, { "filePath", file }, { "cloudDir", folder },
                { "autoRename", autoRename } })
            .result.resultMap["taskId"];
    }
    Texts task(const std::string& id, const char* user = "ann")
    {
        return call("getTaskState", { { "userId", user }, { "taskId", id } }).result.resultMap;
    }
    /// "status/uploadErrorCode" at the end.
    std::string outcome(const std::string& id)
    {
        rest();
        Texts now = task(id);
        return now["status"] + '/' + now["uploadErrorCode"];
    }
    QJsonObject data(const std::string& id)
    {
        return QJsonDocument::fromJson(QByteArray::fromStdString(task(id)["data"])).object();
    }
    Answered<GetCloudFileCachePathResult> cache(const std::string& path, const char* user = "ann")
    {
        GetCloudFileCachePathArg request;
        request.userId = user;
        request.cloudPath = path;
        return ask<GetCloudFileCachePathResult>("getCloudFileCachePath", request);
    }
    /// What the cloud has under this path; by way of the cache.
    std::string cloudBytes(const std::string& path)
    {
        const auto answered = cache(path);
        return answered.ok ? bytesOf(q(answered.result.localPath))
                           : "state " + std::to_string(answered.state());
    }

    QStringList closed; ///< to uploads
    std::shared_ptr<cloudd::Session> session;
    std::unique_ptr<cloudd::DirectoryLock> place;
    std::unique_ptr<cloudd::Service> service;
    QString error;
    std::function<void(const std::string& user, const QMap<QString, QString>& actions)> onNotice;

private:
    QString m_directory;
};

} // namespace cloudd_test
