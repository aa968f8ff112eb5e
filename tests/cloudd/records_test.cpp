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

} // namespace
