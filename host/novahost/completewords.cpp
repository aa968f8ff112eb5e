#include "host/novahost/completewords.h"

#include "host/novahost/description.h"
#include "host/novahost/help.h"
#include "host/profile/profile.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <QFile>
#include <QRegularExpression>

namespace novahost {

namespace {

QString described(const std::string& name, const std::string& text)
{
    return QString::fromStdString(name + '\t' + text);
}

/// What the value of an option or an argument may be, by the word that the help has for it.
QStringList valuesOf(const std::string& form, const CLI::App& app, const QString& typed)
{
    if (form.rfind("FILE", 0) == 0 || form == "PAGE")
        return { QStringLiteral(":files") };
    if (form == "DIR")
        return { QStringLiteral(":directories") };
    if (form == "OBJECT")
        return Description::builtIn().names();
    if (form == "MEMBER")
        return Description::builtIn().names().filter(QStringLiteral("."));
    if (form == "ORIGIN")
        return { QStringLiteral("nova://app"), QStringLiteral("null") };
    if (form == "COMMAND")
        return commandNames(rootOf(app));
    if (form == "SHELL")
        return { QStringLiteral("bash"), QStringLiteral("zsh"), QStringLiteral("fish") };
    if (form != "SERVICE,...")
        return {};
    QStringList services = profile::serviceNames();
    services.replaceInStrings(
        QRegularExpression(QStringLiteral("^")), typed.left(typed.lastIndexOf(QLatin1Char(',')) + 1));
    return services;
}

QStringList describedOptions(const CLI::App& command)
{
    QStringList rows;
    for (const QString& name : optionNames(command)) {
        const CLI::Option* option = command.get_option_no_throw(name.toStdString());
        if (!option)
            option = rootOf(command).get_option_no_throw(name.toStdString());
        rows.append(described(name.toStdString(), option->get_description()));
    }
    return rows;
}

/// Where in the command line the last word is.
struct Position {
    const CLI::App* command;
    const CLI::Option* option = nullptr; ///< whose value it is
    std::size_t arguments = 0;           ///< of the command, in front of it

    void take(const QString& word)
    {
        // Some shells make a word of it.
        if (word == QLatin1String("=") || std::exchange(option, nullptr))
            return;
        const std::string name = word.toStdString();
        if (name.rfind('-', 0) == 0)
            option = optionNamed(name);
        else if (const CLI::App* within = commandNamed(*command, word); within && arguments == 0)
            command = within;
        else
            ++arguments;
    }
    /// Null for one that has no value.
    const CLI::Option* optionNamed(const std::string& name) const
    {
        const CLI::Option* found = command->get_option_no_throw(name);
        if (!found)
            found = rootOf(*command).get_option_no_throw(name);
        return found && found->get_items_expected_max() > 0 ? found : nullptr;
    }
};

} // namespace

QString completionScript(const QString& shell)
{
    QFile file(QStringLiteral(":/novahost/completion.") + shell);
    file.open(QIODevice::ReadOnly);
    return QString::fromUtf8(file.readAll()).trimmed();
}

QStringList completeWords(const CLI::App& app, const QStringList& words)
{
    Position position { &app };
    for (const QString& word : words.mid(0, words.size() - 1)) {
        const bool isValue = word == QLatin1String("=") && position.option;
        if (!isValue)
            position.take(word);
    }
    QString typed = words.isEmpty() || words.last() == QLatin1String("=") ? QString() : words.last();
    QString prefix;
    if (const int equals = typed.indexOf(QLatin1Char('='));
        equals > 0 && typed.startsWith(QLatin1String("--"))) {
        position.option = position.optionNamed(typed.left(equals).toStdString());
        prefix = typed.left(equals + 1);
        typed.remove(0, equals + 1);
    }
    QStringList found;
    if (position.option) {
        found = valuesOf(position.option->get_option_text(), *position.command, typed);
    } else if (typed.startsWith(QLatin1Char('-'))) {
        found = describedOptions(*position.command);
    } else {
        const auto arguments =
            position.command->get_options([](const CLI::Option* option) { return option->get_positional(); });
        if (position.arguments < arguments.size())
            found = valuesOf(arguments[position.arguments]->get_name(true), *position.command, typed);
        else if (position.command->get_name() == "run")
            found = QStringList(QStringLiteral(":files"));
        if (position.arguments == 0) {
            for (const CLI::App* command : position.command->get_subcommands({}))
                found.append(described(command->get_name(), command->get_description()));
        }
    }
    QStringList matching;
    for (const QString& row : qAsConst(found)) {
        if (row.startsWith(QLatin1Char(':')) || row.startsWith(typed))
            matching.append(row.startsWith(QLatin1Char(':')) ? row : prefix + row);
    }
    return matching;
}

} // namespace novahost
