// "getFileMd5" of a file that is in the cache, and "remove" of large trees, against programs that do the same.
#include "framework/entry.h"
#include "host/vexlite/core.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <algorithm>
#include <chrono>
#include <fcntl.h>
#include <fstream>
#include <spawn.h>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr std::int64_t FileBytes = std::int64_t { 512 } << 20;

/// The file that all read. Writing it has put it into the cache.
class Subject {
public:
    static const Subject& instance()
    {
        static const Subject subject;
        return subject;
    }

    const std::string& path() const { return m_path; }
    const std::string& digest() const { return m_digest; }

private:
    Subject()
        : m_path(m_directory.filePath(QStringLiteral("file")).toStdString())
    {
        QFile file(QString::fromStdString(m_path));
        QCryptographicHash hash(QCryptographicHash::Md5);
        QRandomGenerator random(1);
        std::vector<quint32> part(1 << 18);
        if (!file.open(QIODevice::WriteOnly))
            qFatal("the file can not be made");
        for (std::int64_t written = 0; written < FileBytes;
             written += static_cast<std::int64_t>(part.size() * 4)) {
            random.fillRange(part.data(), static_cast<int>(part.size()));
            const auto* bytes = reinterpret_cast<const char*>(part.data());
            hash.addData(bytes, static_cast<int>(part.size() * 4));
            file.write(bytes, static_cast<qint64>(part.size() * 4));
        }
        m_digest = hash.result().toHex().toStdString();
    }

    QTemporaryDir m_directory;
    std::string m_path;
    std::string m_digest;
};

/// A figure of /proc/PID/status in KiB, 0 when the process has none any more.
std::int64_t statusKiB(const std::string& process, const std::string& name)
{
    std::ifstream status("/proc/" + process + "/status");
    for (std::string word; status >> word;) {
        std::int64_t value = 0;
        if (word == name + ":" && status >> value)
            return value;
    }
    return 0;
}

void report(benchmark::State& state, std::int64_t peakKiB)
{
    state.SetBytesProcessed(state.iterations() * FileBytes);
    state.counters["peak_KiB"] = static_cast<double>(peakKiB);
}

/// A page that waits for one promise at a time.
class WaitingPage final : public vexlite::ScriptPage {
public:
    bool createPromise(std::int64_t) override { return true; }
    void settlePromise(std::int64_t, JSPromiseState, const KJSVariant& value) override
    {
        answer = QString::fromStdU16String(std::u16string(value.text())).toStdString();
    }

    std::string answer;
};

/// The library's FileSystem as that page has it, for the life of the process.
struct Files {
    Files()
    {
        vexlite::Core& core = vexlite::Core::start({});
        ExtensionFactoryMap factories;
        GetNovaExtensionJsApiObj(&factories);
        core.setFactories(factories);
        context = core.openPage(&page, {});
        object = core.bindObject(context, QStringLiteral("FileSystem"));
    }
    ~Files()
    {
        object = {};
        vexlite::Core::instance()->closePage(context);
        vexlite::Core::stop();
    }

    static Files& instance()
    {
        static Files files;
        return files;
    }

    /// Calls a member with a path. Its result; an empty one when it failed.
    KJSVariant call(const char16_t* name, const std::string& path)
    {
        std::int32_t member = 0;
        while (object.members->Name(member) != std::u16string_view(name))
            ++member;
        const KJSVariant given = KJSVariant::fromString(QString::fromStdString(path).toStdU16String());
        KJSVariant result, exception;
        JSApiArguments arguments(&given, 1);
        vexlite::Core::instance()->call(object.object.get(), context, object.members->Id(member),
            JSAccess::Method, arguments, result, exception);
        return result;
    }

    WaitingPage page;
    JSContextEnv context {};
    vexlite::BoundObject object;
};

void md5_member(benchmark::State& state)
{
    Files& files = Files::instance();
    const Subject& subject = Subject::instance();
    std::ofstream("/proc/self/clear_refs") << "5";                 // the peak starts anew
    static const std::int64_t before = statusKiB("self", "VmRSS"); // later calls find freed memory to use
    for (auto _ : state) {
        files.page.answer.clear();
        const KJSVariant promise = files.call(u"getFileMd5", subject.path());
        while (files.page.answer.empty())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        if (files.page.answer != subject.digest())
            state.SkipWithError("another digest");
    }
    report(state, statusKiB("self", "VmHWM") - before);
}
BENCHMARK(md5_member)->Name("md5/member")->Unit(benchmark::kMillisecond)->UseRealTime();

