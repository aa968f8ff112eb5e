#include "host/krt/centre.h"
#include "host/krt/centrefile.h"
#include "krt/kcc.h"
#include "tests/services/fixture.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <bit>
#include <cmath>
#include <limits>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using namespace krt;

const QString Key = QStringLiteral("key");
const QVariant Fallback = QStringLiteral("fallback");

struct Ended {
    bool success;
    QString key;
    QVariant value;
    QVariantMap context;
};
QList<Ended> ended;

void note(bool success, const QString& key, const QVariant& value, const QVariantMap& context)
{
    ended.append({ success, key, value, context });
}

class CentreTest : public ServiceTest {
protected:
    CentreTest() { ended.clear(); }
    ~CentreTest() override { kcc::shutdown(); }

    /// What a process that starts now would read.
    QVariant onDisk(const QString& key, const QString& userId = {}) const
    {
        CentreValues values;
        CentreFile(path("config-centre.json")).read(values);
        return values.value({ userId, key }, Fallback);
    }
};

QVariant nested(int depth)
{
    QVariant value = 1;
    for (int level = 0; level < depth; ++level)
        value = QVariantList { value };
    return value;
}

quint64 bits(const QVariant& number)
{
    return std::bit_cast<quint64>(number.toDouble());
}

struct StoredCase {
    const char* name;
    QVariant value;
};

class StoredValues : public CentreTest, public testing::WithParamInterface<StoredCase> { };

TEST_P(StoredValues, ReadBackTheSameFromDisk)
{
    const QVariant& value = GetParam().value;
    ASSERT_TRUE(kcc::flushWrite(Key, value, nullptr, {}, {}));
    for (const QVariant& found :
        { onDisk(Key), kcc::flushRead(Key, Fallback, {}), kcc::value(Key, Fallback, {}) }) {
        EXPECT_EQ(found.userType(), value.userType());
        if (value.userType() == QMetaType::Double)
            EXPECT_EQ(bits(found), bits(value));
        else
            EXPECT_EQ(found, value);
    }
}

const QString OddText = QString::fromUtf16(u"\0\n\"\\\xd800x\xdc00\xffff\xfeff\xd83d\xde00 d800\xfffe", 16);

