// What the procedures return for each user, and for what nobody should ask.
#include "tests/cloudd/service.h"
#include "tests/services/rows.h"

#include <QSet>

namespace {

using namespace cloudd_test;

TEST_F(CloudService, ReturnsTheStateOfEachMethod)
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

} // namespace
