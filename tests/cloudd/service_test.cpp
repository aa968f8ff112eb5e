// What the procedures answer, and what that leaves on the disk.
#include "tests/cloudd/fixture.h"
#include "tests/services/rows.h"

#include <QSqlDatabase>
#include <QSqlQuery>
#include <cstdio>
#include <ctime>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using namespace cloudd_test;

long stepOfTimeStamps = 1; ///< in ns, as fstat and stat show them

constexpr qint64 Slow = 1'000'000; ///< bytes a second: an upload is under way when it is looked at

void execute(const QString& records, const char* statement)
{
    QSqlDatabase database = QSqlDatabase::addDatabase(q("QSQLITE"), q("spoil"));
    database.setDatabaseName(records);
    EXPECT_TRUE(database.open() && QSqlQuery(database).exec(q(statement)));
    database.close();
    database = QSqlDatabase();
    QSqlDatabase::removeDatabase(q("spoil"));
}

void setTime(const std::string& path, const struct stat& like)
{
    const timespec times[] = { like.st_atim, like.st_mtim };
    EXPECT_EQ(utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
}

class CloudService : public testing::Test {
protected:
    CloudService()
        : world(place.path())
    {
        EXPECT_EQ(world.error, QString());
        world.onNotice = [this](const std::string& user, const QMap<QString, QString>& actions) {
            notices.append(q(user) + QLatin1Char(' ') + QStringList(actions.values()).join(QLatin1Char(' ')));
            last = actions;
        };
    }

    std::string uploaded(
        const char* name, const std::string& bytes, const char* folder = "/", const char* rename = "false")
    {
        return world.outcome(world.upload(world.source(name, bytes), folder, rename));
    }
    QString damage(const std::string& bytes) const
    {
        const std::string name = sha256(bytes);
        const QString path = world.state("contents/") + q(name.substr(0, 2) + '/' + name);
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadWrite) && file.putChar('#'));
        return path;
    }
    Answered<SyncFolderResult> sync(const std::string& folder, int depth, const std::string& group = {})
    {
        SyncFolderArg request;
        request.userId = "ann";
        request.groupId = group;
        request.fileId = folder;
        request.depth = depth;
        return world.ask<SyncFolderResult>("syncFolder", request);
    }
    Answered<SaveToCloudDirResult> save(
        const char* folder, const char* name, int type, Texts extra = {}, const char* group = "")
    {
        SaveToCloudDirArg request;
        request.userId = "ann";
        request.groupId = group;
        request.fileId = folder;
        request.fname = name;
        request.itemType = type;
        request.extraParam = std::move(extra);
        return world.ask<SaveToCloudDirResult>("saveToCloudDir", request);
    }
    Answered<OpenVirtualCloudDiskResult> openFolder(const char* path, bool create = false)
    {
        OpenVirtualCloudDiskArg request;
        request.userId = "ann";
        request.cloudPath = path;
        request.createWhenNoExists = create;
        return world.ask<OpenVirtualCloudDiskResult>("openVirtualCloudDisk", request);
    }

    const QTemporaryDir place { placeTemplate() };
    World world;
    QStringList notices;
    QMap<QString, QString> last;
};

