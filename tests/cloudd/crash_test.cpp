// The service is killed, or the disk fails, at every single write, sync, rename and removal of some uploads;
// then it is started again.
#include "tests/cloudd/fixture.h"

#include <cerrno>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using namespace cloudd_test;

enum class Fault { None, Kill, Fail, FailFromThenOn };

Fault g_fault = Fault::None;
int g_left = 0; ///< calls until it happens; counted on below zero
bool g_removalFailed = false;

/// Stands in for the functions of the C library that change what is on the disk.
template <typename... Arguments> long disturbed(long number, Arguments... arguments)
{
    const int left = g_left--;
    if (left == 0 && g_fault == Fault::Kill)
        kill(getpid(), SIGKILL);
    if ((left == 0 && g_fault == Fault::Fail) || (left <= 0 && g_fault == Fault::FailFromThenOn)) {
        g_removalFailed = g_removalFailed || number == SYS_unlinkat;
        errno = ENOSPC;
        return -1;
    }
    return syscall(number, arguments...);
}

} // namespace

// SQLite's library and the service's own code call these instead.
extern "C" {
int fdatasync(int file)
{
    return static_cast<int>(disturbed(SYS_fdatasync, file));
}
int fsync(int file)
{
    return static_cast<int>(disturbed(SYS_fsync, file));
}
int renameat(int from, const char* name, int to, const char* newName) noexcept
{
    return static_cast<int>(disturbed(SYS_renameat, from, name, to, newName));
}
int unlinkat(int folder, const char* name, int flags) noexcept
{
    return static_cast<int>(disturbed(SYS_unlinkat, folder, name, flags));
}
int mkdirat(int folder, const char* name, mode_t mode) noexcept
{
    return static_cast<int>(disturbed(SYS_mkdirat, folder, name, mode));
}
ssize_t pwrite64(int file, const void* bytes, size_t count, off64_t offset)
{
    return disturbed(SYS_pwrite64, file, bytes, count, offset);
}
ssize_t write(int file, const void* bytes, size_t count)
{
    // What is written elsewhere, to wake an event loop for example, is no business of the disk.
    struct stat target { };
    const bool isFile = fstat(file, &target) == 0 && S_ISREG(target.st_mode);
    return isFile ? disturbed(SYS_write, file, bytes, count) : syscall(SYS_write, file, bytes, count);
}
}

