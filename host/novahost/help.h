// What --help prints: of each command the options that work with it, examples and exit codes.
#pragma once

#include <QStringList>
#include <string>

namespace CLI {
class App;
class Option;
} // namespace CLI

namespace novahost {

/// Before anything is added to the app.
void setUpHelp(CLI::App& app);

/// Whether an option that all commands share does something there.
bool worksWith(const CLI::Option& shared, const CLI::App& command);
/// The commands of the app that it works with.
QStringList commandsWith(const CLI::Option& shared, const CLI::App& app);

/// The app that a command is of.
const CLI::App& rootOf(const CLI::App& command);
/// Null when there is none.
const CLI::App* commandNamed(const CLI::App& app, const QString& name);
/// "novahost policy explain"
std::string commandLineOf(const CLI::App& command);
QStringList commandNames(const CLI::App& app);
/// The options that can be given to a command, "--json".
QStringList optionNames(const CLI::App& command);

} // namespace novahost