TEST_F(CloudService, AnswersEachMethodWithItsState)
{
    ASSERT_EQ(uploaded("file", "x"), "1/0");
    const std::string file = world.source("file", "x");
    const QString annsTask = q(world.upload(file));
    QString users;
    for (int i = 0; i < 100; ++i)
        users += q("u%1\\n").arg(i);
    const auto table = rows(R"(
nobody: getRoamingMode -> 1
somebody else: getRoamingMode userId=eve -> 3
no UTF-8: getRoamingMode userId=HALF -> 1
a long id: getRoamingMode userId=<81*u> -> 1
an unknown method: formatDisk userId=ann -> 8
a name space: other/getRoamingMode userId=ann -> 8
an unknown mode: changeRoamingMode userId=ann, roamingMode=on -> 1
an unknown task: getTaskState userId=ann, taskId=t0 -> 2
another's task: getTaskState userId=bob, taskId=TASK -> 2
to cancel another's task: cancelTransferTask userId=bob, taskId=TASK -> 2
a relative source: uploadFileToCloud userId=ann, cloudDir=/, filePath=file -> 1
no file name: uploadFileToCloud userId=ann, cloudDir=/, filePath=/tmp/ -> 1
a parent step as name: uploadFileToCloud userId=ann, cloudDir=/, filePath=/tmp/.. -> 1
a long source: uploadFileToCloud userId=ann, cloudDir=/, filePath=/<5000*/>f -> 1
a zero byte: uploadFileToCloud userId=ann, cloudDir=/, filePath=/tmp/a\0b -> 1
a line feed: uploadFileToCloud userId=ann, cloudDir=/, filePath=/tmp/a\nb -> 1
no truth value: uploadFileToCloud userId=ann, cloudDir=/, filePath=FILE, autoRename=maybe -> 1
a parent step in the folder: uploadFileToCloud userId=ann, cloudDir=a/../b, filePath=FILE -> 1
a long folder name: uploadFileToCloud userId=ann, cloudDir=<256*n>, filePath=FILE -> 1
a deep folder: uploadFileToCloud userId=ann, cloudDir=<65*d/>, filePath=FILE -> 1
a folder as deep as may be: uploadFileToCloud userId=ann, cloudDir=<64*d/>, filePath=FILE -> 0
a file instead of the folder: uploadFileToCloud userId=ann, cloudDir=file/below, filePath=FILE -> 4
a bad user to be signed in: setCurrentUser userId=ann, signedIn=ann\n\0 -> 1
a hundred and one users: setCurrentUser userId=ann, signedIn=ann\nUSERS -> 1
a long list of nobody: setCurrentUser userId=ann, signedIn=<10000*\n> -> 1
a long company: setCurrentUser userId=ann, signedIn=ann, companyId=<81*c> -> 1
a hundred users, some twice: setCurrentUser userId=ann, signedIn=u1\nu2\nUSERS -> 0
)");
    for (Row row : table) {
        row.given.replace(q("TASK"), annsTask).replace(q("FILE"), q(file)).replace(q("USERS"), users);
        const QString name = row.given.trimmed().section(QLatin1Char(' '), 0, 0);
        Texts given = texts(row.given.trimmed().section(QLatin1Char(' '), 1));
        if (given["userId"] == "HALF")
            given["userId"] = "a\xC3";
        else if (given["userId"].empty())
            given.clear();
        const auto answered = world.call(name.section(QLatin1Char('/'), -1).toStdString(), given,
            name.section(QLatin1Char('/'), 0, -2).toStdString());
        EXPECT_EQ(answered.state(), row.expected.toInt()) << row.name;
    }
    EXPECT_EQ(world.session->signedIn.size(), 100);
    EXPECT_FALSE(cloudd::Service::knows("formatDisk"));
}

TEST_F(CloudService, MakesNoPathThatNobodyCanOpen)
{
    // 4096 bytes with the zero at the end are the most.
    const auto below = [](int bytes) {
        std::string path;
        for (; bytes > 0; bytes -= 200)
            path += '/' + std::string(static_cast<size_t>(qMin(199, bytes - 1)), 'd');
        return path;
    };
    const int room = 4095 - world.state("documents/ann").toUtf8().size();
    EXPECT_EQ(openFolder(below(room + 1).c_str(), true).state(), 1);
    EXPECT_EQ(openFolder(below(room + 1).c_str()).state(), 2) << "the folder was made in the cloud";
    auto opened = openFolder(below(room).c_str(), true);
    EXPECT_EQ(opened.state(), 0);
    EXPECT_TRUE(QFileInfo(q(opened.result.extraParam["localPath"])).isDir());

    ASSERT_EQ(uploaded("file", "x", ("long" + below(room - 20)).c_str()), "1/0");
    ASSERT_EQ(uploaded("a file with a long name", "x", ("long" + below(room - 20)).c_str()), "1/0");
    ASSERT_EQ(
        uploaded("file", "x", ("long" + below(room - 20) + "/a folder with a long name").c_str()), "1/0");
    auto synced = sync("long", 63);
    EXPECT_EQ(synced.state(), 1);
    EXPECT_EQ(synced.result.extraParam["files"], "1") << "the others are copied all the same";
    EXPECT_TRUE(QDir(world.state("documents")).removeRecursively());
}

