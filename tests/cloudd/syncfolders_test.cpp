// Sync folders: two folders of this machine, "a" and "b", that are kept in step with one folder of the cloud, as two
// machines would be.
#include "tests/cloudd/service.h"

#include <sys/stat.h>
#include <unistd.h>

namespace {

using namespace cloudd_test;

class SyncFolders : public CloudService {
protected:
    SyncFolders()
    {
        for (const char* name : { "a", "b" }) {
            QDir().mkdir(path(name));
            ids[name] = add(name, "Shared");
        }
    }

    QString path(const std::string& name) const { return temporary.filePath(q(name)); }
    QJsonObject json(const char* method, Texts arguments)
    {
        arguments["userId"] = "ann";
        const auto answered = call(method, arguments);
        const QJsonObject object =
            QJsonDocument::fromJson(QByteArray::fromStdString(answered.result.resultString)).object();
        return answered.ok ? object : QJsonObject { { q("failed"), q(answered.result.resultString) } };
    }
    std::string add(const std::string& name, const std::string& cloud)
    {
        const QJsonObject made = json("sync.addFolder",
            { { "localPath", path(name).toStdString() }, { "cloudFolder", cloud }, { "kind", "folder" },
                { "create", "true" } });
        return made.value(made.contains(q("failed")) ? q("failed") : q("id")).toString().toStdString();
    }
    std::shared_ptr<Answered<SyncFolderResult>> begin(const std::string& name)
    {
        SyncFolderArg request;
        request.userId = "ann";
        request.extraParam = { { "syncFolderId", ids[name] } };
        return send<SyncFolderResult>("syncFolder", request);
    }
    /// "uploaded downloaded removed conflicts skipped", and the reason of a failure.
    std::string sync(const std::string& name)
    {
        const auto synced = begin(name);
        until([&] { return synced->came; });
        Texts done = synced->result.extraParam;
        std::string line;
        for (const char* key : { "uploaded", "downloaded", "removed", "conflicts", "skipped" })
            line += (line.empty() ? "" : " ") + done[key];
        return done["reason"].empty() ? line : done["reason"];
    }
    /// "a/f=text a/g- a/d/": writes a file, removes what is there, makes a folder.
    void change(const QString& line) const
    {
        for (const QString& word : line.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
            const QString target = temporary.filePath(word.section(QLatin1Char('='), 0, 0));
            if (word.endsWith(QLatin1Char('/'))) {
                EXPECT_TRUE(QDir().mkpath(target));
            } else if (word.endsWith(QLatin1Char('-'))) {
                const QString gone = target.left(target.size() - 1);
                EXPECT_TRUE(QFile::remove(gone) || QDir(gone).removeRecursively()) << qPrintable(gone);
            } else {
                EXPECT_TRUE(writeBytes(target, word.section(QLatin1Char('='), 1).toStdString()));
            }
        }
    }
    std::string content(const std::string& name) const
    {
        std::string all;
        QStringList entries;
        QDirIterator below(
            path(name), QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
        while (below.hasNext())
            entries.append(QDir(path(name)).relativeFilePath(below.next()));
        entries.sort();
        for (const QString& entry : entries) {
            const QString file = path(name) + QLatin1Char('/') + entry;
            if (entry != q(".nova-sync"))
                all += entry.toStdString() + (QFileInfo(file).isDir() ? "/" : '=' + bytesOf(file)) + ' ';
        }
        return all;
    }

    std::map<std::string, std::string> ids;
};

TEST_F(SyncFolders, KeepBothSidesInStepAndLoseNothing)
{
    const struct {
        const char* name;
        const char* changes;
        const char* first;  ///< what the sync of "a" did
        const char* second; ///< and then that of "b"
        const char* both;   ///< what is in each, once "a" has been synced again
    } steps[] = {
        { "nothing", "", "0 0 0 0 0", "0 0 0 0 0", "" },
        { "new ones on both sides", "a/f=one a/d/ a/d/e=deep a/empty/ b/g=two", "2 0 0 0 0", "1 2 0 0 0",
            "d/ d/e=deep empty/ f=one g=two " },
        { "nothing again", "", "0 0 0 0 0", "0 0 0 0 0", "d/ d/e=deep empty/ f=one g=two " },
        { "changed here, removed there", "a/f=uno b/g-", "1 0 0 0 0", "0 1 1 0 0",
            "d/ d/e=deep empty/ f=uno " },
        { "changed on both sides", "a/f=mine b/f=yours", "1 0 0 0 0", "1 1 0 1 0",
            "d/ d/e=deep empty/ f=mine f (local version 1)=yours " },
        { "removed here, changed there", "a/f- b/f=kept", "0 0 1 0 0", "1 0 0 0 0",
            "d/ d/e=deep empty/ f=kept f (local version 1)=yours " },
        { "changed here, removed there", "a/f=alive b/f-", "1 0 0 0 0", "0 1 0 0 0",
            "d/ d/e=deep empty/ f=alive f (local version 1)=yours " },
        { "both made the same", "a/same=x b/same=x", "1 0 0 0 0", "0 0 0 0 0",
            "d/ d/e=deep empty/ f=alive f (local version 1)=yours same=x " },
        { "both made another", "a/new=1 b/new=2", "1 0 0 0 0", "1 1 0 1 0",
            "d/ d/e=deep empty/ f=alive f (local version 1)=yours new=1 new (local version 1)=2 same=x " },
        { "folders go, unless something new is in them", "a/d- a/empty- b/d/more=m", "0 0 1 0 0", "1 0 1 0 0",
            "d/ d/more=m f=alive f (local version 1)=yours new=1 new (local version 1)=2 same=x " },
        { "moved files", "a/d/more- a/moved=m a/new- a/same- a/f-", "1 0 4 0 0", "0 1 4 0 0",
            "d/ f (local version 1)=yours moved=m new (local version 1)=2 " },
    };
    for (const auto& step : steps) {
        change(q(step.changes));
        EXPECT_EQ(sync("a"), step.first) << step.name;
        EXPECT_EQ(sync("b"), step.second) << step.name;
        sync("a");
        EXPECT_EQ(content("a"), step.both) << step.name;
        EXPECT_EQ(content("b"), step.both) << step.name;
    }
    EXPECT_EQ(cloudBytes("Shared/moved"), "m");
    EXPECT_EQ(cloudBytes("Shared/f"), "state 2");
    EXPECT_EQ(filesBelow(state("contents")).size(), 3) << "contents that no file has any more are removed";
}

TEST_F(SyncFolders, TouchNothingThatIsNotTheirs)
{
    const std::string secret = source("secret", "mine");
    change(q("a/f=one a/l=two a/.nova-sync-7=x a/.nova-sync-mine=x"));
    EXPECT_EQ(sync("a"), "2 0 0 0 0");
    EXPECT_EQ(sync("b"), "0 2 0 0 0");
    const auto link = [&](const std::string& target, const char* name) {
        EXPECT_EQ(symlink(target.c_str(), path(name).toLocal8Bit().constData()), 0);
    };
    change(q("a/l- b/f-"));
    link(secret, "a/l");
    link(temporary.path().toStdString(), "a/out");
    EXPECT_EQ(mkfifo(path("a/pipe").toLocal8Bit().constData(), 0600), 0);
    change(q("a/bad\nname=x"));
    EXPECT_EQ(sync("a"), "0 0 0 0 4") << "a link is not followed, and not taken for a file that was removed";
    EXPECT_EQ(sync("b"), "0 0 1 0 0");
    EXPECT_EQ(sync("a"), "0 0 1 0 4");
    EXPECT_EQ(content("b"), "l=two ");
    EXPECT_EQ(bytesOf(q(secret)), "mine");

    EXPECT_TRUE(!QFile::exists(path("a/.nova-sync-7")) && QFile::exists(path("a/.nova-sync-mine")));
    closed = QStringList { path("a/keys"), path("a/later") };
    restart();
    change(q("a/keys=secret"));
    EXPECT_EQ(sync("a"), "0 0 0 0 5");
    EXPECT_EQ(cloudBytes("Shared/keys"), "state 2");
    change(q("b/keys=planted b/later/ b/later/x=planted"));
    EXPECT_EQ(sync("b"), "2 0 0 0 0");
    EXPECT_EQ(sync("a"), "0 0 0 0 7") << "nothing is written where it is closed either";
    EXPECT_EQ(bytesOf(path("a/keys")) + (QFile::exists(path("a/later")) ? " made" : ""), "secret");
    change(q("b/keys- b/later-"));
    sync("b");

    // The disk that the folder is on is not there.
    EXPECT_TRUE(QDir().rename(path("b"), path("elsewhere")));
    EXPECT_EQ(sync("b"), "missing");
    QDir().mkdir(path("b"));
    EXPECT_EQ(sync("b"), "otherFolder");
    EXPECT_EQ(cloudBytes("Shared/l"), "two");
    Texts move { { "id", ids["b"] }, { "localPath", path("elsewhere").toStdString() } };
    EXPECT_EQ(json("sync.moveFolder", move).value(q("state")).toString(), q("idle"));
    EXPECT_EQ(sync("b"), "0 0 0 0 0");
    move["localPath"] = path("b").toStdString();
    change(q("b/full=x"));
    EXPECT_EQ(json("sync.moveFolder", move).value(q("failed")).toString(), q("notEmpty"));
    change(q("b/full-"));
    json("sync.moveFolder", move);
    EXPECT_EQ(content("b"), "l=two ");
    EXPECT_EQ(sync("b"), "0 0 0 0 0");

    const struct {
        const char* path;
        const char* reason;
    } places[] = { { "a", "withinSyncFolder" }, { "a/sub", "withinSyncFolder" }, { ".", "notAbsolute" },
        { "", "containsSyncFolder" }, { "none", "missing" }, { "secret", "notFolder" }, { "link", "link" } };
    QDir().mkdir(path("a/sub"));
    link(path("b").toStdString(), "link");
    for (const auto& place : places)
        EXPECT_EQ(add(place.path, "Other"), place.reason) << place.path;
    for (const auto& [given, reason] :
        { std::pair(std::string("/"), "root"), std::pair(QDir::homePath().toStdString(), "home") })
        EXPECT_EQ(
            json("sync.checkPath", { { "localPath", given } }).value(q("reason")).toString(), q(reason));
    change(q("b- fresh/"));
    move["localPath"] = path("fresh").toStdString();
    EXPECT_EQ(json("sync.moveFolder", move).value(q("state")).toString(), q("idle")) << "it can be synced";
    EXPECT_EQ(sync("b"), "0 1 0 0 0");
    EXPECT_EQ(call("sync.listFolders", "userId=bob").result.resultList.size(), 0U) << "another's";
    EXPECT_EQ(call("sync.removeFolder", { { "userId", "bob" }, { "id", ids["a"] } }).state(), 2);
}

TEST_F(SyncFolders, ScanWithoutChangingAnything)
{
    change(q("a/f=one a/g=two"));
    sync("a");
    change(q("a/f=uno b/new=x b/g=other"));
    const auto actions = [&](const char* name) {
        std::string all;
        const QJsonObject found = json("sync.scan", { { "id", ids[name] } });
        for (const QJsonValue change : found.value(q("changes")).toArray())
            all += change.toObject().value(q("path")).toString().toStdString() + ' '
                + change.toObject().value(q("action")).toString().toStdString() + ' ';
        return all;
    };
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(actions("a"), "f upload ");
        EXPECT_EQ(actions("b"), "f download g conflict new upload ");
    }
    EXPECT_EQ(content("b"), "g=other new=x ");
    const QJsonObject size = json("sync.measure", { { "localPath", path("a").toStdString() } });
    EXPECT_EQ(size.value(q("files")).toInt() * 100 + size.value(q("size")).toInt(), 206);
    EXPECT_EQ(json("sync.measure", { { "cloudFolder", "Shared" } }).value(q("size")).toInt(), 6);
}

TEST_F(SyncFolders, GoOnAfterBeingKilledAnywhere)
{
    for (int moment = 0; moment < 60; ++moment) {
        change(q("a/f%1=%1 a/both%1=a b/both%1=b").arg(moment));
        if (moment > 0)
            change(q("a/f%1-").arg(moment - 1));
        begin("a");
        for (int i = 0; i < moment / 2; ++i)
            QCoreApplication::processEvents();
        begin("b");
        for (int i = 0; i < moment; ++i)
            QCoreApplication::processEvents();
        restart(); // nothing of the jobs is kept but what is on the disk
        for (const char* name : { "a", "b", "a", "b" })
            EXPECT_EQ(sync(name).size(), 9U) << "moment " << moment;
        EXPECT_EQ(content("a"), content("b"));
    }
    const std::string all = content("a");
    size_t versions = 0;
    for (size_t at = all.find("both"); at != std::string::npos; at = all.find("both", at + 1))
        ++versions;
    EXPECT_EQ(versions, 120U) << "both versions of each, once";
    EXPECT_EQ(filesBelow(state("incoming")), QStringList());
}

TEST_F(SyncFolders, TakeTenThousandFiles)
{
    for (int i = 0; i < 10'000; ++i) {
        if (i % 100 == 0)
            change(q("a/d%1/").arg(i / 100));
        change(q("a/d%1/f%2=%2").arg(i / 100).arg(i));
    }
    EXPECT_EQ(sync("a").substr(0, 6), "10000 ");
    EXPECT_EQ(sync("b"), "0 10000 0 0 0");
    EXPECT_EQ(content("a"), content("b"));
    EXPECT_EQ(sync("b"), "0 0 0 0 0");
}

TEST_F(SyncFolders, EndWhenTheyAreRemovedAndLeaveTheFiles)
{
    change(q("a/f=one"));
    sync("a");
    const auto first = begin("a");
    const auto second = begin("a");
    EXPECT_TRUE(call("sync.removeFolder", { { "userId", "ann" }, { "id", ids["a"] } }).ok);
    EXPECT_EQ(first->state() * 100 + second->state(), 1010) << "cancelled";
    EXPECT_EQ(last.value(q("state")), q("removed"));
    EXPECT_EQ(content("a"), "f=one ");
    EXPECT_EQ(cloudBytes("Shared/f"), "one");
    EXPECT_EQ(sync("a"), "notFound");
    ids["a"] = add("a", "Shared");
    EXPECT_EQ(sync("a"), "0 0 0 0 0") << "equal files are not transferred again";
}

} // namespace
