// What the procedures answer, and what that leaves on the disk.
#include "tests/cloudd/fixture.h"
#include "tests/services/rows.h"

#include <QSet>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <atomic>
#include <cstdio>
#include <ctime>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <thread>
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

struct Place {
    const QTemporaryDir temporary { placeTemplate() };
};

class CloudService : public testing::Test, protected Place, protected World {
protected:
    CloudService()
        : World(temporary.path())
    {
        EXPECT_EQ(error, QString());
        onNotice = [this](const std::string&, const QMap<QString, QString>& actions) { last = actions; };
    }

    std::string uploaded(
        const char* name, const std::string& bytes, const char* folder = "/", const char* rename = "false")
    {
        return outcome(upload(source(name, bytes), folder, rename));
    }
    Answered<SyncFolderResult> sync(const std::string& folder, int depth, const char* group = "")
    {
        return ask<SyncFolderResult>("syncFolder", syncRequest(folder, depth, group));
    }
    static SyncFolderArg syncRequest(const std::string& folder, int depth, const char* group = "")
    {
        SyncFolderArg request;
        request.userId = "ann";
        request.groupId = group;
        request.fileId = folder;
        request.depth = depth;
        return request;
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
        return ask<SaveToCloudDirResult>("saveToCloudDir", request);
    }
    Answered<OpenVirtualCloudDiskResult> openFolder(const std::string& path, bool create = false)
    {
        OpenVirtualCloudDiskArg request;
        request.userId = "ann";
        request.cloudPath = path;
        request.createWhenNoExists = create;
        return ask<OpenVirtualCloudDiskResult>("openVirtualCloudDisk", request);
    }

    QMap<QString, QString> last; ///< notice
};

TEST_F(CloudService, AnswersEachMethodWithItsState)
{
    ASSERT_EQ(uploaded("file", "x"), "1/0");
    const std::string file = source("file", "x");
    const QString annsTask = q(upload(file));
    QString users;
    for (int i = 0; i < 100; ++i)
        users += q("u%1\\n").arg(i);
    // The first word is the method, perhaps with a name space.
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
        const QStringList name = row.given.trimmed().section(QLatin1Char(' '), 0, 0).split(QLatin1Char('/'));
        Texts given = texts(row.given.trimmed().section(QLatin1Char(' '), 1));
        if (given["userId"] == "HALF")
            given["userId"] = "a\xC3";
        const auto answered =
            call(name.last().toStdString(), given, name.size() > 1 ? name[0].toStdString() : "");
        EXPECT_EQ(answered.state(), row.expected.toInt()) << row.name;
    }
    EXPECT_EQ(session->signedIn.size(), 100);
}

