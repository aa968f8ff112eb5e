#include "suite/kdcinfo.h"
#include "suite/kxloggerlite.h"
#include "tests/services/fixture.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

namespace {

TEST_F(ServiceTest, ALogRecordIsOneLineWithItsParts)
{
    KxLoggerLite::writeInfo(L"mod\tule", L"a\r\nb\\n \x2028 \x1F600\x1b[0m\x202e\xE0041");
    KxLoggerLite::writeWarning(L"m", L"w");
    KxLoggerLite::writeError(L"m", L"e");
    const QList<QByteArray> lines = read("logs/suite.log").split('\n');
    ASSERT_EQ(lines.size(), 4);
    const QRegularExpression record(QStringLiteral(
        "^\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\\.\\d{3}[+-]\\d\\d:\\d\\d\t(\\w+)\t([^\t]*)\t([^\t]*)$"));
    const auto parts = [&](int line) {
        return record.match(QString::fromUtf8(lines[line]))
            .capturedTexts()
            .mid(1)
            .join(QLatin1Char('|'))
            .toStdString();
    };
    EXPECT_EQ(
        parts(0), "info|mod\\tule|a\\r\\nb\\\\n \\u2028 \xf0\x9f\x98\x80\\u001b[0m\\u202e\\udb40\\udc41");
    EXPECT_EQ(parts(1), "warning|m|w");
    EXPECT_EQ(parts(2), "error|m|e");
}

TEST_F(ServiceTest, TheLogRotatesAndKeepsWhatTheProfileSays)
{
    useProfile(R"({"log": {"maxFileSizeKiB": 1, "keptFiles": 2}})");
    for (int record = 0; record < 100; ++record)
        KxLoggerLite::writeInfo(L"m", std::wstring(100, L'a') + std::to_wstring(record));
    const QStringList files = QDir(path("logs")).entryList(QDir::Files, QDir::Name);
    ASSERT_EQ(files.join(QLatin1Char(' ')).toStdString(), "suite.1.log suite.2.log suite.log");
    for (const QString& file : files)
        EXPECT_LE(QFileInfo(path("logs/") + file).size(), 1024);
    EXPECT_TRUE(read("logs/suite.log").endsWith("a99\n"));
}

TEST_F(ServiceTest, ALogThatCanNotBeWrittenOrIsOffDropsRecords)
{
    write("logs", "in the way");
    EXPECT_NO_THROW(KxLoggerLite::writeInfo(L"m", L"dropped"));
    ASSERT_TRUE(QFile::remove(path("logs")));
    profile::switchOff(QStringLiteral("logger"), nullptr);
    KxLoggerLite::writeInfo(L"m", L"dropped");
    EXPECT_FALSE(QFileInfo::exists(path("logs")));
    useProfile("{}");
    KxLoggerLite::writeInfo(L"m", L"kept");
    EXPECT_TRUE(read("logs/suite.log").endsWith("kept\n"));
}

TEST_F(ServiceTest, EveryEventIsRecordedWithWhatSamplingSaid)
{
    for (int event = 0; event < 200; ++event)
        KDcInfoC::instance()->postGeneralEvent(QStringLiteral("e"),
            { { QStringLiteral("k"), QStringLiteral("v\n") } }, 0, 0, event < 100 ? 1 : 1000, true);
    const QByteArray records = read("telemetry.jsonl");
    EXPECT_EQ(records.count('\n'), 200);
    EXPECT_EQ(records.count(R"({"event":"e","fields":{"k":"v\n"},)"), 200);
    EXPECT_EQ(records.count(R"("probability":1,"sent":true)"), 100);
    // One in a thousand: ten of a hundred come once in 10^17 runs.
    EXPECT_LT(records.count(R"("probability":1000,"sent":true)"), 10);
    EXPECT_EQ(records.count(R"("probability":1000,"sent":)"), 100);

    profile::switchOff(QStringLiteral("dataCollection"), nullptr);
    EXPECT_EQ(KDcInfoC::instance(), nullptr);
}

TEST_F(ServiceTest, AnEventOfManyFieldsIsCut)
{
    constexpr int Fields = 300000;
    QHash<QString, QString> fields { { QStringLiteral("0 too long"), QString(1 << 21, QLatin1Char('x')) } };
    for (int field = 0; field < Fields; ++field)
        fields.insert(QStringLiteral("f%1").arg(field, 6, 10, QLatin1Char('0')), QStringLiteral("v"));
    KDcInfoC::instance()->postGeneralEvent(QStringLiteral("e"), fields, 0, 0, 1, true);
    const QJsonObject record = QJsonDocument::fromJson(read("telemetry.jsonl")).object();
    const QJsonObject written = record[QStringLiteral("fields")].toObject();
    EXPECT_EQ(written.size(), (1 << 20) / 8);
    EXPECT_TRUE(written.contains(QStringLiteral("f000000")));
    EXPECT_EQ(record[QStringLiteral("omitted")].toInt(), Fields + 1 - written.size());
}

} // namespace