namespace {

const std::string Old = content(70'000, 'o');
const std::string New = content(90'000, 'n');
const std::string Big = content(2'500'000, 'b');

/// Runs `work` in a process of its own. Returns what that said.
std::string inProcess(const std::function<void(const std::function<void(std::string)>&)>& work)
{
    int ends[2];
    if (pipe(ends) != 0)
        abort();
    const pid_t child = fork();
    if (child == 0) {
        int argc = 1;
        char name[] = "crash_test";
        char* argv[] = { name, nullptr };
        qputenv("QT_LOGGING_RULES", "cloudd.*=false");
        QCoreApplication application(argc, argv);
        work([&](const std::string& line) {
            syscall(SYS_write, ends[1], (line + '\n').data(), line.size() + 1);
        });
        _exit(0);
    }
    close(ends[1]);
    std::string said;
    char buffer[4096];
    for (ssize_t count; (count = read(ends[0], buffer, sizeof buffer)) > 0;)
        said.append(buffer, static_cast<size_t>(count));
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    if (WIFEXITED(status) ? WEXITSTATUS(status) != 0 : WTERMSIG(status) != SIGKILL)
        said += "crashed\n";
    return said;
}

bool hasLine(const std::string& text, const std::string& line)
{
    return ('\n' + text).find('\n' + line + '\n') != std::string::npos;
}

/// Uploads, and says "accepted <id>" and "ended <id>" of each as soon as the service says so.
void upload(const QString& directory, Fault fault, int when, const std::function<void(std::string)>& say)
{
    World world(directory);
    world.onNotice = [&](const std::string&, const QMap<QString, QString>& actions) {
        if (actions[q("status")] != q("syncing"))
            say(actions[q("status")].toStdString() + ' ' + actions[q("taskId")].toStdString());
    };
    std::vector<std::string> accepted;
    g_left = when;
    g_fault = fault;
    for (const char* name : { "new/doc", "new/copy of doc", "big" }) {
        const bool isCopy = name == std::string("new/copy of doc");
        const std::string id =
            world.upload((directory + QLatin1Char('/')).toStdString() + name, "/", isCopy ? "true" : "false");
        if (id.empty())
            continue;
        say("accepted " + id);
        accepted.push_back(id);
    }
    // A disk that is full for good: what has failed can not be recorded before there is space again.
    if (fault == Fault::FailFromThenOn)
        QTimer::singleShot(50, [] { g_fault = Fault::None; });
    if (!world.rest())
        say("hangs");
    say(g_left >= 0 ? "undisturbed" : "disturbed");
    g_fault = Fault::None;
    for (const std::string& id : accepted) {
        if (const std::string status = world.task(id)["status"]; status != "1" && status != "2")
            say("hangs");
    }
    say("later " + world.outcome(world.upload((directory + q("/later")).toStdString())));
    if (!g_removalFailed)
        say("contents " + std::to_string(filesBelow(world.state("contents")).size()));
}

/// Says what is wrong with what a service finds that is started afterwards.
void check(
    const QString& directory, const std::string& said, const std::function<void(std::string)>& complain)
{
    World world(directory);
    if (!world.error.isEmpty() || !world.rest()) {
        complain("does not start: " + world.error.toStdString());
        return;
    }
    const bool survived = hasLine(said, "disturbed");
    bool allFinished = true;
    const QStringList lines = q(said).split(QLatin1Char('\n'));
    for (const QString& line : lines) {
        const std::string id = line.section(QLatin1Char(' '), 1).toStdString();
        if (!line.startsWith(q("accepted ")))
            continue;
        Texts task = world.task(id);
        const bool finished = task["status"] == "1";
        allFinished = allFinished && finished;
        if (!finished && (!survived || !hasLine(said, "failed " + id)))
            complain(id + " has status " + task["status"]);
        if (finished && hasLine(said, "failed " + id))
            complain(id + " has finished after it had failed");
        const std::string path = world.data(id)[q("cloudPath")].toString().toStdString();
        const std::string& expected = path == "big" ? Big : New;
        if (finished != (world.cloudBytes(path) == expected))
            complain(path + " is wrong");
    }
    const std::string doc = world.cloudBytes("doc");
    if (doc != New && doc != Old)
        complain("doc is neither the old version nor the new one");
    // Nothing but what is named, and that is whole.
    QStringList kept = filesBelow(world.state("contents"));
    for (const QString& name : kept) {
        const std::string expected = name.section(QLatin1Char('/'), 1).toStdString();
        if (sha256(bytesOf(world.state("contents/") + name)) != expected)
            complain(expected + " is damaged");
    }
    if (!filesBelow(world.state("incoming")).isEmpty())
        complain("something is left in incoming");
    const bool uploadedLater = hasLine(said, "later 1/0");
    const int most = 2 + (uploadedLater ? 1 : 0) + (doc == Old ? 1 : 0);
    if (kept.size() > most
        || (allFinished && lines.filter(q("accepted ")).size() == 3 && kept.size() != most))
        complain("contents: " + std::to_string(kept.size()));
    if (hasLine(said, "contents " + std::to_string(kept.size() + 1)))
        complain("a content that nothing names was only removed by the restart");
    if (world.cache("copy of doc (1)").state() != 2)
        complain("an upload that had finished was made again");
    if (survived && !uploadedLater)
        complain("no upload is possible any more");
}

class Crash : public testing::TestWithParam<Fault> { };

TEST_P(Crash, LosesNothing)
{
    const QTemporaryDir prepared(placeTemplate());
    inProcess([&](const auto&) {
        World world(prepared.path());
        QDir(prepared.path()).mkdir(q("new"));
        world.source("big", Big);
        world.source("later", "later");
        world.source("new/doc", New);
        world.source("new/copy of doc", New);
        world.upload(world.source("doc", Old));
        world.rest();
    });
    int moments = 0;
    // A disk that is full for a while takes some time of its own.
    const int step = GetParam() == Fault::FailFromThenOn ? 3 : 1;
    for (bool undisturbed = false; !undisturbed; moments += step) {
        const QTemporaryDir place(placeTemplate());
        std::filesystem::copy(prepared.path().toStdString(), place.path().toStdString(),
            std::filesystem::copy_options::recursive);
        const std::string said =
            inProcess([&](const auto& say) { upload(place.path(), GetParam(), moments, say); });
        undisturbed = hasLine(said, "undisturbed");
        EXPECT_FALSE(hasLine(said, "hangs") || hasLine(said, "crashed")) << "moment " << moments << '\n'
                                                                         << said;
        const std::string complaints =
            inProcess([&](const auto& complain) { check(place.path(), said, complain); });
        ASSERT_EQ(complaints, "") << "moment " << moments << '\n' << said;
        ASSERT_LT(moments, 2000);
    }
    EXPECT_GT(moments, 30);
}

std::string faultName(const testing::TestParamInfo<Fault>& row)
{
    static constexpr const char* Names[] = { "None", "Killed", "CallFails", "DiskIsFullForAWhile" };
    return Names[static_cast<int>(row.param)];
}

INSTANTIATE_TEST_SUITE_P(
    At, Crash, testing::Values(Fault::Kill, Fault::Fail, Fault::FailFromThenOn), faultName);

} // namespace
