#include "host/novahost/options.h"

#include "host/novahost/output.h"
#include "host/profile/profile.h"
#include "host/suite/play.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <QRegularExpression>
#include <algorithm>

namespace novahost {

namespace {

constexpr char Footer[] = "Services for --without: ";

/// The index of the script's own arguments: after the first word behind "run" that is neither an option nor
/// an option's value. After "--" no word is an option.
int findScriptArguments(const CLI::App& app, int argc, char** argv)
{
    bool running = false;
    for (int i = 1; i < argc; ++i) {
        const std::string word = argv[i];
        if (running && word == "--")
            return std::min(i + 2, argc);
        if (word.rfind('-', 0) == 0) {
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

/// Returns the error, or an empty string.
std::string checkMask(const std::string& given)
{
    bool ok = false;
    QString::fromStdString(given).toUInt(&ok, 0);
    return ok ? std::string()
              : "a mask is a number below 2^32, such as 64 or 0x40; \"" + given + "\" is none";
}

bool readSize(const std::string& given, int& width, int& height)
{
    static const QRegularExpression form(QStringLiteral("^(\\d{1,5})x(\\d{1,5})$"));
    const QRegularExpressionMatch match = form.match(QString::fromStdString(given));
    if (!match.hasMatch() || match.captured(1).toInt() == 0 || match.captured(2).toInt() == 0)
        return false;
    width = match.captured(1).toInt();
    height = match.captured(2).toInt();
    return true;
}

/// Returns the error, or an empty string.
std::string checkSize(const std::string& given)
{
    int width = 0, height = 0;
    return readSize(given, width, height)
        ? std::string()
        : "a size is two numbers above 0, such as 1000x700; \"" + given + "\" is none";
}

std::string formatError(const CLI::App*, const CLI::Error& error)
{
    return std::string("novahost: ") + error.what() + "\nRun with --help for more information.\n";
}

QString toQString(const std::string& given)
{
    return QString::fromLocal8Bit(given.c_str());
}

QStringList toQStringList(const std::vector<std::string>& given)
{
    QStringList list;
    for (const std::string& one : given)
        list.append(toQString(one));
    return list;
}

} // namespace

std::optional<Options> readOptions(int argc, char** argv, int& exitCode)
{
    Options options;
    std::string profileFile, dataDirectory, libraryFile, failures, play, script, object, origin;
    std::vector<std::string> without;

    CLI::App app("Runs page script against libvexlitejsapi in a stand-in suite.", "novahost");
    app.require_subcommand(1);
    app.set_version_flag("--version", NOVAHOST_VERSION);
    app.footer(Footer + profile::serviceNames().join(QLatin1String(", ")).toStdString());
    app.fallthrough();
    app.failure_message(formatError);
    app.add_option(
           "--profile", profileFile, "What the suite is: a JSON file (default: a profile that is built in)")
        ->option_text("FILE")
        ->check(CLI::ExistingFile);
    app.add_option("--data", dataDirectory, "Where all state is kept (default: a fresh temporary folder)")
        ->option_text("DIR");
    app.add_flag("--trace", options.trace, "Print a line for each call: object, member, time, outcome");
    app.add_option("--failures", failures,
           "Write each failure that a page sees, {member, code, msg, rejects}, to a file of JSON lines in "
           "this directory")
        ->option_text("DIR")
        ->envname("VEXLITE_SEEN_FAILURES");
    app.add_option("--without", without, "Switch services off, to see what pages are told then")
        ->option_text("SERVICE,...")
        ->delimiter(',')
        ->allow_extra_args(false); // one word each time
    app.add_option("--deny", options.denyMask, "Hide the members whose category shares a bit with this mask")
        ->option_text("MASK")
        ->check(checkMask);
    app.add_option(
           "--library", libraryFile, "Another libvexlitejsapi.so (default: the one beside this program)")
        ->option_text("FILE")
        ->check(CLI::ExistingFile);
    app.add_flag("--live-counts", options.liveCounts,
        "Print what the page still held, as JSON, before and after it was closed");

    app.add_flag(
        "--window", options.window, "Show a window for the page, which owns its dialogs; needs a display");

    app.add_flag("--browser", options.browser,
        "Run the script in a page of the browser engine, in a window of its own where there is a display");

    app.add_option("--play", play,
           "What happens meanwhile: " + suite::Play::forms().toStdString()
               + ". STEP@100ms waits that long, a step without a time for SIGUSR2")
        ->option_text("STEP,...");

    app.add_flag("--keep", options.keep,
        "Go on while there are listeners or watches, which do not keep run and eval otherwise");
    app.add_option("--time-limit", options.timeLimit,
           "End script that runs longer than this many seconds without returning to the event loop (default: none)")
        ->option_text("SECONDS")
        ->check(CLI::Range(0.1, 1'000'000.0));

    CLI::App* run = app.add_subcommand("run", "Run a file as the body of an async function");
    run->add_option("FILE", script, "The script; all that follows is its process.argv")
        ->required()
        ->check(CLI::ExistingFile);

    CLI::App* eval = app.add_subcommand("eval", "Print the awaited answer of an expression as JSON");
    eval->add_option("EXPRESSION", script)->required();

    CLI::App* repl = app.add_subcommand("repl", "Read expressions and print their answers; .help says more");

    std::string page, size, screenshot;
    CLI::App* open = app.add_subcommand("open", "Open a window with a page");
    open->add_option("PAGE", page, "An HTML file, whose folder is served to it as nova://app/, or an address")
        ->required();
    open->add_option("--size", size, "Of the page, in CSS pixels (default: 1000x700)")
        ->option_text("WxH")
        ->check(checkSize);
    open->add_option("--scale", options.scale, "Physical pixels for each CSS pixel (default: the profile's)")
        ->option_text("FACTOR")
        ->check(CLI::Range(0.5, 8.0));
    open->add_option(
            "--screenshot", screenshot, "Write a picture of the page, also without a display, and end")
        ->option_text("FILE.png");
    app.add_option("--devtools", options.devToolsPort,
           "Let clients of the browser's DevTools protocol on this machine connect to this port: whoever does controls "
           "the pages")
        ->option_text("PORT")
        ->check(CLI::Range(1, 65535));

    CLI::App* members = app.add_subcommand("members", "List the objects and the members they publish");
    members->add_option("OBJECT", object,
        "Only this one, for example Log; or the documentation of a member: FileSystem.copy");
    members->add_flag("--json", options.json,
        "For programs: an array of {object, mode, members: [{name, kind, mask, result, params}]}; of a "
        "member, an "
        "array of its description, as in types/api.json");
    members->add_flag("--unsupported", options.unsupportedOnly, "Only members that are not built yet");

    CLI::App* policy = app.add_subcommand("policy", "List the rules of who may call, which the profile has");
    policy->add_flag("--json", options.json, "For programs: an array of {origin, allow, deny, permissions}");
    CLI::App* explain = policy->add_subcommand("explain",
        "Say whether a page may call a member, and which rule decides; exit code 0 if it may, 1 if not");
    explain
        ->add_option("ORIGIN", origin,
            "The page's: https://docs.example:8443, nova://app; null for a page without one")
        ->required();
    explain->add_option("MEMBER", object, "For example FileSystem.copy or SettingsManager.Settings.getValue")
        ->required();
    explain->add_flag(
        "--json", options.json, "For programs: {origin, member, category, allowed, rule, reason}");

    const int ownArguments = findScriptArguments(app, argc, argv);
    try {
        app.parse(ownArguments, argv);
    } catch (const CLI::ParseError& error) {
        const int status = app.exit(error);
        exitCode = status == 0 ? 0 : UsageError;
        return std::nullopt;
    }

    if (options.browser && !run->parsed() && !eval->parsed()) {
        exitCode =
            fail(UsageError, QStringLiteral("--browser is for run and eval; open always has the browser"));
        return std::nullopt;
    }
    options.command = run->parsed() ? Command::Run
        : eval->parsed()            ? Command::Eval
        : repl->parsed()            ? Command::Repl
        : open->parsed()            ? Command::Open
        : policy->parsed()          ? Command::Policy
                                    : Command::Members;
    options.explain = explain->parsed();
    options.profileFile = toQString(profileFile);
    options.dataDirectory = toQString(dataDirectory);
    options.libraryFile = toQString(libraryFile);
    options.failures = toQString(failures);
    options.without = toQStringList(without);
    options.play = toQString(play);
    options.script = toQString(script);
    options.arguments = toQStringList(std::vector<std::string>(argv + ownArguments, argv + argc));
    options.page = toQString(page);
    readSize(size, options.width, options.height);
    options.screenshot = toQString(screenshot);
    options.object = toQString(object);
    options.origin = toQString(origin);
    return options;
}

} // namespace novahost
