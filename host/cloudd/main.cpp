// novacloudd: the stand-in suite's cloud-document service.
#include "host/cloudd/place.h"
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
/// The process before may be slow to end, or to begin.
constexpr int PatienceMs = 10'000;
constexpr int RetryMs = 50;
/// How often it looks whether its directory is there still.
constexpr int LookMs = 2000;

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

bool isServed(const QString& directory)
{
    const cloudwire::SocketPlace socketPlace(directory);
    QLocalSocket socket;
    socket.connectToServer(socketPlace.name());
    return socket.state() == QLocalSocket::ConnectedState;
}

enum class Start { Serve, IsServed, Fail };

/// Waits until the place is free; not when another process serves there meanwhile.
Start begin(cloudd::Place& place, const QString& directory)
{
    using Outcome = cloudd::Place::Outcome;
    const QDeadlineTimer patience(PatienceMs);
    Outcome outcome = place.hold();
    for (; outcome == Outcome::Taken && !patience.hasExpired(); outcome = place.hold()) {
        if (isServed(directory))
            return Start::IsServed;
        QThread::msleep(RetryMs);
    }
    return outcome == Outcome::Held ? Start::Serve : Start::Fail;
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
    CLI11_PARSE(app, argc, argv);

    // Everything is for this user only. A file that may not grow is an error like a full disk.
    umask(077);
    std::signal(SIGXFSZ, SIG_IGN);
    std::signal(SIGPIPE, SIG_IGN);

    const QCoreApplication application(argc, argv);
    settings.directory = QDir(QFile::decodeName(directory.c_str())).absolutePath();
    cloudd::Place place(settings.directory);
    const Start start = begin(place, settings.directory);
    if (start == Start::IsServed)
        return 0;
    if (start == Start::Fail)
        return fail(
            QStringLiteral("another process uses %1, or it can not be written to").arg(settings.directory));
    // Only now: a log belongs to the process that serves.
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
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, &application, [&] {
        if (place.isThere())
            return;
        qCritical("%s was removed or replaced", qPrintable(settings.directory));
        QCoreApplication::exit(1);
    });
    look.start(LookMs);
    const int exitCode = QCoreApplication::exec();
    qInstallMessageHandler(nullptr);
    return exitCode;
}