TEST_F(CloudService, KeepsTheLabelsOfFiles)
{
    const std::string group = call("getPersonalPrivateGroup", "userId=ann").result.resultMap["response"];
    ASSERT_EQ(uploaded("file", "x") + std::to_string(save("", "folder", 1).state()), "1/00");
    const auto update = [&](const QJsonObject& changed, const char* user = "ann") {
        QJsonObject given { { q("group_id"), QJsonDocument::fromJson(group.c_str()).object()[q("groupId")] },
            { q("file_id"), q("file") }, { q("uuid"), q("u") }, { q("label"), q("secret") } };
        for (auto value = changed.begin(); value != changed.end(); ++value)
            given[value.key()] = value.value();
        return call("updateClassifyLabelStatus",
            { { "userId", user }, { "data", QJsonDocument(given).toJson().toStdString() } })
            .state();
    };
    const auto label = [&] { return call("getClassifyLabelStatus", "userId=ann, fileId=file"); };
    EXPECT_EQ(label().state(), 2) << "there is none yet";
    const std::pair<QJsonObject, int> rows[] = { { {}, 0 }, { { { q("label"), q("ä \"/") } }, 0 },
        { { { q("label"), 5 } }, 1 }, { { { q("label"), q(std::string(256, 'l')) } }, 1 },
        { { { q("uuid"), q("a\nb") } }, 1 }, { { { q("group_id"), q("g") } }, 2 },
        { { { q("file_id"), q("none") } }, 2 }, { { { q("file_id"), q("My Documents") } }, 2 } };
    for (const auto& [changed, state] : rows)
        EXPECT_EQ(update(changed), state) << QJsonDocument(changed).toJson().toStdString();
    EXPECT_EQ(update({}, "bob"), 2) << "another user's group";
    restart();
    EXPECT_EQ(label().result.resultMap["label"], "ä \"/") << "the last that was accepted";
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
    const int room = 4095 - state("documents/ann").toUtf8().size();
    EXPECT_EQ(openFolder(below(room + 1), true).state(), 1);
    EXPECT_EQ(openFolder(below(room + 1)).state(), 2) << "the folder was made in the cloud";
    EXPECT_TRUE(QFileInfo(q(openFolder(below(room), true).result.extraParam["localPath"])).isDir());

    const std::string deep = "long" + below(room - 20);
    for (const auto& [name, folder] : Texts { { "file", deep }, { "a file with a long name", deep },
             { "x", deep + "/a folder with a long name" } })
        ASSERT_EQ(uploaded(name.c_str(), "x", folder.c_str()), "1/0");
    auto synced = sync("long", 63);
    EXPECT_EQ(synced.state(), 1);
    EXPECT_EQ(synced.result.extraParam["files"], "1") << "the others are copied all the same";
}

TEST_F(CloudService, KeepsUsersApart)
{
    GetDefaultWorkspaceArg request;
    const auto workspace = [&] { return ask<GetDefaultWorkspaceResult>("getDefaultWorkspace", request); };
    const auto answered = workspace();
    const std::string group = call("getPersonalPrivateGroup", "userId=ann").result.resultMap["response"];
    EXPECT_NE(group.find('"' + answered.result.groupId + '"'), std::string::npos) << group;
    EXPECT_EQ(answered.result.virtualPath, "My Cloud/My Documents");
    EXPECT_EQ(uploaded("file", "x", ""), "1/0");
    EXPECT_EQ(cloudBytes(answered.result.cloudPath + "/file"), "x");

    call("setCurrentUser", "userId=bob, signedIn=bob");
    EXPECT_EQ(cache("file").state(), 3);
    EXPECT_NE(workspace().result.groupId, answered.result.groupId);
    call("setCurrentUser", "userId=, signedIn=");
    EXPECT_EQ(workspace().state(), 3);

    session->signedIn = QStringList { q(".."), q("../ann"), q("a%2Fb"), q("a/b") };
    QSet<QString> paths;
    for (const QString& user : session->signedIn) {
        const auto local = call("getMyCloudDocumentsLocalPath", { { "userId", user.toStdString() } });
        paths.insert(q(local.result.resultString));
    }
    EXPECT_EQ(paths.size(), 4);
    for (const QString& path : paths)
        EXPECT_EQ(QFileInfo(path).canonicalPath(), QFileInfo(state("documents")).canonicalFilePath());
}

