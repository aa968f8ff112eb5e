#include "host/novahost/help.h"

#include "host/profile/profile.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <algorithm>

namespace novahost {

namespace {

constexpr std::size_t Width = 100;

/// Options that do not work with exactly the commands in which pages run.
struct Reach {
    const char* option;
    const char* commands;
};
constexpr Reach Reaches[] = {
    { "--profile", "run eval repl open members policy explain" },
    { "--data", "run eval repl open members" },
    { "--without", "run eval repl open members" },
    { "--deny", "run eval repl open members" },
    { "--library", "run eval repl open members" },
    { "--live-counts", "run eval open" },
    { "--window", "run eval repl" },
    { "--browser", "run eval repl" },
};
constexpr char WithPages[] = "run eval repl open";

struct CommandHelp {
    const char* command;
    const char* examples;
    const char* exitCodes;
};
constexpr char ScriptCodes[] = "0      the script has ended\n"
                               "1      it has failed, or an error was not caught\n"
                               "2      the command line is wrong, or a file that it names\n"
                               "128+n  signal n has ended it: 130 after Ctrl-C\n"
                               "other  exit(CODE)";
constexpr CommandHelp Help[] = {
    { "novahost",
        "novahost eval 'NovaExtension.Product.language().data'  # prints an answer\n"
        "novahost run page.js                                   # runs a script\n"
        "novahost open page.html                                # shows a page\n"
        "novahost help run                                      # says more of a command",
        nullptr },
    { "run",
        "novahost run page.js first second      # process.argv has them\n"
        "novahost run --trace page.js           # every call, on standard error\n"
        "novahost run --strict page.js          # stops at what looks like a mistake\n"
        "novahost run --keep page.js            # goes on while it listens\n"
        "novahost run --watch page.js           # again, whenever the file changes\n"
        "novahost run --record calls.jsonl page.js  # for tests of the page\n"
        "novahost run --browser page.mjs        # modules need the browser engine\n"
        "echo 'console.log(1)' | novahost run - # from standard input\n"
        "novahost run --data state page.js      # keeps settings and logs from one run to the next\n"
        "novahost run --without logger page.js  # what the page is told when a service is missing",
        ScriptCodes },
    { "eval",
        "novahost eval 'NovaExtension.Product.language().data'  # \"en_US\"\n"
        "novahost eval 'await NovaExtension.FileSystem.getFileMd5(\"/etc/hostname\")'  # waits for a promise\n"
        "novahost eval --browser navigator.userAgent            # in the browser engine",
        ScriptCodes },
    { "repl",
        "novahost repl               # begin with .help\n"
        "novahost repl --browser     # in a page of the browser engine\n"
        "novahost repl < inputs.txt  # the inputs come from a file",
        "0      the end of the input, or .exit\n"
        "1      the input came from no terminal, and an error was printed\n"
        "2      the command line is wrong, or a file that it names\n"
        "128+n  signal n has ended it\n"
        "other  exit(CODE)" },
    { "open",
        "novahost open page.html                  # its folder is nova://app/\n"
        "novahost open page.html --size 800x600 --screenshot page.png  # a picture, and the end\n"
        "novahost open page.html --devtools 9222  # for chrome://inspect",
        "0      the window was closed, or the picture was written\n"
        "1      the page can not be shown, or the picture not be written\n"
        "2      the command line is wrong, or a file that it names\n"
        "128+n  signal n has ended it\n"
        "other  exit(CODE)" },
    { "members",
        "novahost members                     # all objects\n"
        "novahost members Log                 # one of them\n"
        "novahost members FileSystem.copy     # what it takes, returns and fails with\n"
        "novahost members --json | jq length  # for programs",
        "0  they are listed\n"
        "1  the library publishes something else than novahost was built with\n"
        "2  there is no such object or member, or the command line is wrong" },
    { "policy",
        "novahost policy --profile profile.json              # the rules\n"
        "novahost policy explain nova://app FileSystem.copy  # one decision",
        "0  the rules are listed\n"
        "2  the profile or the command line is wrong" },
    { "explain",
        "novahost policy explain nova://app Account.logout  # a page of the application\n"
        "novahost policy explain https://docs.example FileSystem.copy --profile profile.json  # one of the network",
        "0  the page may call the member\n"
        "1  it may not\n"
        "2  there is no such member, or the command line is wrong" },
    { "completion",
        "source <(novahost completion bash)            # for this shell\n"
        "novahost completion zsh > ~/.zfunc/_novahost  # for all\n"
        "novahost completion fish > ~/.config/fish/completions/novahost.fish  # for all",
        nullptr },
};

/// A text in lines, all but the first indented.
std::string wrapped(const std::string& text, std::size_t indent)
{
    std::string lines;
    std::size_t column = indent;
    std::istringstream words(text);
    for (std::string word; words >> word; column += word.size()) {
        if (column > indent && column + 1 + word.size() > Width) {
            lines += '\n' + std::string(indent, ' ');
            column = indent;
        } else if (column > indent) {
            lines += ' ';
            ++column;
        }
        lines += word;
    }
    return lines;
}

std::string indented(const std::string& title, const std::string& lines)
{
    return '\n' + title + ":\n  " + CLI::detail::find_and_replace(lines, "\n", "\n  ") + '\n';
}

std::vector<const CLI::Option*> optionsOf(const CLI::App& command)
{
    const auto isOption = [](const CLI::Option* option) { return option->nonpositional(); };
    std::vector<const CLI::Option*> all = command.get_options(isOption);
    if (!command.get_parent())
        return all;
    for (const CLI::Option* shared : rootOf(command).get_options(isOption)) {
        if (worksWith(*shared, command))
            all.push_back(shared);
    }
    return all;
}

class HelpFormatter final : public CLI::Formatter {
public:
    HelpFormatter()
    {
        label("SUBCOMMAND", "COMMAND");
        label("Positionals", "Arguments");
        column_width(26);
    }

