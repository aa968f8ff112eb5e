#include "host/novahost/completewords.h"

#include "host/novahost/description.h"
#include "host/novahost/help.h"
#include "host/novahost/optionchecks.h"
#include "host/profile/profile.h"
#include "host/suite/play.h"

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
QStringList valuesOf(const std::string& form, const QString& typed)
{
    if (form.rfind("FILE", 0) == 0 || form == "[=FILE]" || form == "PAGE")
        return { QStringLiteral(":files") };
    if (form == "DIR")
        return { QStringLiteral(":directories") };
    if (form == "OBJECT")
        return Description::builtIn().names();
    if (form == "MEMBER")
        return Description::builtIn().names().filter(QStringLiteral("."));
    if (form == "ORIGIN")
        return { QStringLiteral("nova://app"), QStringLiteral("null") };
    if (form == "SHELL")
        return shellNames();
    QStringList items;
    if (form == "SERVICE,...")
        items = profile::serviceNames();
    if (form == "STEP,...")
        items = suite::Play::beginnings();
    items.replaceInStrings(
        QRegularExpression(QStringLiteral("^")), typed.left(typed.lastIndexOf(QLatin1Char(',')) + 1));
    return items;
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
    const CLI::App* helped = command;    ///< the command that "help" is given; null: there is none
    const CLI::Option* named = nullptr;  ///< by the word in front of it
    const CLI::Option* option = nullptr; ///< whose value it is
    std::size_t arguments = 0;           ///< of the command, in front of it
    bool isOfScript = false;             ///< one of the script's own arguments

    void take(const QString& word)
    {
        const CLI::Option* before = std::exchange(named, nullptr);
        // Some shells make a word of it.
        if (word == QLatin1String("=")) {
            option = before;
            return;
        }
        if (std::exchange(option, nullptr))
            return;
        if (isOption(word)) {
            named = optionNamed(word);
            option = named && named->get_items_expected_max() > 0 ? named : nullptr;
        } else if (const CLI::App* within = commandNamed(*command, word); within && arguments == 0) {
            command = within;
        } else {
            ++arguments;
            isOfScript = command->get_name() == "run";
            helped = helped ? commandNamed(*helped, word) : nullptr;
        }
    }
    bool isOption(const QString& word) const
    {
        return !isOfScript && word.startsWith(QLatin1Char('-')) && word != QLatin1String("-");
    }
    const CLI::Option* optionNamed(const QString& word) const
    {
        const CLI::Option* found = command->get_option_no_throw(word.toStdString());
        return found ? found : rootOf(*command).get_option_no_throw(word.toStdString());
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
    for (const QString& word : words.mid(0, words.size() - 1))
        position.take(word);
    QString typed = words.isEmpty() ? QString() : words.last();
    QString prefix;
    if (const int equals = typed.indexOf(QLatin1Char('=')); equals > 0 && position.isOption(typed)) {
        position.option = position.optionNamed(typed.left(equals));
        prefix = typed.left(equals + 1);
        typed.remove(0, equals + 1);
    } else if (equals == 0) {
        position.take(typed);
        typed.clear();
    }
    QStringList found;
    if (position.option) {
        found = valuesOf(position.option->get_option_text(), typed);
    } else if (typed.startsWith(QLatin1Char('-')) && !position.isOfScript) {
        found = describedOptions(*position.command);
    } else if (position.command->get_name() == "help") {
        found = position.helped ? commandNames(*position.helped) : QStringList();
    } else {
        const auto arguments =
            position.command->get_options([](const CLI::Option* option) { return option->get_positional(); });
        if (position.arguments < arguments.size())
            found = valuesOf(arguments[position.arguments]->get_name(true), typed);
        else if (position.isOfScript)
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
