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

TEST_F(CloudService, DoesNotOverwriteRecordsItCanNotRead)
{
    const QString records = state("records.sqlite");
    ASSERT_EQ(uploaded("file", "x"), "1/0");
    EXPECT_NE(World(state("..")).error, QString()) << "two services in one directory";
    service.reset();
    const std::string good = bytesOf(records);
    const std::pair<const char*, const char*> rows[] = {
        { "of a later version", "PRAGMA user_version = 2" },
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
    const QString groupId =
        QJsonDocument::fromJson(QByteArray::fromStdString(group)).object()[q("groupId")].toString();
    ASSERT_EQ(uploaded("file", "x"), "1/0");
    ASSERT_EQ(save("", "folder", 1).state(), 0);
    const QJsonObject good { { q("group_id"), groupId }, { q("file_id"), last[q("fileId")] },
        { q("uuid"), q("u") }, { q("label"), q("secret") } };
    const auto update = [&](const char* key = "label", const QJsonValue& value = q("ä \"/"),
                            const char* user = "ann") {
        QJsonObject given = good;
        given[q(key)] = value;
        return call("updateClassifyLabelStatus",
            { { "userId", user }, { "data", QJsonDocument(given).toJson().toStdString() } });
    };
    const auto label = [&] {
        return call("getClassifyLabelStatus", "userId=ann, fileId=file").result.resultMap["label"];
    };
    EXPECT_EQ(call("getClassifyLabelStatus", "userId=ann, fileId=file").state(), 2) << "there is none yet";
    EXPECT_EQ(update("uuid", q("first")).state() + update().state(), 0);
    const struct {
        const char* key;
        QJsonValue value;
        int state;
    } refused[] = { { "label", {}, 1 }, { "label", 5, 1 }, { "label", q(std::string(256, 'l')), 1 },
        { "uuid", q("a\nb"), 1 }, { "group_id", q("g"), 2 }, { "file_id", q("none"), 2 },
        { "file_id", q("folder"), 2 } };
    for (const auto& row : refused)
        EXPECT_EQ(update(row.key, row.value).state(), row.state) << row.key;
    EXPECT_EQ(update("label", q("bob's"), "bob").state(), 2) << "another user's group";
    EXPECT_EQ(call("updateClassifyLabelStatus", "userId=ann, data={").state(), 1);
    restart();
    EXPECT_EQ(label(), q("ä \"/").toStdString()) << "the last that was accepted";
}

} // namespace