INSTANTIATE_TEST_SUITE_P(Types, StoredValues,
    testing::Values(StoredCase { "Int64Beyond2To53", 9007199254740993LL },
        StoredCase { "LowestInt64", std::numeric_limits<qlonglong>::min() }, StoredCase { "SmallInt64", 5LL },
        StoredCase { "Int32", std::numeric_limits<int>::min() }, StoredCase { "UInt64", ~0ULL },
        StoredCase { "UInt32", ~0u }, StoredCase { "Tenth", 0.1 }, StoredCase { "IntegralDouble", 3.0 },
        StoredCase { "NegativeZero", -0.0 }, StoredCase { "Smallest", 5e-324 },
        StoredCase { "Largest", std::numeric_limits<double>::max() },
        StoredCase { "NotANumber", double(NAN) },
        StoredCase { "NotANumberWithPayload", std::bit_cast<double>(0xfff8'0000'0000'1234) },
        StoredCase { "Infinity", double(INFINITY) },
        StoredCase { "InfinitiesInAList", QVariantList { -double(INFINITY), double(INFINITY) } },
        StoredCase { "MapLikeADouble", QVariantMap { { QStringLiteral("$double"), OddText } } },
        StoredCase { "True", true }, StoredCase { "OddText", OddText },
        StoredCase { "EmptyText", QString(QLatin1String("")) },
        StoredCase { "Null", QVariant::fromValue(nullptr) }, StoredCase { "Undefined", QVariant() },
        StoredCase { "List", QVariantList { QVariant(), QVariant::fromValue(nullptr), QVariantList(), 1LL } },
        StoredCase { "Map", QVariantMap { { OddText, QVariantMap() }, { QString(), 1.0 } } },
        StoredCase { "MapLikeATag",
            QVariantMap { { QStringLiteral("$int64"),
                QVariantMap { { QStringLiteral("$map"), QStringLiteral("x") } } } } },
        StoredCase { "Deep", nested(200) }),
    caseName<StoredCase>);

class RefusedValues : public CentreTest, public testing::WithParamInterface<StoredCase> { };

TEST_P(RefusedValues, ChangeNothing)
{
    ASSERT_TRUE(kcc::setValue(Key, 1, {}));
    EXPECT_FALSE(kcc::setValue(Key, GetParam().value, {}));
    EXPECT_FALSE(kcc::flushWrite(Key, GetParam().value, note, {}, {}));
    EXPECT_EQ(kcc::flushRead(Key, Fallback, {}), QVariant(1));
    QCoreApplication::processEvents();
    ASSERT_EQ(ended.size(), 1);
    EXPECT_FALSE(ended[0].success);
}

INSTANTIATE_TEST_SUITE_P(Types, RefusedValues,
    testing::Values(StoredCase { "Float", 1.5F },
        StoredCase { "InAList", QVariantList { QVariant::fromValue<QObject*>(nullptr) } },
        StoredCase { "InAMap", QVariantMap { { Key, QVariant::fromValue<QObject*>(nullptr) } } },
        StoredCase { "TooDeep", nested(201) }),
    caseName<StoredCase>);

TEST_F(CentreTest, UsersAndEverybodyAreApart)
{
    kcc::setValue(Key, 1, {});
    kcc::setValue(Key, 2, { 0, OddText });
    EXPECT_TRUE(kcc::shutdown());
    EXPECT_EQ(onDisk(Key), QVariant(1));
    EXPECT_EQ(onDisk(Key, OddText), QVariant(2));
    EXPECT_EQ(kcc::value(Key, Fallback, { 0, QStringLiteral("other") }), Fallback);
    EXPECT_TRUE(kcc::remove(Key, {}));
    EXPECT_FALSE(kcc::remove(Key, {}));
    EXPECT_EQ(kcc::flushRead(Key, Fallback, {}), Fallback);
    EXPECT_EQ(kcc::flushRead(Key, Fallback, { 0, OddText }), QVariant(2));
    EXPECT_FALSE(kcc::setValue(Key, 3, { 1, {} }));
    EXPECT_FALSE(kcc::setValue({}, 3, {}));
}

TEST_F(CentreTest, PlainWritesReachTheDiskByThemselves)
{
    ASSERT_TRUE(kcc::setValue(Key, 1, {}));
    QElapsedTimer waited;
    waited.start();
    while (onDisk(Key) != QVariant(1) && waited.elapsed() < 5000)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 50);
    EXPECT_EQ(onDisk(Key), QVariant(1));
}

TEST_F(CentreTest, AFlushCompletesOnceAndLater)
{
    const QVariantMap context { { QStringLiteral("f"), 77u } };
    EXPECT_TRUE(kcc::flushWrite(Key, 5LL, note, context, {}));
    EXPECT_TRUE(kcc::flushRemove(Key, note, context, {}));
    EXPECT_FALSE(kcc::flushRemove(Key, note, {}, {}));
    EXPECT_TRUE(kcc::flushWrite(Key, 6LL, nullptr, {}, {}));
    EXPECT_TRUE(ended.isEmpty());
    for (int round = 0; round < 3; ++round)
        QCoreApplication::processEvents();
    kcc::shutdown();
    ASSERT_EQ(ended.size(), 3);
    EXPECT_TRUE(ended[0].success && ended[0].key == Key && ended[0].value == QVariant(5LL));
    EXPECT_EQ(ended[0].context, context);
    EXPECT_TRUE(ended[1].success && !ended[1].value.isValid());
    EXPECT_FALSE(ended[2].success);
}

TEST_F(CentreTest, ShutdownCompletesWhatIsDue)
{
    kcc::flushWrite(Key, 1, note, {}, {});
    kcc::shutdown();
    EXPECT_EQ(ended.size(), 1);
    QCoreApplication::processEvents();
    EXPECT_EQ(ended.size(), 1);
}

TEST_F(CentreTest, ACompletionMayFlushAgain)
{
    kcc::flushWrite(Key, 1,
        [](bool, const QString& key, const QVariant&, const QVariantMap&) {
            kcc::flushRemove(key, note, {}, {});
            EXPECT_TRUE(ended.isEmpty());
        },
        {}, {});
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
    ASSERT_EQ(ended.size(), 1);
    EXPECT_TRUE(ended[0].success);
}

TEST_F(CentreTest, SwitchedOffItAnswersFallbacksAndStillCompletes)
{
    ASSERT_TRUE(kcc::flushWrite(Key, 1, nullptr, {}, {}));
    profile::switchOff(QStringLiteral("configCentre"), nullptr);
    EXPECT_FALSE(kcc::setValue(Key, 2, {}));
    EXPECT_FALSE(kcc::remove(Key, {}));
    EXPECT_EQ(kcc::value(Key, Fallback, {}), Fallback);
    EXPECT_EQ(kcc::flushRead(Key, Fallback, {}), Fallback);
    EXPECT_FALSE(kcc::flushWrite(Key, 2, note, {}, {}));
    EXPECT_FALSE(kcc::flushRemove(Key, note, {}, {}));
    QCoreApplication::processEvents();
    ASSERT_EQ(ended.size(), 2);
    EXPECT_FALSE(ended[0].success || ended[1].success);
    EXPECT_EQ(onDisk(Key), QVariant(1));
}

struct DamageCase {
    const char* name;
    QByteArray text;
};

class DamagedFiles : public CentreTest, public testing::WithParamInterface<DamageCase> { };

TEST_P(DamagedFiles, AreKeptAsideAndTheValuesLiveOn)
{
    ASSERT_TRUE(kcc::flushWrite(Key, 1, nullptr, {}, {}));
    for (const char* aside : { "config-centre.json.damaged", "config-centre.json.damaged.2" }) {
        write("config-centre.json", GetParam().text);
        EXPECT_EQ(kcc::flushRead(Key, Fallback, {}), QVariant(1));
        EXPECT_EQ(read(aside), GetParam().text);
        EXPECT_EQ(onDisk(Key), QVariant(1));
    }
    write("config-centre.json", GetParam().text);
    EXPECT_TRUE(kcc::flushWrite(QStringLiteral("other"), 2, nullptr, {}, {}));
    EXPECT_EQ(onDisk(Key), QVariant(1));
}

INSTANTIATE_TEST_SUITE_P(Kinds, DamagedFiles,
    testing::Values(DamageCase { "Truncated", R"({"format": 1, "shared": {"key")" },
        DamageCase { "Empty", "" },
        DamageCase { "WrongShape", R"({"format": 1, "shared": [], "users": {}})" },
        DamageCase { "OtherFormat", R"({"format": 2, "shared": {}, "users": {}})" },
        DamageCase { "UnknownTag", R"({"format": 1, "shared": {"key": {"$date": 1}}, "users": {}})" },
        DamageCase { "FiniteBits",
            R"({"format": 1, "shared": {"key": {"$double": "3ff0000000000000"}}, "users": {}})" },
        DamageCase { "NoBits", R"({"format": 1, "shared": {"key": {"$double": 1}}, "users": {}})" },
        DamageCase { "IntegerOutOfRange", R"({"format": 1, "shared": {"key": 4294967296}, "users": {}})" },
        DamageCase { "BottomlessNesting",
            R"({"format": 1, "users": {}, "shared": {"key": )" + QByteArray(100000, '[')
                + QByteArray(100000, ']') + "}}" }),
    caseName<DamageCase>);

TEST_F(CentreTest, ARefusingDiskFailsFlushesAndKeepsWhatWaits)
{
    ASSERT_TRUE(kcc::setValue(Key, 1, {}));
    ASSERT_TRUE(QDir().mkdir(path("config-centre.json")));
    EXPECT_FALSE(kcc::flushWrite(QStringLiteral("other"), 2, note, {}, {}));
    EXPECT_EQ(kcc::value(QStringLiteral("other"), Fallback, {}), Fallback);
    EXPECT_FALSE(kcc::shutdown());
    ASSERT_EQ(ended.size(), 1);
    EXPECT_FALSE(ended[0].success);
    ASSERT_TRUE(QDir().rmdir(path("config-centre.json")));
    EXPECT_TRUE(kcc::shutdown());
    EXPECT_EQ(onDisk(Key), QVariant(1));
}

TEST_F(CentreTest, TwoProcessesLoseNoUpdate)
{
    constexpr int Updates = 40;
    const auto updateFrom = [&](int process) {
        CentreFile file(path("config-centre.json"));
        CentreValues values;
        bool ok = true;
        for (int update = 0; update < Updates; ++update) {
            CentreChanges changes;
            changes.insert({ {}, QStringLiteral("%1/%2").arg(process).arg(update) }, QVariant(update));
            ok = file.update(values, changes) && ok;
        }
        return ok;
    };
    const pid_t child = fork();
    if (child == 0)
        _exit(updateFrom(1) ? 0 : 1);
    EXPECT_TRUE(updateFrom(2));
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    CentreValues values;
    EXPECT_TRUE(CentreFile(path("config-centre.json")).read(values));
    EXPECT_EQ(values.size(), 2 * Updates);
}

} // namespace