/// Runs a program that prints the file's digest first; the most memory it had is in `peakKiB`.
std::string printed(std::vector<std::string> command, std::int64_t& peakKiB)
{
    std::vector<char*> words;
    for (std::string& word : command)
        words.push_back(word.data());
    words.push_back(nullptr);
    int output[2];
    if (pipe(output) != 0)
        qFatal("no pipe");
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
    posix_spawn_file_actions_addclose(&actions, output[0]);
    pid_t child = 0;
    const int failure = posix_spawnp(&child, words[0], &actions, nullptr, words.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(output[1]);
    std::string digest(32, ' ');
    if (failure == 0) {
        while (waitpid(child, nullptr, WNOHANG) == 0) {
            peakKiB = std::max(peakKiB, statusKiB(std::to_string(child), "VmHWM"));
            usleep(200);
        }
        if (read(output[0], digest.data(), digest.size()) < 0)
            digest.clear();
    }
    close(output[0]);
    return digest;
}

void program(benchmark::State& state, std::vector<std::string> command)
{
    const Subject& subject = Subject::instance();
    command.push_back(subject.path());
    std::int64_t peak = 0;
    for (auto _ : state) {
        if (printed(command, peak) != subject.digest())
            state.SkipWithError("another digest, or no such program");
    }
    report(state, peak);
}

void md5_md5sum(benchmark::State& state)
{
    program(state, { "md5sum" });
}
BENCHMARK(md5_md5sum)->Name("md5/md5sum")->Unit(benchmark::kMillisecond)->UseRealTime();

void md5_openssl(benchmark::State& state)
{
    program(state, { "openssl", "dgst", "-md5", "-r" });
}
BENCHMARK(md5_openssl)->Name("md5/openssl")->Unit(benchmark::kMillisecond)->UseRealTime();

/// Trees by their shape: so many directories in each other, or so many entries side by side.
struct Tree {
    const char* name;
    int deep;
    int directories;
    int files;
};
constexpr Tree Trees[] = {
    { "800 levels", 800, 0, 0 },
    { "1,900 levels", 1900, 0, 0 },
    { "100,000 directories", 0, 100'000, 0 },
    { "100,000 files", 0, 0, 100'000 },
};

void makeTree(const Tree& tree, const std::string& path)
{
    mkdir(path.c_str(), 0700);
    int here = open(path.c_str(), O_RDONLY | O_DIRECTORY);
    for (int i = 0; i < tree.directories; ++i)
        mkdirat(here, std::to_string(i).c_str(), 0700);
    for (int i = 0; i < tree.files; ++i)
        close(openat(here, std::to_string(i).c_str(), O_WRONLY | O_CREAT, 0600));
    for (int i = 0; i < tree.deep; ++i) {
        mkdirat(here, "d", 0700);
        const int below = openat(here, "d", O_RDONLY | O_DIRECTORY);
        close(here);
        here = below;
    }
    close(here);
}

/// What removing a tree takes; making it does not count.
template <typename Remove> void removal(benchmark::State& state, const Tree& tree, Remove remove)
{
    const QTemporaryDir directory;
    const std::string path = directory.filePath(QStringLiteral("tree")).toStdString();
    for (auto _ : state) {
        makeTree(tree, path);
        const auto begin = std::chrono::steady_clock::now();
        remove(path);
        state.SetIterationTime(
            std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count());
        if (access(path.c_str(), F_OK) == 0)
            state.SkipWithError("it is still there");
    }
}

void removeWithProgram(const std::string& path)
{
    std::int64_t peak = 0;
    printed({ "rm", "-r", path }, peak);
}

[[maybe_unused]] const bool areRegistered = [] {
    for (const Tree& tree : Trees) {
        const auto add = [&tree](const char* how, auto remove) {
            benchmark::RegisterBenchmark((std::string("remove ") + tree.name + '/' + how).c_str(),
                [&tree, remove](benchmark::State& state) { removal(state, tree, remove); })
                ->Unit(benchmark::kMillisecond)
                ->UseManualTime();
        };
        add("member", [](const std::string& path) { Files::instance().call(u"remove", path); });
        add("rm -r", removeWithProgram);
    }
    return true;
}();

} // namespace
