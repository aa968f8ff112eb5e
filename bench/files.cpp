// "getFileMd5" of a file that is in the cache, against programs that do the same.
#include "framework/entry.h"
#include "host/vexlite/core.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <algorithm>
#include <fstream>
#include <spawn.h>
#include <string>
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
        while (object.members->Name(member) != std::u16string_view(u"getFileMd5"))
            ++member;
    }
    ~Files()
    {
        object = {};
        vexlite::Core::instance()->closePage(context);
        vexlite::Core::stop();
    }

    WaitingPage page;
    JSContextEnv context {};
    vexlite::BoundObject object;
    std::int32_t member = 0;
};

void md5_member(benchmark::State& state)
{
    static Files files;
    const Subject& subject = Subject::instance();
    const KJSVariant path = KJSVariant::fromString(QString::fromStdString(subject.path()).toStdU16String());
    std::ofstream("/proc/self/clear_refs") << "5";                 // the peak starts anew
    static const std::int64_t before = statusKiB("self", "VmRSS"); // later calls find freed memory to use
    for (auto _ : state) {
        files.page.answer.clear();
        KJSVariant promise, exception;
        JSApiArguments arguments(&path, 1);
        vexlite::Core::instance()->call(files.object.object.get(), files.context,
            files.object.members->Id(files.member), JSAccess::Method, arguments, promise, exception);
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
            usleep(1000);
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

} // namespace
