// novacloudd: the stand-in suite's cloud-document service.
#include "host/cloudd/server.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <QCoreApplication>
#include <QDir>
#include <csignal>
#include <cstdio>
#include <spdlog/sinks/rotating_file_sink.h>
#include <spdlog/spdlog.h>
#include <sys/stat.h>

namespace {

constexpr std::size_t LogBytes = 256 << 10;

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
    if (!QDir().mkpath(settings.directory))
        return fail(QStringLiteral("%1 can not be made").arg(settings.directory));
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
    const int exitCode = QCoreApplication::exec();
    qInstallMessageHandler(nullptr);
    return exitCode;
}