TEST_F(CloudService, SaysWhoIsThere)
{
    const auto group = QJsonDocument::fromJson(
        QByteArray::fromStdString(
            world.call("getPersonalPrivateGroup", "userId=ann").result.resultMap["response"]))
                           .object();
    GetDefaultWorkspaceArg request;
    request.callFrom = "test";
    const auto workspace = [&] {
        return world.ask<GetDefaultWorkspaceResult>("getDefaultWorkspace", request);
    };
    auto answered = workspace();
    EXPECT_EQ(answered.result.groupId, group[q("groupId")].toString().toStdString());
    EXPECT_EQ(group[q("ownerId")].toString(), q("ann"));
    EXPECT_EQ(answered.result.virtualPath, group[q("name")].toString().toStdString() + "/My Documents");
    EXPECT_EQ(answered.result.extraParam, (Texts { { "isEnterpriseIP", "false" }, { "callFrom", "test" } }));
    EXPECT_EQ(uploaded("file", "x", ""), "1/0");
    EXPECT_EQ(world.cloudBytes(answered.result.cloudPath + "/file"), "x");

    const auto signIn = [&](const char* user, const char* all) {
        return world.call(
            "setCurrentUser", { { "userId", user }, { "signedIn", all }, { "companyId", "c" } });
    };
    EXPECT_EQ(signIn("bob", "bob").result.resultMap["isLogin"], "true");
    EXPECT_EQ(world.cache("file").state(), 3);
    answered = workspace();
    EXPECT_EQ(answered.result.extraParam["isEnterpriseIP"], "true");
    EXPECT_NE(answered.result.groupId, group[q("groupId")].toString().toStdString());
    EXPECT_EQ(save("", "n", 1).state(), 3);
    EXPECT_EQ(signIn("", "").result.resultMap["isLogin"], "false");
    EXPECT_EQ(workspace().state(), 3);
}

/// A file can not take the place of the default workspace, which older records may not have, either.
TEST_F(CloudService, HasADefaultWorkspaceWhateverThereIs)
{
    EXPECT_EQ(uploaded("My Documents", "x"), "2/4");
    EXPECT_EQ(uploaded("My Documents", "x", "/", "true"), "1/0");
    EXPECT_EQ(save("", "n", 1).result.cloudPath, "My Documents/n");
    world.service.reset();
    execute(world.state("records.sqlite"),
        "UPDATE items SET isFolder = 0, sha256 = 'x' WHERE name = 'My Documents'");
    world.restart();
    for (int i = 0; i < 2; ++i)
        EXPECT_EQ(save("", "n", 1).result.cloudPath, "My Documents (2)/n");
}

TEST_F(CloudService, KeepsTheRoamingMode)
{
    const auto mode = [&](const char* user) {
        return world.call("getRoamingMode", { { "userId", user } }).result.resultString;
    };
    EXPECT_EQ(mode("ann"), "auto");
    for (int i = 0; i < 2; ++i)
        world.call("changeRoamingMode", "userId=ann, roamingMode=manual");
    EXPECT_EQ(notices, QStringList { q("ann roamingModeChanged manual") });
    world.restart();
    EXPECT_EQ(mode("ann") + mode("bob"), "manualauto");
}

