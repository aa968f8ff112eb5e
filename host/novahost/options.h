// The command line of novahost.
#pragma once

#include <QString>
#include <QStringList>
#include <optional>

namespace novahost {

enum class Command { Run, Eval, Repl, Members };

struct Options {
    Command command = Command::Run;

    QString profileFile;   ///< empty: the default profile
    QString dataDirectory; ///< empty: a fresh temporary one
    QString libraryFile;   ///< empty: the one beside this program
    QStringList without;   ///< services to switch off
    std::uint32_t denyMask = 0;
    bool trace = false;
    QString failures; ///< the directory that gets the failures that pages see; empty: none
    bool liveCounts = false;
    bool window = false;
    QString play; ///< what happens meanwhile

    QString script;        ///< run: the file; eval: the expression
    QStringList arguments; ///< run: what follows the file
    QString object;        ///< members: only this one
    bool json = false;
    bool unsupportedOnly = false;
};

/// Reads the command line. Nothing when the process is to end with `exitCode`: help was printed, or an error
/// that names the option.
std::optional<Options> readOptions(int argc, char** argv, int& exitCode);

} // namespace novahost
