// The command line of novahost.
#pragma once

#include <QString>
#include <QStringList>
#include <optional>

namespace novahost {

enum class Command { Run, Eval, Repl, Open, Members, Policy };

struct Options {
    Command command = Command::Run;

    QString profileFile;   ///< empty for the default profile
    QString dataDirectory; ///< empty for a new temporary one
    QString libraryFile;   ///< empty for the one beside this program
    QStringList without;   ///< services to switch off
    std::uint32_t denyMask = 0;
    QString trace;  ///< "-" for lines to standard error, or the file that gets a trace; empty: none
    QString record; ///< the file that gets a recording; empty: none
    bool noHints = false;
    bool strict = false; ///< hints are errors
    QString failures;    ///< the directory that gets the failures that pages see; empty: none
    bool liveCounts = false;
    bool window = false;
    bool browser = false; ///< runs the script in a browser view
    QString play;         ///< steps to play while the page runs
    bool keep = false;    ///< run, eval: listeners keep the page
    double timeLimit = 0; ///< in seconds; 0: none

    bool watch = false;    ///< run: again whenever the script changes
    QString script;        ///< run: the file, - for standard input; eval: the expression
    QStringList arguments; ///< run: what follows the file
    QString page;          ///< open: a file or an address
    int width = 1000;      ///< open: of the window, in CSS pixels
    int height = 700;
    double scale = 0;     ///< open: physical pixels for each CSS pixel; 0: the profile's
    QString screenshot;   ///< open: the file that gets a picture of the page; empty: none
    int devToolsPort = 0; ///< 0: none
    QString object;       ///< members: lists only this one; policy explain: the member
    bool explain = false; ///< policy: explains one decision
    QString origin;       ///< policy explain: of the page
    bool json = false;
    bool unsupportedOnly = false;
};

/// Parses the command line. Nothing when help or an error was printed: the process must exit with `exitCode`.
std::optional<Options> readOptions(int argc, char** argv, int& exitCode);

} // namespace novahost
