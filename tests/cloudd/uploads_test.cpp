// What becomes of files on their way into the cloud.
#include "tests/cloudd/service.h"

#include <atomic>
#include <cstdio>
#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace {

using namespace cloudd_test;

long stepOfTimeStamps = 1; ///< in ns, as fstat and stat show them

void setTime(const std::string& path, const struct stat& like)
{
    const timespec times[] = { like.st_atim, like.st_mtim };
    EXPECT_EQ(utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
}

/// Sources that are no files, or that change while they are copied.
TEST_F(CloudService, RefusesWhatIsNoFileThatStaysAsItIs)
{
    const std::string big = content(250'000, 'b');
    const std::string path = source("source", big);
    const QString file = q(path);
    const auto nothing = [] {};
    const auto make = [&] { source("source", big); };
    const auto rewrite = [&](char byte, qint64 at) {
        QFile changed(file);
        EXPECT_TRUE(changed.open(QIODevice::ReadWrite) && changed.seek(at) && changed.putChar(byte));
    };
    std::thread writer;
    std::atomic<bool> isHeard = false;
    struct {
        const char* name;
        std::function<void()> before;
        std::function<void()> meanwhile;
        const char* outcome;
    } const rows[] = {
        { "missing", nothing, nothing, "2/5" },
        { "directory", [&] { QDir().mkdir(file); }, nothing, "2/5" },
        { "pipe, whose writer waits for a reader",
            [&] {
                mkfifo(path.c_str(), 0600);
                writer = std::thread([&] { close(open(path.c_str(), O_WRONLY)), isHeard = true; });
            },
            [&] {
                EXPECT_FALSE(isHeard);
                const int reader = open(path.c_str(), O_RDONLY | O_NONBLOCK);
                writer.join();
                close(reader);
            },
            "2/5" },
        { "device", [&] { EXPECT_EQ(symlink("/dev/zero", path.c_str()), 0); }, nothing, "2/5" },
        { "nothing changes", make, nothing, "1/0" },
        { "vanishes", make, [&] { QFile::remove(file); }, "2/5" },
        { "grows", make, [&] { rewrite('+', static_cast<qint64>(big.size())); }, "2/5" },
        { "shrinks", make, [&] { QFile::resize(file, 100); }, "2/5" },
        { "is changed, and its time put back", make,
            [&] {
                struct stat was { };
                EXPECT_EQ(stat(path.c_str(), &was), 0);
                rewrite('!', 3);
                setTime(path, was);
            },
            "2/5" },
        { "is changed in the step of the clock in which it was made",
            [&] {
                stepOfTimeStamps = 1'000'000'000;
                make();
            },
            [&] { rewrite('!', 3); }, "2/5" },
        { "is replaced by the same bytes of the same time", make,
            [&] {
                const std::string other = source("other", big);
                struct stat was { };
                EXPECT_EQ(stat(path.c_str(), &was), 0);
                setTime(other, was);
                EXPECT_EQ(rename(other.c_str(), path.c_str()), 0);
            },
            "2/5" },
    };
    restart(Slow);
    for (const auto& row : rows) {
        std::remove(path.c_str());
        row.before();
        const std::string id = upload(path, row.name);
        until([&] { return data(id)[q("transferred")].toInt() > 0 || !service->isBusy(); });
        row.meanwhile();
        EXPECT_EQ(outcome(id), row.outcome) << row.name;
        stepOfTimeStamps = 1;
        EXPECT_EQ(filesBelow(state("incoming")), QStringList()) << row.name;
    }
    EXPECT_EQ(filesBelow(state("contents")).size(), 1);
}

TEST_F(CloudService, NumbersTakenNamesOrMakesVersions)
{
    ASSERT_EQ(uploaded("a.tar.gz", "1"), "1/0");
    const std::string id = last[q("fileId")].toStdString();
    ASSERT_EQ(uploaded("a.tar.gz", "2"), "1/0");
    EXPECT_EQ(cloudBytes(id), "2") << "the id is another one";
    EXPECT_EQ(cache(id, "bob").state(), 2) << "another user's file, by its id";
    EXPECT_EQ(filesBelow(state("contents")).size(), 1) << "the old version's content is still there";
    for (const char* bytes : { "3", "4", "5", "6" })
        ASSERT_EQ(uploaded("a.tar.gz", bytes, "/", "true"), "1/0");
    // As long as may be, in two-byte characters; a number makes the name no longer.
    const std::string longName = 'x' + q("ä").repeated(125).toStdString() + ".odt";
    ASSERT_EQ(uploaded(longName.c_str(), "7"), "1/0");
    ASSERT_EQ(uploaded(longName.c_str(), "8", "/", "true"), "1/0");
    for (const auto& [name, bytes] : Texts { { "a.tar.gz", "2" }, { "/a.tar (1).gz", "3" },
             { "a.tar (4).gz", "6" }, { longName.substr(0, 247) + " (1).odt", "8" } })
        EXPECT_EQ(cloudBytes(name), bytes) << name;
    for (const char* folder : { "a.tar.gz", "a.tar (5).gz" })
        EXPECT_EQ(save("/", folder, 1).result.cloudPath, "a.tar (5).gz") << "first made, then found";
    EXPECT_EQ(uploaded("a.tar (5).gz", "9"), "2/4") << "a file where a folder has the name";
    EXPECT_EQ(filesBelow(state("contents")).size(), 7);
}

TEST_F(CloudService, CancelsWhatHasNotEnded)
{
    restart(Slow);
    std::vector<std::string> ids;
    for (const char name : { 'a', 'b', 'c', 'd', 'e' })
        ids.push_back(upload(source({ name }, content(60'000, name))));
    until([&] { return data(ids[0])[q("transferred")].toInt() > 0; });
    EXPECT_EQ(task(ids[2])["status"] + task(ids[3])["status"], "30") << "three run, the rest waits";
    const auto cancel = [&](const std::string& id) {
        return call("cancelTransferTask", { { "userId", "ann" }, { "taskId", id } }).state();
    };
    for (const size_t i : { 0, 4, 0 }) {
        EXPECT_EQ(cancel(ids[i]), 0);
        EXPECT_EQ(task(ids[i])["status"], "6");
        EXPECT_EQ(last[q("status")], q("cancelled"));
    }
    EXPECT_LE(filesBelow(state("incoming")).size(), 3);
    // Whoever is told of the beginning may cancel at once.
    onNotice = [&](const std::string&, const QMap<QString, QString>& actions) {
        if (actions[q("taskId")] == q(ids[3]) && actions[q("status")] == q("syncing"))
            cancel(ids[3]);
    };
    EXPECT_EQ(outcome(ids[1]), "1/0");
    EXPECT_EQ(cancel(ids[1]), 0);
    restart();
    const char* const outcomes[] = { "6/10", "1/0", "1/0", "6/10", "6/10" };
    for (size_t i = 0; i < ids.size(); ++i)
        EXPECT_EQ(outcome(ids[i]), outcomes[i]) << i;
    EXPECT_EQ(cache("d").state(), 2);
}

TEST_F(CloudService, GoesNoFasterThanItMay)
{
    restart(200'000);
    QElapsedTimer timer;
    timer.start();
    const std::clock_t cpu = std::clock();
    const std::string ids[] = { upload(source("a", content(80'000, 'a'))),
        upload(source("b", content(80'000, 'b'))) };
    until([&] { return last[q("status")] == q("synced"); });
    for (const std::string& id : ids)
        EXPECT_GT(data(id)[q("transferred")].toInt(), 40'000) << "they do not take turns";
    rest();
    EXPECT_GE(timer.elapsed(), 650);
    EXPECT_LT((std::clock() - cpu) * 1000 / CLOCKS_PER_SEC, timer.elapsed() * 2 / 3)
        << "it waits for the time to pass, busily";
}

TEST_F(CloudService, UploadsManyFilesAtOnce)
{
    QDir(state("..")).mkdir(q("other"));
    const std::string none = state("../none").toStdString();
    UploadFilesToCloudArg request;
    request.userId = "ann";
    request.cloudPath = "in";
    request.userData = "mine";
    request.srcFiles = { source("a", "1"), source("other/a", "2"), none };
    const auto upload = [&] { return ask<UploadFilesToCloudResult>("uploadFilesToCloud", request); };
    EXPECT_EQ(upload().state(), 2) << "the folder is missing";
    request.createWhenNoExists = true;
    const auto answered = upload();
    EXPECT_EQ(answered.state(), 5);
    EXPECT_EQ(answered.result.userData, "mine");
    EXPECT_EQ(answered.result.extraParam,
        (Texts { { "uploaded", "2" }, { "failedCount", "1" }, { "failed", "[\"" + none + "\"]" } }));
    EXPECT_EQ(cloudBytes("in/a") + cloudBytes("in/a (1)"), "12");
}

TEST_F(CloudService, KeepsAndTakesNoMoreThanItCan)
{
    const std::string none = state("../none").toStdString();
    UploadFilesToCloudArg request;
    request.userId = "ann";
    const auto send = [&] { return World::send<UploadFilesToCloudResult>("uploadFilesToCloud", request); };
    const auto upload = [&] { return ask<UploadFilesToCloudResult>("uploadFilesToCloud", request); };
    // Of the tasks that have ended the last 1000 are kept, of those that somebody was told the id of.
    const std::string first = World::upload(none);
    request.srcFiles.assign(1000, none);
    upload();
    for (int i = 0; i < 999; ++i)
        World::upload(none);
    EXPECT_EQ(outcome(first), "2/5");
    EXPECT_EQ(outcome(World::upload(none)), "2/5");
    EXPECT_EQ(call("getTaskState", { { "userId", "ann" }, { "taskId", first } }).state(), 2);
    request.userData.assign(64 << 10, 'u');
    request.srcFiles = { none };
    for (int i = 0; i < 1024; ++i)
        send();
    EXPECT_EQ(upload().state(), 7) << "64 MiB wait to be sent back";
    EXPECT_TRUE(rest());
    EXPECT_EQ(upload().state(), 5);
    // Not more than 10,000 wait.
    request.srcFiles.clear();
    EXPECT_EQ(upload().state(), 1);
    request.srcFiles.assign(10'000, none);
    send();
    EXPECT_EQ(call("uploadFileToCloud", { { "userId", "ann" }, { "filePath", none } }).state(), 7);
}

int showCoarse(int result, struct stat* found)
{
    for (timespec* time : { &found->st_mtim, &found->st_ctim })
        time->tv_nsec -= time->tv_nsec % stepOfTimeStamps;
    return result;
}

} // namespace

// In place of the C library's: with the time stamps of a file system that has coarser ones.

extern "C" int stat(const char* path, struct stat* found) noexcept
{
    return showCoarse(fstatat(AT_FDCWD, path, found, 0), found);
}

extern "C" int fstat(int file, struct stat* found) noexcept
{
    return showCoarse(fstatat(file, "", found, AT_EMPTY_PATH), found);
}
