#include "host/novahost/options.h"

#include "host/novahost/completewords.h"
#include "host/novahost/help.h"
#include "host/novahost/nearest.h"
#include "host/novahost/optionchecks.h"
#include "host/novahost/output.h"
#include "host/profile/profile.h"
#include "host/suite/play.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <QRegularExpression>
#include <algorithm>
#include <cstring>
#include <map>

namespace novahost {

namespace {

QString toQString(const std::string& given)
{
    return QString::fromLocal8Bit(given.c_str());
}

/// The commands that have an option of their own.
std::vector<const CLI::App*> ownersOf(const CLI::App& app, const std::string& option)
{
    return app.get_subcommands(
        [&](const CLI::App* command) { return command->get_option_no_throw(option) && option != "--help"; });
}

/// Puts the command in front where an option of its own precedes it: `novahost --watch run FILE`. What all share may be on
/// either side.
void putCommandFirst(const CLI::App& app, int argc, char** argv)
{
    bool isNeeded = false;
    for (int i = 1; i < argc; ++i) {
        const std::string word = argv[i];
        if (word.rfind('-', 0) != 0) {
            if (isNeeded && commandNamed(app, toQString(word)))
                std::rotate(argv + 1, argv + i, argv + i + 1);
            return;
        }
        const CLI::Option* option = app.get_option_no_throw(word);
        if (!option) {
            const auto owners = ownersOf(app, word.substr(0, word.find('=')));
            isNeeded = isNeeded || !owners.empty();
            option = owners.empty() ? nullptr : owners.front()->get_option_no_throw(word);
        }
        i += option && option->get_items_expected_max() > 0 ? 1 : 0;
    }
}

/// The index of the script's own arguments: after the first word behind "run" that is neither an option nor
/// an option's value. After "--" no word is an option.
int findScriptArguments(const CLI::App& app, int argc, char** argv)
{
    bool running = false;
    for (int i = 1; i < argc; ++i) {
        const std::string word = argv[i];
        if (running && word == "--")
            return std::min(i + 2, argc);
        if (word.rfind('-', 0) == 0 && word != "-") {
            const CLI::Option* option = app.get_option_no_throw(word);
            i += option && option->get_items_expected_max() > 0 ? 1 : 0;
        } else if (running) {
            return i + 1;
        } else if (word == "run") {
            running = true;
        } else {
            break;
        }
    }
    return argc;
}

/// Returns the error where a word seems to be the file of an option that takes one only behind an equals sign, or an empty
/// string.
QString findLooseFile(const CLI::App& app, int ownArguments, int argc, char** argv)
{
    bool hasCommand = false;
    for (int i = 1; i + 1 < ownArguments; ++i) {
        const QString word = toQString(argv[i]), next = toQString(argv[i + 1]);
        const CLI::Option* option =
            word.startsWith(QLatin1String("--")) ? app.get_option_no_throw(argv[i]) : nullptr;
        hasCommand = hasCommand || commandNamed(app, word);
        // Behind the command it may be the script, the expression or the page.
        const bool isFile = hasCommand
            ? i + 2 < argc && next.endsWith(QLatin1String(".json"))
            : !next.startsWith(QLatin1Char('-')) && next.contains(QLatin1Char('.'));
        if (option && option->get_option_text() == "[=FILE]" && isFile)
            return QStringLiteral("the file of %1 goes behind an equals sign: %1=%2").arg(word, next);
    }
    return {};
}

QStringList toQStringList(const std::vector<std::string>& given)
{
    QStringList list;
    for (const std::string& one : given)
        list.append(toQString(one));
    return list;
}

/// What the parser fills in and the options have in another form.
struct Given {
    std::string profileFile, dataDirectory, libraryFile, failures, play, script, object, origin, page, size,
        screenshot, shell, trace, record;
    std::vector<std::string> without, command;
};

void fill(Options& options, const Given& given)
{
    options.profileFile = toQString(given.profileFile);
    options.dataDirectory = toQString(given.dataDirectory);
    options.libraryFile = toQString(given.libraryFile);
    options.failures = toQString(given.failures);
    options.without = toQStringList(given.without);
    options.play = toQString(given.play);
    options.script = toQString(given.script);
    options.trace = given.trace == "true" ? QStringLiteral("-") : toQString(given.trace);
    options.record = toQString(given.record);
    options.page = toQString(given.page);
    readSize(given.size, options.width, options.height);
    options.screenshot = toQString(given.screenshot);
    options.object = toQString(given.object);
    options.origin = toQString(given.origin);
}

/// Options that are given before or behind the command; help.cpp knows which do not work with every command.
void declareShared(CLI::App& app, Options& options, Given& given)
{
    app.add_option("--profile", given.profileFile,
           "What the suite is: a JSON file (default: a profile that is built in)")
        ->option_text("FILE")
        ->check(checkFile);
    app.add_option(
           "--data", given.dataDirectory, "Where all state is kept (default: a fresh temporary folder)")
        ->option_text("DIR");
    app.add_flag("--trace", given.trace,
           "Print what happens between the page and the library: calls with arguments and answers, promises, events; or, "
           "with --trace=FILE, write it as a trace that ui.perfetto.dev and chrome://tracing open")
        ->option_text("[=FILE]");
    app.add_option("--record", given.record,
           "Write the same as JSON lines, to be played back in tests; holds what the page passed and got, passwords too")
        ->option_text("FILE");
    app.add_flag("--no-hints", options.noHints, "Print no hints at what looks like a mistake of the page's");
    app.add_flag(
        "--strict", options.strict, "Refuse calls at which a hint would be printed, and misspelt names");
    app.add_option("--failures", given.failures,
           "Write each failure that a page sees, {member, code, msg, rejects}, to a file of JSON lines in "
           "this directory")
        ->option_text("DIR")
        ->envname("VEXLITE_SEEN_FAILURES");
    app.add_option("--without", given.without, "Switch services off, to see what pages are told then")
        ->option_text("SERVICE,...")
        ->delimiter(',')
        ->allow_extra_args(false); // one word each time
    app.add_option("--deny", options.denyMask, "Hide the members whose category shares a bit with this mask")
        ->option_text("MASK")
        ->check(checkMask);
    app.add_option("--library", given.libraryFile,
           "Another libvexlitejsapi.so (default: the one beside this program)")
        ->option_text("FILE")
        ->check(checkFile);
    app.add_flag("--live-counts", options.liveCounts,
        "Print what the page still held, as JSON, before and after it was closed");

    app.add_flag(
        "--window", options.window, "Show a window for the page, which owns its dialogs; needs a display");

    app.add_flag("--browser", options.browser,
        "Run the script in a page of the browser engine, in a window of its own where there is a display");

    app.add_option("--play", given.play,
           "What happens meanwhile: " + suite::Play::forms().toStdString()
               + ". STEP@100ms waits that long, a step without a time for SIGUSR2")
        ->option_text("STEP,...");

    app.add_flag("--keep", options.keep,
        "Go on while there are listeners or watches, which do not keep run and eval otherwise");
    app.add_option("--time-limit", options.timeLimit,
           "End script that runs longer than this many seconds without returning to the event loop (default: none)")
        ->option_text("SECONDS")
        ->check(checkNumber("a number of seconds", 0.1, 1'000'000));

    app.add_option("--devtools", options.devToolsPort,
           "Let clients of the browser's DevTools protocol on this machine connect to this port: whoever does controls "
           "the pages")
        ->option_text("PORT")
        ->check(checkPort);
}

void declareScripts(CLI::App& app, Options& options, Given& given)
{
    CLI::App* run = app.add_subcommand("run", "Run a file as the body of an async function");
    run->add_option(
           "FILE", given.script, "The script, - for standard input; all that follows is its process.argv")
        ->required()
        ->check(checkScript);
    run->add_flag("--watch", options.watch, "Run it again whenever it changes, or what it imports");
    CLI::App* eval = app.add_subcommand("eval", "Print the awaited answer of an expression as JSON");
    eval->add_option("EXPRESSION", given.script, "May use await")->required();
    app.add_subcommand("repl", "Read expressions and print their answers; .help says more");

    CLI::App* open = app.add_subcommand("open", "Open a window with a page");
    open->add_option(
            "PAGE", given.page, "An HTML file, whose folder is served to it as nova://app/, or an address")
        ->required();
    open->add_option("--size", given.size, "Of the page, in CSS pixels (default: 1000x700)")
        ->option_text("WxH")
        ->check(checkSize);
    open->add_option("--scale", options.scale, "Physical pixels for each CSS pixel (default: the profile's)")
        ->option_text("FACTOR")
        ->check(checkNumber("a factor", 0.5, 8));
    open->add_option(
            "--screenshot", given.screenshot, "Write a picture of the page, also without a display, and end")
        ->option_text("FILE.png");
}

void declareReference(CLI::App& app, Options& options, Given& given)
{
    CLI::App* members = app.add_subcommand("members", "List the objects and the members they publish");
    members->add_option("OBJECT", given.object,
        "Only this one, for example Log; or the documentation of a member: FileSystem.copy");
    members->add_flag("--json", options.json,
        "For programs: an array of {object, mode, members: [{name, kind, mask, result, params}]}; of a "
        "member, an array of its description, as in types/api.json");
    members->add_flag("--unsupported", options.unsupportedOnly, "Only members that are not built yet");

    CLI::App* policy = app.add_subcommand("policy", "List the rules of who may call, which the profile has");
    policy->add_flag("--json", options.json, "For programs: an array of {origin, allow, deny, permissions}");
    CLI::App* explain =
        policy->add_subcommand("explain", "Say whether a page may call a member, and which rule decides");
    explain
        ->add_option("ORIGIN", given.origin,
            "The page's: https://docs.example:8443, nova://app; null for a page without one")
        ->required();
    explain
        ->add_option(
            "MEMBER", given.object, "For example FileSystem.copy or SettingsManager.Settings.getValue")
        ->required();
    explain->add_flag(
        "--json", options.json, "For programs: {origin, member, category, allowed, rule, reason}");

    app.add_subcommand("completion", "Print a script with which a shell completes novahost's words")
        ->add_option("SHELL", given.shell, "bash, zsh or fish")
        ->required()
        ->check(checkShell);
    app.add_subcommand("help", "Print the help of a command")
        ->add_option("COMMAND", given.command, "Any of these; all of them have --help, too");
}

/// The command that was given, policy's own included; the app where there was none.
const CLI::App& parsedCommand(const CLI::App& app)
{
    const std::vector<const CLI::App*> parsed =
        app.get_subcommands([](const CLI::App* one) { return one->parsed(); });
    return parsed.empty() ? app : parsedCommand(*parsed.front());
}

int failUsage(const CLI::App& command, const QString& error)
{
    return fail(UsageError,
        error
            + QStringLiteral("\nhint: `%1 --help` lists what there is")
                  .arg(QString::fromStdString(commandLineOf(command))));
}

int failUnknown(const CLI::App& command, const char* what, const QStringList& names, const QString& given)
{
    const QString advice = advise(names, given, "; did you mean %1?", "");
    return failUsage(
        command, QString::fromLatin1("there is no %1 %2%3").arg(QLatin1String(what), given, advice));
}

/// Says what is wrong with words that are neither commands nor options, or else what the parser has found.
int explainError(const CLI::App& app, const CLI::ParseError& error)
{
    const CLI::App& command = parsedCommand(app);
    const std::vector<std::string> unknown = app.remaining(true);
    for (const std::string& word : unknown) {
        const QString name = toQString(word.substr(0, word.find('=')));
        if (!name.startsWith(QLatin1Char('-')) || name == QLatin1String("--"))
            continue;
        QStringList owners;
        for (const CLI::App* owner : ownersOf(app, name.toStdString()))
            owners.append(toQString(owner->get_name()));
        return owners.isEmpty()
            ? failUnknown(command, "option", optionNames(command), name)
            : failUsage(
                command, QStringLiteral("%1 is for %2").arg(name, owners.join(QLatin1String(" and "))));
    }
    if (!unknown.empty() && !commandNames(command).isEmpty())
        return failUnknown(command, "command", commandNames(command), toQString(unknown.front()));
    if (&command == &app && dynamic_cast<const CLI::RequiredError*>(&error))
        return failUsage(command,
            QStringLiteral("a command is missing: %1").arg(commandNames(app).join(QLatin1String(", "))));
    if (!unknown.empty())
        return failUsage(command, QStringLiteral("%1 is one word too many").arg(toQString(unknown.front())));
    const std::string text = error.what(), name = text.substr(0, text.find(':'));
    const CLI::Option* option = command.get_option_no_throw(name);
    if (!option)
        option = app.get_option_no_throw(name);
    if (option && dynamic_cast<const CLI::ArgumentMismatch*>(&error))
        return failUsage(
            command, toQString(name + ": " + describeValue(option->get_option_text()) + " is missing"));
    static const QRegularExpression flag(QStringLiteral("^Could not convert: (\\S+) = (.*)$"));
    if (const auto match = flag.match(toQString(text)); match.hasMatch())
        return failUsage(command,
            QStringLiteral("%1 takes no value, but %2 is given").arg(match.captured(1), match.captured(2)));
    return failUsage(command, toQString(text));
}

/// Help, a shell's completion and what is wrong with the command line; nothing when a command is to be performed.
std::optional<int> performAlone(const CLI::App& app, const Given& given)
{
    const CLI::App& command = parsedCommand(app);
    if (command.get_name() == "completion") {
        printLine(completionScript(toQString(given.shell)), false);
        return 0;
    }
    if (command.get_name() == "help") {
        const CLI::App* wanted = &app;
        for (const std::string& name : given.command) {
            const CLI::App* within = wanted;
            wanted = commandNamed(*within, toQString(name));
            if (!wanted)
                return failUnknown(*within, "command", commandNames(*within), toQString(name));
        }
        // Not with help(), which gives the app's turn to the command that was parsed: this one.
        const std::string text = wanted->get_formatter()->make_help(wanted, "", CLI::AppFormatMode::Normal);
        printLine(QString::fromStdString(text).trimmed(), false);
        return 0;
    }
    for (const CLI::Option* option : app.get_options()) {
        // What the environment sets is set for all commands.
        if (option->count() == 0 || !option->get_envname().empty() || worksWith(*option, command))
            continue;
        return failUsage(command,
            QStringLiteral("%1 is for %2")
                .arg(QString::fromStdString(option->get_name()),
                    commandsWith(*option, app).join(QLatin1String(", "))));
    }
    return std::nullopt;
}

} // namespace

std::optional<Options> readOptions(int argc, char** argv, int& exitCode)
{
    Options options;
    Given given;
    CLI::App app("Runs page script against libvexlitejsapi in a stand-in suite.", "novahost");
    app.require_subcommand(1);
    app.set_version_flag("-v,--version", NOVAHOST_VERSION, "Print the version");
    app.fallthrough();
    setUpHelp(app);
    declareShared(app, options, given);
    declareScripts(app, options, given);
    declareReference(app, options, given);

    if (argc > 1 && std::strcmp(argv[1], "--complete-words") == 0) {
        printLine(
            completeWords(app, toQStringList({ argv + 2, argv + argc })).join(QLatin1Char('\n')), false);
        return std::nullopt;
    }
    putCommandFirst(app, argc, argv);
    const int ownArguments = findScriptArguments(app, argc, argv);
    QString error = findLooseFile(app, ownArguments, argc, argv);
    if (!error.isEmpty()) {
        exitCode = failUsage(app, error);
        return std::nullopt;
    }
    try {
        app.parse(ownArguments, argv);
    } catch (const CLI::ParseError& error) {
        exitCode = error.get_exit_code() == 0 ? app.exit(error) : explainError(app, error);
        return std::nullopt;
    }
    if (const std::optional<int> done = performAlone(app, given)) {
        exitCode = *done;
        return std::nullopt;
    }

    static const std::map<std::string, Command> commands { { "run", Command::Run }, { "eval", Command::Eval },
        { "repl", Command::Repl }, { "open", Command::Open }, { "members", Command::Members },
        { "policy", Command::Policy }, { "explain", Command::Policy } };
    const std::string command = parsedCommand(app).get_name();
    options.command = commands.at(command);
    options.explain = command == "explain";
    fill(options, given);
    if (options.watch && options.script == QLatin1String("-"))
        error = QStringLiteral("--watch is for a file; standard input can be read only once");
    if (options.strict && options.noHints)
        error = QStringLiteral("--strict makes errors of hints, which --no-hints switches off");
    if (!error.isEmpty()) {
        exitCode = failUsage(parsedCommand(app), error);
        return std::nullopt;
    }
    options.arguments = toQStringList(std::vector<std::string>(argv + ownArguments, argv + argc));
    return options;
}

} // namespace novahost