/// Sources that are no files, or that change while they are copied.
TEST_F(CloudService, RefusesWhatIsNoFileThatStaysAsItIs)
{
    const std::string big = content(250'000, 'b');
    const std::string path = world.source("source", big);
    const QString file = q(path);
    struct Row {
        const char* name;
        std::function<void()> before;
        std::function<void()> meanwhile;
        const char* outcome;
    };
    const auto nothing = [] {};
    const auto make = [&] { world.source("source", big); };
    const auto rewrite = [&](char byte, qint64 at) {
        QFile changed(file);
        EXPECT_TRUE(changed.open(QIODevice::ReadWrite) && changed.seek(at) && changed.putChar(byte));
    };
    const Row rows[] = {
        { "missing", nothing, nothing, "2/5" },
        { "directory", [&] { QDir().mkdir(file); }, nothing, "2/5" },
        { "pipe", [&] { mkfifo(path.c_str(), 0600); }, nothing, "2/5" },
        { "device", [&] { EXPECT_EQ(symlink("/dev/zero", path.c_str()), 0); }, nothing, "2/5" },
        { "nothing changes", make, nothing, "1/0" },
        { "vanishes", make, [&] { QFile::remove(file); }, "2/5" },
        { "grows", make, [&] { rewrite('+', static_cast<qint64>(big.size())); }, "2/5" },
        { "shrinks", make, [&] { QFile::resize(file, 100); }, "2/5" },
        { "is changed", make, [&] { rewrite('!', 3); }, "2/5" },
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
        { "is replaced", make,
            [&] {
                // With the same bytes, of the same time.
                const std::string other = world.source("other", big);
                struct stat was { };
                EXPECT_EQ(stat(path.c_str(), &was), 0);
                setTime(other, was);
                EXPECT_EQ(rename(other.c_str(), path.c_str()), 0);
            },
            "2/5" },
    };
    world.restart(Slow);
    for (const Row& row : rows) {
        std::remove(path.c_str());
        row.before();
        const std::string id = world.upload(path, row.name);
        World::until(
            [&] { return world.data(id)[q("transferred")].toInt() > 0 || !world.service->isBusy(); });
        row.meanwhile();
        EXPECT_EQ(world.outcome(id), row.outcome) << row.name;
        stepOfTimeStamps = 1;
        EXPECT_EQ(filesBelow(world.state("incoming")), QStringList()) << row.name;
    }
    EXPECT_EQ(filesBelow(world.state("contents")).size(), 1);
}

TEST_F(CloudService, NumbersTakenNamesOrMakesVersions)
{
    ASSERT_EQ(uploaded("a.tar.gz", "1"), "1/0");
    const std::string id = last[q("fileId")].toStdString();
    ASSERT_EQ(uploaded("a.tar.gz", "2"), "1/0");
    EXPECT_EQ(world.cloudBytes(id), "2") << "the id is another one";
    EXPECT_EQ(world.cache(id, "bob").state(), 2) << "another user's file, by its id";
    EXPECT_EQ(filesBelow(world.state("contents")).size(), 1) << "the old version's content is still there";
    for (const char* bytes : { "3", "4", "5", "6" })
        ASSERT_EQ(uploaded("a.tar.gz", bytes, "/", "true"), "1/0");
    for (const auto& [name, bytes] :
        Texts { { "a.tar.gz", "2" }, { "/a.tar (1).gz", "3" }, { "a.tar (4).gz", "6" } })
        EXPECT_EQ(world.cloudBytes(name), bytes) << name;
    // As long as may be, in two-byte characters; a number makes the name no longer.
    std::string longName(1, 'x');
    for (int i = 0; i < 125; ++i)
        longName += "\xC3\xA4";
    longName += ".odt";
    ASSERT_EQ(uploaded(longName.c_str(), "7"), "1/0");
    ASSERT_EQ(uploaded(longName.c_str(), "8", "/", "true"), "1/0");
    const std::string shorter = longName.substr(0, 247) + " (1).odt";
    EXPECT_EQ(world.cloudBytes(shorter), "8");
    EXPECT_EQ(save("/", "a.tar.gz", 1).result.cloudPath, "a.tar (5).gz")
        << "a folder where a file has the name";
    EXPECT_EQ(save("/", "a.tar (5).gz", 1).result.cloudPath, "a.tar (5).gz") << "the folder that is there";
    EXPECT_EQ(uploaded("a.tar (5).gz", "9"), "2/4") << "a file where a folder has the name";
    EXPECT_EQ(filesBelow(world.state("contents")).size(), 7);
}

TEST_F(CloudService, CancelsWhatHasNotEnded)
{
    ASSERT_EQ(uploaded("done", "d"), "1/0");
    world.restart(Slow);
    std::vector<std::string> ids;
    for (int i = 0; i < 5; ++i)
        ids.push_back(world.upload(
            world.source("file" + std::to_string(i), content(60'000, static_cast<char>('a' + i)))));
    World::until([&] { return world.data(ids[0])[q("transferred")].toInt() > 0; });
    EXPECT_EQ(world.task(ids[2])["status"] + world.task(ids[3])["status"], "30")
        << "three run, the rest waits";
    const auto cancel = [&](const std::string& id) {
        return world.call("cancelTransferTask", { { "userId", "ann" }, { "taskId", id } }).state();
    };
    for (const size_t i : { 0, 4, 0 }) {
        EXPECT_EQ(cancel(ids[i]), 0);
        EXPECT_EQ(world.task(ids[i])["status"], "6");
        EXPECT_EQ(last[q("status")], q("cancelled"));
    }
    EXPECT_LE(filesBelow(world.state("incoming")).size(), 3);
    // Whoever is told of the beginning may cancel at once.
    world.onNotice = [&](const std::string&, const QMap<QString, QString>& actions) {
        if (actions[q("taskId")] == q(ids[3]) && actions[q("status")] == q("syncing"))
            cancel(ids[3]);
    };
    EXPECT_EQ(world.outcome(ids[1]), "1/0");
    EXPECT_EQ(cancel(ids[1]), 0);
    world.restart();
    const char* const outcomes[] = { "6/10", "1/0", "1/0", "6/10", "6/10" };
    for (size_t i = 0; i < ids.size(); ++i)
        EXPECT_EQ(world.outcome(ids[i]), outcomes[i]) << i;
    EXPECT_EQ(world.cache("file3").state(), 2);
}

TEST_F(CloudService, GoesNoFasterThanItMay)
{
    world.restart(200'000);
    QElapsedTimer timer;
    timer.start();
    const std::clock_t cpu = std::clock();
    const std::string ids[] = { world.upload(world.source("a", content(80'000, 'a'))),
        world.upload(world.source("b", content(80'000, 'b'))) };
    World::until([&] { return last[q("status")] == q("synced"); });
    for (const std::string& id : ids)
        EXPECT_GT(world.data(id)[q("transferred")].toInt(), 40'000) << "they do not take turns";
    world.rest();
    EXPECT_GE(timer.elapsed(), 650);
    EXPECT_LT((std::clock() - cpu) * 1000 / CLOCKS_PER_SEC, timer.elapsed() * 2 / 3)
        << "it waits for the time to pass, busily";
}

TEST_F(CloudService, NeverHandsOutDamagedContents)
{
    ASSERT_EQ(uploaded("good", "good") + uploaded("poor", "poor"), "1/01/0");
    const std::string cached = world.cache("poor").result.localPath;
    const QString stored = damage("poor");
    EXPECT_EQ(world.cloudBytes("poor"), "poor") << "the copy is whole";
    QFile::remove(q(cached));
    EXPECT_EQ(world.cloudBytes("poor"), "state 9");
    EXPECT_FALSE(QFile::exists(q(cached)));
    auto synced = sync("/", 0);
    EXPECT_EQ(synced.state(), 9);
    EXPECT_EQ(synced.result.extraParam["files"], "1");
    EXPECT_EQ(filesBelow(q(synced.result.extraParam["localPath"])), QStringList { q("good") });
    QFile::remove(stored);
    EXPECT_EQ(world.cloudBytes("poor"), "state 9");
    ASSERT_EQ(uploaded("poor", "poor"), "1/0") << "the same content heals it";
    EXPECT_EQ(world.cloudBytes("poor"), "poor");
}

TEST_F(CloudService, SyncsWhatDiffersAndFollowsNoLink)
{
    for (const char* folder : { "/", "sub", "sub/deep" })
        ASSERT_EQ(uploaded("one", std::string("one in ") + folder, folder)
                + uploaded("two", content(50'000, 't'), folder),
            "1/01/0");
    const std::string outside = world.source("outside", "mine");
    const QString local = q(openFolder("/").result.extraParam["localPath"]);
    const auto link = [&](const std::string& target, const char* name) {
        EXPECT_EQ(symlink(target.c_str(), (local + q(name)).toLocal8Bit().constData()), 0);
    };
    link(world.source("equal", "one in /"), "/one");
    link(outside, "/two");
    link(place.path().toStdString(), "/sub");
    QFile own(local + q("/own"));
    EXPECT_TRUE(own.open(QIODevice::WriteOnly));

    auto counted = [&](int depth) { return sync("", depth).result.extraParam["files"]; };
    EXPECT_EQ(counted(0), "2");
    for (const char* files : { "2", "0" })
        EXPECT_EQ(counted(1), files);
    EXPECT_EQ(bytesOf(q(outside)), "mine");
    EXPECT_FALSE(QFileInfo(local + q("/one")).isSymLink());
    QFile(local + q("/two")).remove();
    QFile changed(local + q("/sub/two"));
    EXPECT_TRUE(changed.open(QIODevice::ReadWrite) && changed.putChar('#'));
    changed.close();
    EXPECT_EQ(counted(9), "4");
    EXPECT_EQ(
        filesBelow(local).join(QLatin1Char(' ')), q("one own sub/deep/one sub/deep/two sub/one sub/two two"));
    EXPECT_EQ(
        bytesOf(local + q("/sub/one")) + bytesOf(local + q("/sub/deep/one")), "one in subone in sub/deep");
    EXPECT_EQ(bytesOf(local + q("/sub/two")), content(50'000, 't'));
    EXPECT_EQ(QFileInfo(local + q("/sub/two")).permissions() & 0x0077, 0);

    QDir().mkpath(local + q("/sub/deep/one.d"));
    QFile::remove(local + q("/one"));
    QDir().mkdir(local + q("/one"));
    const auto blocked = sync("", 0);
    EXPECT_EQ(blocked.state(), 4) << "a folder is in the way";
    EXPECT_EQ(sync("sub", -1).state(), 1);
    EXPECT_EQ(sync("nowhere", 0).state(), 2);
    EXPECT_EQ(sync("", 0, "g0").state(), 2);
}

TEST_F(CloudService, SyncsWhatIsReplacedMeanwhile)
{
    SyncFolderArg request;
    request.userId = "ann";
    ASSERT_EQ(uploaded("another", "x") + uploaded("file", content(1000, 'v')), "1/01/0");
    for (size_t moment = 0; moment < 10; ++moment) {
        const std::string file = world.source("file", content(1001 + moment, 'v'));
        QFile::remove(world.state("documents/ann/file"));
        const auto synced = world.send<SyncFolderResult>("syncFolder", request);
        for (size_t i = 0; i < moment; ++i)
            QCoreApplication::processEvents();
        EXPECT_EQ(world.outcome(world.upload(file)), "1/0");
        EXPECT_TRUE(world.until([&] { return synced->came; }));
        EXPECT_EQ(synced->state(), 0) << "moment " << moment;
    }
    EXPECT_EQ(sync("/", 0).state(), 0);
    EXPECT_EQ(bytesOf(world.state("documents/ann/file")), content(1010, 'v'));
}

TEST_F(CloudService, UploadsManyFilesAtOnce)
{
    QDir(place.path()).mkdir(q("other"));
    UploadFilesToCloudArg request;
    request.userId = "ann";
    request.cloudPath = "in";
    request.userData = "mine";
    request.srcFiles = { world.source("a", "1"), world.source("other/a", "2"),
        place.path().toStdString() + "/none" };
    const auto upload = [&] { return world.ask<UploadFilesToCloudResult>("uploadFilesToCloud", request); };
    EXPECT_EQ(upload().state(), 2) << "the folder is missing";
    request.createWhenNoExists = true;
    const auto answered = upload();
    EXPECT_EQ(answered.state(), 5);
    EXPECT_EQ(answered.result.userData, "mine");
    EXPECT_EQ(answered.result.extraParam,
        (Texts { { "uploaded", "2" }, { "failedCount", "1" },
            { "failed", "[\"" + request.srcFiles[2] + "\"]" } }));
    EXPECT_EQ(world.cloudBytes("in/a") + world.cloudBytes("in/a (1)"), "12");
    // Of the tasks that have ended the last 1000 are kept, of those that somebody was told the id of.
    const std::string none = request.srcFiles[2];
    const std::string first = world.upload(none);
    request.srcFiles.assign(1000, none);
    upload();
    for (int i = 0; i < 999; ++i)
        world.upload(none);
    EXPECT_EQ(world.outcome(first), "2/5");
    EXPECT_EQ(world.outcome(world.upload(none)), "2/5");
    EXPECT_EQ(world.call("getTaskState", { { "userId", "ann" }, { "taskId", first } }).state(), 2);
    request.userData.assign((64 << 10) + 1, 'u');
    EXPECT_EQ(upload().state(), 1);
    request.userData.pop_back();
    request.srcFiles = { none };
    for (int i = 0; i < 1024; ++i)
        world.send<UploadFilesToCloudResult>("uploadFilesToCloud", request);
    EXPECT_EQ(upload().state(), 7) << "64 MiB wait to be sent back";
    EXPECT_TRUE(world.rest());
    EXPECT_EQ(upload().state(), 5);
    // Not more than 10,000 wait.
    request.srcFiles.assign(10'001, none);
    EXPECT_EQ(upload().state(), 1);
    request.srcFiles.pop_back();
    world.send<UploadFilesToCloudResult>("uploadFilesToCloud", request);
    EXPECT_EQ(
        world.call("uploadFileToCloud", Texts { { "userId", "ann" }, { "filePath", none } }).state(), 7);
    request.srcFiles.clear();
    EXPECT_EQ(upload().state(), 1);
}

TEST_F(CloudService, SavesToAFolder)
{
    const std::string source = world.source("source", "bytes");
    ASSERT_EQ(save("/", "folder", 1).state(), 0);
    // The folder, the kind, and perhaps a source.
    const auto table = rows(R"(
new.odt: folder 0 -> 0 folder/new.odt
new.odt: folder 0 -> 0 folder/new (1).odt
new.odt: folder 0 SOURCE -> 0 folder/new (2).odt
x: folder 0 /nowhere -> 5
x: none 0 -> 2
x: folder/new.odt 0 -> 2
../x: folder 0 -> 1
x: folder 2 -> 1
)");
    for (const Row& row : table) {
        const QStringList given = row.given.trimmed().split(QLatin1Char(' '));
        Texts extra;
        if (given.size() > 2)
            extra["localPath"] = given[2] == q("SOURCE") ? source : given[2].toStdString();
        const auto answered = save(qPrintable(given[0]), row.name.c_str(), given[1].toInt(), extra);
        const std::string seen = std::to_string(answered.state()) + ' ' + answered.result.cloudPath;
        EXPECT_EQ(q(seen).trimmed(), row.expected) << row.name << " in " << row.given.toStdString();
    }
    EXPECT_EQ(save("", "n", 0, {}, "g0").state(), 2) << "another's group";
    EXPECT_EQ(world.cloudBytes("folder/new.odt") + world.cloudBytes("folder/new (2).odt"), "bytes");
    EXPECT_EQ(world.cache("folder").state(), 2);
    EXPECT_EQ(world.cache("folder/new.odt", "bob").state(), 2);
}

TEST_F(CloudService, KeepsUsersApartOnTheDisk)
{
    world.session->signedIn = QStringList { q(".."), q("../ann"), q("a%2Fb"), q("a/b") };
    QStringList paths;
    for (const QString& user : world.session->signedIn)
        paths.append(q(world.call("getMyCloudDocumentsLocalPath", { { "userId", user.toStdString() } })
                           .result.resultString));
    EXPECT_EQ(QDir(world.state("documents")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot).size(), 4);
    for (const QString& path : paths)
        EXPECT_EQ(QFileInfo(path).canonicalPath(), QFileInfo(world.state("documents")).canonicalFilePath());
}

TEST(CloudRecords, AreNotOverwritten)
{
    for (const char* spoiledBy : { "PRAGMA user_version = 2", "PRAGMA user_version = 0", "" }) {
        const QTemporaryDir place(placeTemplate());
        World world(place.path());
        const QString records = world.state("records.sqlite");
        ASSERT_EQ(world.outcome(world.upload(world.source("file", "x"))), "1/0");
        const World second(place.path());
        EXPECT_NE(second.error, QString()) << "two services in one directory";
        world.service.reset();
        if (*spoiledBy) {
            execute(records, spoiledBy);
        } else {
            QFile file(records);
            EXPECT_TRUE(
                file.open(QIODevice::ReadWrite) && file.seek(4096) && file.write(QByteArray(3000, '#')));
        }
        const std::string before = bytesOf(records);
        world.restart();
        EXPECT_TRUE(world.error.contains(q("records.sqlite")))
            << spoiledBy << ": " << world.error.toStdString();
        world.service.reset();
        EXPECT_EQ(bytesOf(records), before) << spoiledBy;
        EXPECT_EQ(filesBelow(world.state("contents")).size(), 1) << spoiledBy;
    }
}

void showCoarse(timespec& time)
{
    time.tv_nsec -= time.tv_nsec % stepOfTimeStamps;
}

int showCoarse(int result, struct stat* found)
{
    if (result == 0) {
        showCoarse(found->st_mtim);
        showCoarse(found->st_ctim);
    }
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

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    const QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
