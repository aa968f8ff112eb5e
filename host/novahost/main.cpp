// novahost: runs pages against the library without the suite.
#include "host/novahost/members.h"
#include "host/novahost/repl.h"
#include "host/novahost/script.h"

#include "host/profile/directories.h"

#include <QApplication>
#include <QDir>

namespace {

constexpr int UsageError = 2;

int fail(const QString& error)
{
    novahost::printLine(QStringLiteral("novahost: ") + error, true);
    return UsageError;
}

/// Qt draws into memory where there is no display, and keeps its run-time files with the suite's state where
/// the session has no place for them.
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

} // namespace

int main(int argc, char** argv)
{
    int exitCode = 0;
    const std::optional<novahost::Options> options = novahost::readOptions(argc, argv, exitCode);
    if (!options)
        return exitCode;

    QString error = novahost::Suite::prepare(*options);
    if (!error.isEmpty())
        return fail(error);
    setUpEnvironment();
    int ownArguments = 1;
    const QApplication application(ownArguments, argv);
    QApplication::setQuitOnLastWindowClosed(false);

    const std::unique_ptr<novahost::Suite> suite = novahost::Suite::start(*options, error);
    if (!suite)
        return fail(error);
    switch (options->command) {
    case novahost::Command::Run:
        return novahost::runScript(*suite, *options);
    case novahost::Command::Eval:
        return novahost::evalExpression(*suite, *options);
    case novahost::Command::Repl:
        return novahost::runRepl(*suite, *options);
    case novahost::Command::Members:
        return novahost::listMembers(*suite, *options);
    }
    return UsageError;
}