    std::string make_help(const CLI::App* app, std::string, CLI::AppFormatMode mode) const override
    {
        const std::string commands =
            CLI::detail::find_and_replace(make_subcommands(app, mode), "Subcommands:", "Commands:");
        std::string text = make_description(app) + '\n' + make_usage(app, commandLineOf(*app))
            + make_positionals(app) + commands + make_group("Options", false, optionsOf(*app));
        text = CLI::detail::find_and_replace(text, "\n\n\n", "\n\n");
        for (const CommandHelp& help : Help) {
            if (app->get_name() != help.command)
                continue;
            text += indented("Examples", help.examples);
            if (help.exitCodes)
                text += indented("Exit codes", help.exitCodes);
        }
        const CLI::Option* without = rootOf(*app).get_option_no_throw("--without");
        if (without && (!app->get_parent() || worksWith(*without, *app))) {
            const std::string names = profile::serviceNames().join(QStringLiteral(", ")).toStdString();
            text += indented("Services", wrapped(names, 0));
        }
        return text;
    }

    std::string make_usage(const CLI::App* app, std::string name) const override
    {
        const std::string usage = Formatter::make_usage(app, std::move(name));
        return app->get_name() == "run" ? CLI::detail::find_and_replace(usage, "FILE", "FILE [ARGUMENT...]")
                                        : usage;
    }

    std::string make_option(const CLI::Option* option, bool isPositional) const override
    {
        return row(
            make_option_name(option, isPositional) + make_option_opts(option), make_option_desc(option));
    }

    std::string make_option_opts(const CLI::Option* option) const override
    {
        const std::string& text = option->get_option_text();
        return text.empty() || text.front() == '[' ? text : ' ' + text;
    }

    std::string make_subcommand(const CLI::App* command) const override
    {
        return row(command->get_name(), command->get_description());
    }

private:
    std::string row(const std::string& name, const std::string& text) const
    {
        const std::size_t column = get_column_width();
        std::string left = "  " + name;
        left += left.size() + 2 > column ? '\n' + std::string(column, ' ')
                                         : std::string(column - left.size(), ' ');
        return left + wrapped(text, column) + '\n';
    }
};

} // namespace

const CLI::App& rootOf(const CLI::App& command)
{
    const CLI::App* app = &command;
    while (app->get_parent())
        app = app->get_parent();
    return *app;
}

const CLI::App* commandNamed(const CLI::App& app, const QString& name)
{
    const std::vector<const CLI::App*> found =
        app.get_subcommands([&](const CLI::App* one) { return one->get_name() == name.toStdString(); });
    return found.empty() ? nullptr : found.front();
}

void setUpHelp(CLI::App& app)
{
    app.formatter(std::make_shared<HelpFormatter>());
    app.set_help_flag("-h,--help", "Print this help");
}

bool worksWith(const CLI::Option& shared, const CLI::App& command)
{
    const std::string name = shared.get_name();
    if (name == "--version" || name == "--help")
        return false;
    const auto* reach = std::find_if(
        std::begin(Reaches), std::end(Reaches), [&](const Reach& one) { return name == one.option; });
    const QStringList commands =
        QString::fromLatin1(reach == std::end(Reaches) ? WithPages : reach->commands).split(QLatin1Char(' '));
    return commands.contains(QString::fromStdString(command.get_name()));
}

QStringList commandsWith(const CLI::Option& shared, const CLI::App& app)
{
    QStringList names;
    for (const CLI::App* command : app.get_subcommands({})) {
        if (worksWith(shared, *command))
            names.append(QString::fromStdString(command->get_name()));
    }
    return names;
}

std::string commandLineOf(const CLI::App& command)
{
    return command.get_parent() ? commandLineOf(*command.get_parent()) + ' ' + command.get_name()
                                : command.get_name();
}

QStringList commandNames(const CLI::App& app)
{
    QStringList names;
    for (const CLI::App* command : app.get_subcommands({}))
        names.append(QString::fromStdString(command->get_name()));
    return names;
}

QStringList optionNames(const CLI::App& command)
{
    QStringList names;
    for (const CLI::Option* option : optionsOf(command)) {
        for (const std::string& name : option->get_lnames())
            names.append(QStringLiteral("--") + QString::fromStdString(name));
    }
    return names;
}

} // namespace novahost
