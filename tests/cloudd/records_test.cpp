// What a service makes of the records that it finds.
#include "tests/cloudd/service.h"

#include <QSqlDatabase>
#include <QSqlQuery>

namespace {

using namespace cloudd_test;

void execute(const QString& records, const char* statement)
{
    QSqlDatabase database = QSqlDatabase::addDatabase(q("QSQLITE"), q("spoil"));
    database.setDatabaseName(records);
    EXPECT_TRUE(database.open() && QSqlQuery(database).exec(q(statement)));
    database.close();
    database = QSqlDatabase();
    QSqlDatabase::removeDatabase(q("spoil"));
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

TEST_F(CloudService, UpgradesOlderRecords)
{
    ASSERT_EQ(uploaded("file", "x"), "1/0");
    service.reset();
    for (const char* before :
        { "DROP TABLE syncEntries", "DROP TABLE syncFolders", "PRAGMA user_version = 1" })
        execute(state("records.sqlite"), before);
    restart();
    EXPECT_EQ(error, QString());
    EXPECT_TRUE(call("sync.listFolders", "userId=ann").ok);
    EXPECT_EQ(cloudBytes("file"), "x");
}

TEST_F(CloudService, DoesNotOverwriteRecordsItCanNotRead)
{
    const QString records = state("records.sqlite");
    ASSERT_EQ(uploaded("file", "x"), "1/0");
    EXPECT_NE(World(state("..")).error, QString()) << "two services in one directory";
    service.reset();
    const std::string good = bytesOf(records);
    const std::pair<const char*, const char*> rows[] = {
        { "of a later version", "PRAGMA user_version = 3" },
        { "of no version", "PRAGMA user_version = 0" },
        { "damaged", "" },
    };
    for (const auto& [name, spoiledBy] : rows) {
        std::string spoiled = good;
        if (!*spoiledBy)
            spoiled.replace(4096, 3000, 3000, '#');
        EXPECT_TRUE(writeBytes(records, spoiled));
        if (*spoiledBy)
            execute(records, spoiledBy);
        spoiled = bytesOf(records);
        restart();
        EXPECT_TRUE(error.contains(q("records.sqlite"))) << name << ": " << error.toStdString();
        service.reset();
        EXPECT_EQ(bytesOf(records), spoiled) << name;
        EXPECT_EQ(filesBelow(state("contents")).size(), 1) << name;
    }
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

} // namespace