/// A file can not take the place of the default workspace, which older records may not have, either.
TEST_F(CloudService, HasADefaultWorkspaceWhateverThereIs)
{
    EXPECT_EQ(uploaded("My Documents", "x"), "2/4");
    EXPECT_EQ(uploaded("My Documents", "x", "/", "true"), "1/0");
    EXPECT_EQ(save("", "n", 1).result.cloudPath, "My Documents/n");
    service.reset();
    execute(
        state("records.sqlite"), "UPDATE items SET isFolder = 0, sha256 = 'x' WHERE name = 'My Documents'");
    restart();
    for (int i = 0; i < 2; ++i)
        EXPECT_EQ(save("", "n", 1).result.cloudPath, "My Documents (2)/n");
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

TEST_F(CloudService, NeverHandsOutDamagedContents)
{
    ASSERT_EQ(uploaded("good", "good") + uploaded("poor", "poor"), "1/01/0");
    const QString cached = q(cache("poor").result.localPath);
    const std::string name = sha256("poor");
    QFile stored(state("contents/") + q(name.substr(0, 2) + '/' + name));
    EXPECT_TRUE(stored.open(QIODevice::ReadWrite) && stored.putChar('#') && stored.flush());
    EXPECT_EQ(cloudBytes("poor"), "poor") << "the copy is whole";
    QFile::remove(cached);
    EXPECT_EQ(cloudBytes("poor"), "state 9");
    EXPECT_FALSE(QFile::exists(cached));
    const auto synced = sync("/", 0);
    EXPECT_EQ(synced.state(), 9);
    EXPECT_EQ(filesBelow(state("documents/ann")), QStringList { q("good") });
    stored.remove();
    EXPECT_EQ(cloudBytes("poor"), "state 9");
    ASSERT_EQ(uploaded("poor", "poor"), "1/0") << "the same content heals it";
    EXPECT_EQ(cloudBytes("poor"), "poor");
}

TEST_F(CloudService, SyncsWhatDiffersFollowsNoLinkAndKeepsEdits)
{
    for (const char* folder : { "/", "sub", "sub/deep" })
        ASSERT_EQ(uploaded("one", std::string("one in ") + folder, folder)
                + uploaded("two", content(50'000, 't'), folder),
            "1/01/0");
    const std::string outside = source("outside", "mine");
    const QString local = q(openFolder("/").result.extraParam["localPath"]);
    const auto link = [&](const std::string& target, const char* name) {
        EXPECT_EQ(symlink(target.c_str(), (local + q(name)).toLocal8Bit().constData()), 0);
    };
    link(source("equal", "one in /"), "/one");
    link(outside, "/two");
    link(state("..").toStdString(), "/sub");
    const auto edit = [&](const char* name, const char* bytes) {
        QFile file(local + q(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) >= 0);
    };
    edit("/own", "");
    // How many files are copied, and how many are kept beside a copy.
    const auto counted = [&](int depth) {
        Texts done = sync("", depth).result.extraParam;
        return done["files"] + '/' + done["kept"];
    };
    EXPECT_EQ(counted(0), "2/0");
    for (const char* files : { "2/0", "0/0" })
        EXPECT_EQ(counted(1), files);
    EXPECT_EQ(bytesOf(q(outside)), "mine");
    EXPECT_FALSE(QFileInfo(local + q("/one")).isSymLink());
    EXPECT_EQ(QFileInfo(local + q("/sub/two")).permissions() & 0x0077, 0);
    EXPECT_EQ(counted(9), "2/0");
    for (const char* bytes : { "edited", "again" }) {
        edit("/sub/two", bytes);
        edit("/one", bytes);
        EXPECT_EQ(counted(1), "2/2") << bytes;
    }
    // A copy that nobody has edited is out of date; one of a user's own has the name of a new file.
    edit("/new", "own");
    ASSERT_EQ(uploaded("one", "new version") + uploaded("new", "theirs"), "1/01/0");
    QFile::remove(local + q("/two"));
    EXPECT_EQ(counted(9), "3/1");
    EXPECT_EQ(counted(9), "0/0");
    std::string all;
    for (const QString& file : filesBelow(local))
        all += file.toStdString() + '=' + bytesOf(local + QLatin1Char('/') + file).substr(0, 13) + ' ';
    const std::string two = content(50'000, 't').substr(0, 13);
    EXPECT_EQ(all,
        "new=theirs new (local version 1)=own one=new version one (local version 1)=edited "
        "one (local version 2)=again own= sub/deep/one=one in sub/de sub/deep/two="
            + two + " sub/one=one in sub sub/two=" + two
            + " sub/two (local version 1)=edited sub/two (local version 2)=again two=" + two + ' ');

    QDir().mkpath(local + q("/sub/deep/one.d"));
    QFile::remove(local + q("/one"));
    QDir().mkdir(local + q("/one"));
    EXPECT_EQ(sync("", 0).state(), 4) << "a folder is in the way";
    EXPECT_EQ(sync("sub", -1).state(), 1);
    EXPECT_EQ(sync("nowhere", 0).state(), 2);
    EXPECT_EQ(sync("", 0, "g0").state(), 2);
}

TEST_F(CloudService, SyncsWhatIsReplacedMeanwhile)
{
    ASSERT_EQ(uploaded("another", "x") + uploaded("file", content(1000, 'v')), "1/01/0");
    for (size_t moment = 0; moment < 10; ++moment) {
        const std::string file = source("file", content(1001 + moment, 'v'));
        QFile::remove(state("documents/ann/file"));
        const auto synced = send<SyncFolderResult>("syncFolder", syncRequest("", 0));
        for (size_t i = 0; i < moment; ++i)
            QCoreApplication::processEvents();
        EXPECT_EQ(outcome(upload(file)), "1/0");
        EXPECT_TRUE(until([&] { return synced->came; }));
        EXPECT_EQ(synced->state(), 0) << "moment " << moment;
    }
    EXPECT_EQ(sync("/", 0).state(), 0);
    EXPECT_EQ(bytesOf(state("documents/ann/file")), content(1010, 'v'));
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
    const auto send = [&] { return World::send<UploadFilesToCloudResult>("uploadFilesToCloud", request); };
    const auto upload = [&] { return ask<UploadFilesToCloudResult>("uploadFilesToCloud", request); };
    EXPECT_EQ(upload().state(), 2) << "the folder is missing";
    request.createWhenNoExists = true;
    const auto answered = upload();
    EXPECT_EQ(answered.state(), 5);
    EXPECT_EQ(answered.result.userData, "mine");
    EXPECT_EQ(answered.result.extraParam,
        (Texts { { "uploaded", "2" }, { "failedCount", "1" }, { "failed", "[\"" + none + "\"]" } }));
    EXPECT_EQ(cloudBytes("in/a") + cloudBytes("in/a (1)"), "12");
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

TEST_F(CloudService, SavesToAFolder)
{
    const std::string file = source("source", "bytes");
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
            extra["localPath"] = given[2] == q("SOURCE") ? file : given[2].toStdString();
        const auto answered = save(qPrintable(given[0]), row.name.c_str(), given[1].toInt(), extra);
        const std::string seen = std::to_string(answered.state()) + ' ' + answered.result.cloudPath;
        EXPECT_EQ(q(seen).trimmed(), row.expected) << row.name << " in " << row.given.toStdString();
    }
    EXPECT_EQ(save("", "n", 0, {}, "g0").state(), 2) << "another's group";
    EXPECT_EQ(cloudBytes("folder/new.odt") + cloudBytes("folder/new (2).odt"), "bytes");
    EXPECT_EQ(cache("folder").state(), 2);
}

TEST_F(CloudService, DoesNotOverwriteRecordsItCanNotRead)
{
    const QString records = state("records.sqlite");
    ASSERT_EQ(uploaded("file", "x"), "1/0");
    EXPECT_NE(World(state("..")).error, QString()) << "two services in one directory";
    service.reset();
    const std::string good = bytesOf(records);
    for (const char* spoiledBy : { "PRAGMA user_version = 2", "PRAGMA user_version = 0", "" }) {
        std::string spoiled = good;
        if (!*spoiledBy)
            spoiled.replace(4096, 3000, 3000, '#');
        QFile file(records);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(QByteArray::fromStdString(spoiled)) > 0);
        file.close();
        if (*spoiledBy)
            execute(records, spoiledBy);
        spoiled = bytesOf(records);
        restart();
        EXPECT_TRUE(error.contains(q("records.sqlite"))) << spoiledBy << ": " << error.toStdString();
        service.reset();
        EXPECT_EQ(bytesOf(records), spoiled) << spoiledBy;
        EXPECT_EQ(filesBelow(state("contents")).size(), 1) << spoiledBy;
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
