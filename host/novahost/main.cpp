// novahost: runs pages against the library without the suite.
#include "host/novahost/members.h"
#include "host/novahost/repl.h"
#include "host/novahost/script.h"

#include <QApplication>

int main(int argc, char** argv)
{
    int exitCode = 0;
    const std::optional<novahost::Options> options = novahost::readOptions(argc, argv, exitCode);
    if (!options)
        return exitCode;

    if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    int ownArguments = 1;
    const QApplication application(ownArguments, argv);
    QApplication::setQuitOnLastWindowClosed(false);

    QString error;
    const std::unique_ptr<novahost::Suite> suite = novahost::Suite::start(*options, error);
    if (!suite) {
        novahost::printLine(QStringLiteral("novahost: ") + error, true);
        return 2;
    }
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
    return 2;
}
