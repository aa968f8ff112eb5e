// novacloudd: the stand-in suite's cloud-document service.
#include "host/cloudd/directorylock.h"
#include "host/cloudd/server.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QThread>
#include <csignal>
#include <cstdio>
#include <spdlog/sinks/rotating_file_sink.h>
#include <spdlog/spdlog.h>
#include <sys/stat.h>

namespace {

constexpr std::size_t LogBytes = 256 << 10;
/// Another process may need a while to end, or to begin to serve.
constexpr int LockTimeoutMs = 10'000;
constexpr int RetryMs = 50;
/// How often sync folders are looked through for changes.
constexpr int SyncIntervalMs = 10'000;
/// How often the directory is checked.
constexpr int CheckIntervalMs = 2000;

void writeMessage(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    const std::string line = std::string(context.category) + ": " + message.toStdString();
    if (type == QtDebugMsg || type == QtInfoMsg)
        spdlog::info(line);
    else
        spdlog::warn(line);
}

int fail(const QString& text)
{
    qCritical("%s", qPrintable(text));
    std::fprintf(stderr, "novacloudd: %s\n", qPrintable(text));
    return 1;
}

bool isServiceRunning(const QString& directory)
{
    const cloudwire::SocketPlace socketPlace(directory);
    QLocalSocket socket;
    socket.connectToServer(socketPlace.name());
    return socket.state() == QLocalSocket::ConnectedState;
}

QStringList decode(const std::vector<std::string>& paths)
{
    QStringList decoded;
    for (const std::string& path : paths)
        decoded.append(QFile::decodeName(path.c_str()));
    return decoded;
}

enum class Start { Serve, IsRunning, Fail };

/// Waits until no other process has the lock, or one is found to serve.
Start waitForLock(cloudd::DirectoryLock& lock, const QString& directory)
{
    using Outcome = cloudd::DirectoryLock::Outcome;
    const QDeadlineTimer deadline(LockTimeoutMs);
    Outcome outcome = lock.lock();
    for (; outcome == Outcome::Taken && !deadline.hasExpired(); outcome = lock.lock()) {
        if (isServiceRunning(directory))
            return Start::IsRunning;
        QThread::msleep(RetryMs);
    }
    return outcome == Outcome::Locked ? Start::Serve : Start::Fail;
}

} // namespace

int main(int argc, char** argv)
{
    std::string directory;
    cloudd::Settings settings;
    CLI::App app("The cloud-document service of the stand-in suite, which starts it.", "novacloudd");
    app.add_option("--directory", directory, "Where all state is kept; made when it is missing")->required();
    app.add_option("--upload-rate", settings.uploadBytesPerSecond,
           "Bytes a second that all uploads take together; 0 for no limit")
        ->check(CLI::NonNegativeNumber);
    std::vector<std::string> closed;
    std::vector<std::string> open;
    app.add_option("--closed", closed, "A file or folder that nothing is uploaded from; may be repeated");
    app.add_option("--open", open, "One within those that may be uploaded from all the same");
    settings.syncIntervalMs = SyncIntervalMs;
    CLI11_PARSE(app, argc, argv);

    // Files are for this user only. A file at its size limit is an error like a full disk, not a signal.
    umask(077);
    std::signal(SIGXFSZ, SIG_IGN);
    std::signal(SIGPIPE, SIG_IGN);

    const QCoreApplication application(argc, argv);
    settings.directory = QDir(QFile::decodeName(directory.c_str())).absolutePath();
    settings.closedToUploads = decode(closed);
    settings.openToUploads = decode(open);
    cloudd::DirectoryLock lock(settings.directory);
    const Start start = waitForLock(lock, settings.directory);
    if (start == Start::IsRunning)
        return 0;
    if (start == Start::Fail)
        return fail(
            QStringLiteral("another process uses %1, or it can not be written to").arg(settings.directory));
    // Opened with the lock held: only the process that serves writes the log.
    try {
        spdlog::set_default_logger(spdlog::rotating_logger_st(
            "novacloudd", (settings.directory + QStringLiteral("/service.log")).toStdString(), LogBytes, 1));
    } catch (const spdlog::spdlog_ex& error) {
        return fail(QString::fromStdString(error.what()));
    }
    spdlog::flush_on(spdlog::level::warn);
    qInstallMessageHandler(writeMessage);

    QString error;
    cloudd::Service service(settings, error);
    if (!error.isEmpty())
        return fail(error);
    cloudd::Server server(service);
    error = server.listen(settings.directory);
    if (!error.isEmpty())
        return fail(QStringLiteral("no socket can be made in %1: %2").arg(settings.directory, error));
    QObject::connect(&server, &cloudd::Server::unused, &application, &QCoreApplication::quit);
    QTimer check;
    QObject::connect(&check, &QTimer::timeout, &application, [&] {
        if (lock.isValid())
            return;
        qCritical("%s was removed or replaced", qPrintable(settings.directory));
        QCoreApplication::exit(1);
    });
    check.start(CheckIntervalMs);
    const int exitCode = QCoreApplication::exec();
    qInstallMessageHandler(nullptr);
    return exitCode;
}
