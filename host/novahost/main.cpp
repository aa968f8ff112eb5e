// novahost: runs pages against the library without the suite.
#include "host/novahost/members.h"
#include "host/novahost/open.h"
#include "host/novahost/output.h"
#include "host/novahost/policy.h"
#include "host/novahost/repl.h"
#include "host/novahost/rerun.h"
#include "host/novahost/script.h"
#include "host/novahost/signals.h"

#include "host/krt/centre.h"
#include "host/profile/directories.h"
#include "host/suite/desktop.h"
#include "host/suite/dialogs/dialoganswers.h"
#include "host/suite/play.h"
#include "suite/kcoreapplication.h"

#include <QDir>
#include <QTimer>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace {

/// Opens missing standard streams, whose numbers other files would get otherwise.
void fillStandardStreams()
{
    int file = 0;
    do {
        file = open("/dev/null", O_RDWR);
    } while (file >= 0 && file < STDERR_FILENO);
    if (file > STDERR_FILENO)
        close(file);
}

/// Makes Qt draw into memory without a display, and keep its run-time files with the suite's state if the
/// session has no directory for them.
void setUpEnvironment()
{
    if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QDir data(profile::dataDirectory());
    if (qEnvironmentVariableIsEmpty("XDG_RUNTIME_DIR") && data.mkpath(QStringLiteral("runtime"))) {
        const QString runtime = data.filePath(QStringLiteral("runtime"));
        QFile::setPermissions(runtime, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(runtime));
    }
}

QtMessageHandler s_print = nullptr;

/// Drops the warning that Qt prints for every dialog that it draws into memory, and that the user has done what it says.
void printMessage(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    if (message != QLatin1String("This plugin does not support propagateSizeHints()")
        && message != QLatin1String("Sandboxing disabled by user.")) {
        std::fflush(stdout); // what the page has printed before
        s_print(type, context, message);
    }
}

int run(novahost::Suite& suite, const novahost::Options& options, novahost::Signals& signals,
    const suite::Play& play)
{
    switch (options.command) {
    case novahost::Command::Run:
        return signals.exitCode(novahost::runScript({ suite, options, signals, play }));
    case novahost::Command::Eval:
        return signals.exitCode(novahost::evalExpression({ suite, options, signals, play }));
    case novahost::Command::Repl:
        return novahost::runRepl(suite, options, signals);
    case novahost::Command::Open:
        return signals.exitCode(novahost::openInWindow(suite, options));
    case novahost::Command::Members:
        return novahost::listMembers(suite, options);
    case novahost::Command::Policy: // needs no suite
        break;
    }
    return novahost::UsageError;
}

/// Runs this program without --watch, again and again.
int rerun(const novahost::Options& options, int argc, char** argv)
{
    if (!novahost::Signals::hold())
        return novahost::fail(novahost::Failure, QStringLiteral("no pipe can be made for signals"));
    const QCoreApplication application(argc, argv);
    QStringList words = QCoreApplication::arguments().mid(1);
    // What follows the script is its own.
    const int ownWords = words.size() - options.arguments.size();
    for (int i = ownWords - 1; i >= 0; --i) {
        if (words[i] == QLatin1String("--watch"))
            words.removeAt(i);
    }
    return novahost::rerunScript(options, words);
}

} // namespace

int main(int argc, char** argv)
{
    fillStandardStreams();
    int exitCode = 0;
    const std::optional<novahost::Options> options = novahost::readOptions(argc, argv, exitCode);
    if (!options)
        return exitCode;

    if (options->watch)
        return rerun(*options, argc, argv);
    QString error = novahost::Suite::prepare(*options);
    if (!error.isEmpty())
        return novahost::fail(novahost::UsageError, error);
    if (options->command == novahost::Command::Policy)
        return novahost::showPolicy(*options);
    if (!novahost::Signals::hold())
        return novahost::fail(novahost::Failure, QStringLiteral("no pipe can be made for signals"));
    setUpEnvironment();
    s_print = qInstallMessageHandler(printMessage);
    // The browser engine needs it, if it is loaded.
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    int ownArguments = 1;
    const KCoreApplication application(ownArguments, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    novahost::Signals signals;
    dialogs::install();
    const suite::Desktop desktop;
    suite::Play play(suite::Play::read(options->play, error));
    if (!options->play.isEmpty())
        signals.setNext([&] { play.next(); });

    const std::unique_ptr<novahost::Suite> suite = novahost::Suite::start(*options, error);
    if (!suite)
        return novahost::fail(novahost::UsageError, error);
    // A step's time does not end before a script has returned to the event loop.
    const auto begin = [&] { play.begin(); };
    if (options->browser
        && (options->command == novahost::Command::Run || options->command == novahost::Command::Eval))
        suite->scriptBegan = begin;
    else if (options->browser || options->command == novahost::Command::Open)
        suite->browser().opened = begin;
    else
        QTimer::singleShot(0, begin);
    exitCode = run(*suite, *options, signals, play);
    if (!suite->finishWatching() && exitCode == 0)
        exitCode = novahost::Failure;
    // Before the application ends, which writes them for the last time: there is still somebody to report to.
    if (krt::kcc::shutdown())
        return exitCode;
    const int lost = krt::kcc::pendingChanges();
    return novahost::fail(exitCode == 0 ? novahost::Failure : exitCode,
        QStringLiteral("%1 %2 of ConfigCenter can not be stored and may be lost")
            .arg(QString::number(lost), lost == 1 ? QStringLiteral("change") : QStringLiteral("changes")));
}
