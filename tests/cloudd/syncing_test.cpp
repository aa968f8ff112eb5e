// What is copied from the cloud into a user's folder.
#include "tests/cloudd/service.h"

#include <unistd.h>

namespace {

using namespace cloudd_test;

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
        EXPECT_TRUE(writeBytes(local + q(name), bytes));
    };
    edit("/own", "");
    const auto editBoth = [&](const char* bytes) {
        return [&edit, bytes] { edit("/sub/two", bytes), edit("/one", bytes); };
    };
    const struct {
        const char* name;
        std::function<void()> before;
        int depth;
        const char* counted; ///< how many files are copied, and how many are kept beside a copy
    } steps[] = {
        { "the folder alone, in place of links", {}, 0, "2/0" },
        { "the folders in it", {}, 1, "2/0" },
        { "nothing has changed", {}, 1, "0/0" },
        { "all that is below", {}, 9, "2/0" },
        { "edited copies", editBoth("edited"), 1, "2/2" },
        { "copies edited again", editBoth("again"), 1, "2/2" },
        { "a new version, a removed copy, and a new file where the user has an own one",
            [&] {
                edit("/new", "own");
                EXPECT_EQ(uploaded("one", "new version") + uploaded("new", "theirs"), "1/01/0");
                QFile::remove(local + q("/two"));
            },
            9, "3/1" },
        { "nothing is left to be copied", {}, 9, "0/0" },
    };
    for (const auto& step : steps) {
        if (step.before)
            step.before();
        Texts done = sync("", step.depth).result.extraParam;
        EXPECT_EQ(done["files"] + '/' + done["kept"], step.counted) << step.name;
    }
    EXPECT_EQ(bytesOf(q(outside)), "mine");
    EXPECT_FALSE(QFileInfo(local + q("/one")).isSymLink());
    EXPECT_EQ(QFileInfo(local + q("/sub/two")).permissions() & 0x0077, 0);
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
    EXPECT_EQ(sync("", 0, "g0").state(), 2) << "another's group";
}

TEST_F(CloudService, SyncsWhatIsReplacedMeanwhile)
{
    ASSERT_EQ(uploaded("another", "x") + uploaded("file", content(1000, 'v')), "1/01/0");
    for (size_t moment = 0; moment < 10; ++moment) {
        const std::string file = source("file", content(1001 + moment, 'v'));
        QFile::remove(state("documents/ann/file"));
        const auto synced = beginSync("", 0);
        for (size_t i = 0; i < moment; ++i)
            QCoreApplication::processEvents();
        EXPECT_EQ(outcome(upload(file)), "1/0");
        EXPECT_TRUE(until([&] { return synced->came; }));
        EXPECT_EQ(synced->state(), 0) << "moment " << moment;
    }
    EXPECT_EQ(sync("/", 0).state(), 0);
    EXPECT_EQ(bytesOf(state("documents/ann/file")), content(1010, 'v'));
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

} // namespace
