#include "host/krt/centre.h"
#include "host/krt/centrefile.h"
#include "krt/kcc.h"
#include "tests/services/fixture.h"
#include "tests/services/rows.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <bit>
#include <cmath>
#include <csignal>
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

    /// Lets all ends come, which are in this order; once each.
    static void expectEnds(const std::vector<bool>& successes)
    {
        EXPECT_TRUE(ended.isEmpty()) << "ended from inside the call";
        for (int round = 0; round < 3; ++round)
            QCoreApplication::processEvents();
        kcc::shutdown();
        std::vector<bool> found;
        for (const Ended& end : qAsConst(ended))
            found.push_back(end.success);
        EXPECT_EQ(found, successes);
    }

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

QVariant nestedMaps(int depth)
{
    QVariant value = 1;
    for (int level = 0; level < depth; ++level)
        value = QVariantMap { { QStringLiteral("$int64"), value } };
    return value;
}

quint64 bits(const QVariant& number)
{
    return std::bit_cast<quint64>(number.toDouble());
}

const QString OddText = QString::fromUtf16(u"\0\n\"\\\xd800x\xdc00\xffff\xfeff\xd83d\xde00 d800\xfffe", 16);

TEST_F(CentreTest, ValuesReadBackTheSameFromDisk)
{
    const struct {
        const char* name;
        QVariant value;
    } values[] = { { "Int64Beyond2To53", 9007199254740993LL },
        { "LowestInt64", std::numeric_limits<qlonglong>::min() }, { "SmallInt64", 5LL },
        { "Int32", std::numeric_limits<int>::min() }, { "UInt64", ~0ULL }, { "UInt32", ~0u },
        { "Tenth", 0.1 }, { "IntegralDouble", 3.0 }, { "NegativeZero", -0.0 }, { "Smallest", 5e-324 },
        { "Largest", std::numeric_limits<double>::max() }, { "NotANumber", double(NAN) },
        { "NotANumberWithPayload", std::bit_cast<double>(0xfff8'0000'0000'1234) },
        { "Infinities", QVariantList { -double(INFINITY), double(INFINITY) } },
        { "Infinity", double(INFINITY) },
        { "MapLikeADouble", QVariantMap { { QStringLiteral("$double"), OddText } } }, { "True", true },
        { "OddText", OddText }, { "EmptyText", QString(QLatin1String("")) },
        { "Null", QVariant::fromValue(nullptr) }, { "Undefined", QVariant() },
        { "List", QVariantList { QVariant(), QVariant::fromValue(nullptr), QVariantList(), 1LL } },
        { "Map", QVariantMap { { OddText, QVariantMap() }, { QString(), 1.0 } } },
        { "MapLikeATag",
            QVariantMap { { QStringLiteral("$int64"), QVariantMap { { QStringLiteral("$map"), Key } } } } },
        { "Deep", nested(1000) }, { "DeepMapsLikeTags", nestedMaps(1000) } };
    for (const auto& [name, value] : values) {
        ASSERT_TRUE(kcc::flushWrite(Key, value, nullptr, {}, {})) << name;
        for (const QVariant& found :
            { onDisk(Key), kcc::flushRead(Key, Fallback, {}), kcc::value(Key, Fallback, {}) }) {
            EXPECT_EQ(found.userType(), value.userType()) << name;
            if (value.userType() == QMetaType::Double)
                EXPECT_EQ(bits(found), bits(value)) << name;
            else
                EXPECT_EQ(found, value) << name;
        }
    }
}

TEST_F(CentreTest, RefusedValuesChangeNothing)
{
    const QVariant object = QVariant::fromValue<QObject*>(nullptr);
    ASSERT_TRUE(kcc::setValue(Key, 1, {}));
    for (const QVariant& value : { QVariant(1.5F), QVariant(QVariantList { object }),
             QVariant(QVariantMap { { Key, object } }), nested(1001) }) {
        EXPECT_FALSE(kcc::setValue(Key, value, {})) << value.typeName();
        EXPECT_FALSE(kcc::flushWrite(Key, value, note, {}, {})) << value.typeName();
        EXPECT_EQ(kcc::flushRead(Key, Fallback, {}), QVariant(1)) << value.typeName();
    }
    expectEnds({ false, false, false, false });
}

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
    for (waited.start(); onDisk(Key) != QVariant(1) && waited.elapsed() < 60'000;)
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
    expectEnds({ true, true, false });
    EXPECT_TRUE(ended[0].key == Key && ended[0].value == QVariant(5LL) && !ended[1].value.isValid());
    EXPECT_EQ(ended[0].context, context);
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
    expectEnds({ true });
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
    expectEnds({ false, false });
    EXPECT_EQ(onDisk(Key), QVariant(1));
}

class DamagedFiles : public CentreTest, public testing::WithParamInterface<Row> { };

TEST_P(DamagedFiles, AreKeptAsideAndTheValuesLiveOn)
{
    QByteArray damaged = GetParam().given.toUtf8();
    damaged.replace("[...", QByteArray(100000, '[')).replace("...]", QByteArray(100000, ']'));
    ASSERT_TRUE(kcc::flushWrite(Key, 1, nullptr, {}, {}));
    for (const char* aside : { "config-centre.json.damaged", "config-centre.json.damaged.2" }) {
        write("config-centre.json", damaged);
        EXPECT_EQ(kcc::flushRead(Key, Fallback, {}), QVariant(1));
        EXPECT_EQ(read(aside), damaged);
        EXPECT_EQ(onDisk(Key), QVariant(1));
    }
    write("config-centre.json", damaged);
    EXPECT_TRUE(kcc::flushWrite(QStringLiteral("other"), 2, nullptr, {}, {}));
    EXPECT_EQ(onDisk(Key), QVariant(1));
}

INSTANTIATE_TEST_SUITE_P(Kinds, DamagedFiles, testing::ValuesIn(rows(R"(
Truncated: {"format": 1, "shared": {"key" ->
Empty: ->
WrongShape: {"format": 1, "shared": [], "users": {}} ->
OtherFormat: {"format": 2, "shared": {}, "users": {}} ->
UnknownTag: {"format": 1, "shared": {"key": {"$date": 1}}, "users": {}} ->
FiniteBits: {"format": 1, "shared": {"key": {"$double": "3ff0000000000000"}}, "users": {}} ->
NoBits: {"format": 1, "shared": {"key": {"$double": 1}}, "users": {}} ->
IntegerOutOfRange: {"format": 1, "shared": {"key": 4294967296}, "users": {}} ->
BottomlessNesting: {"format": 1, "users": {}, "shared": {"key": [......]}} ->
)")),
    rowName);

TEST_F(CentreTest, ARefusingDiskFailsFlushesAndKeepsWhatWaits)
{
    ASSERT_TRUE(kcc::setValue(Key, 1, {}));
    ASSERT_TRUE(QDir().mkdir(path("config-centre.json")));
    EXPECT_FALSE(kcc::flushWrite(QStringLiteral("other"), 2, note, {}, {}));
    EXPECT_EQ(kcc::value(QStringLiteral("other"), Fallback, {}), Fallback);
    EXPECT_FALSE(kcc::shutdown());
    ASSERT_TRUE(ended.size() == 1 && !ended[0].success);
    ASSERT_TRUE(QDir().rmdir(path("config-centre.json")));
    EXPECT_TRUE(kcc::shutdown());
    EXPECT_EQ(onDisk(Key), QVariant(1));
}

TEST_F(CentreTest, NoWriterWaitsInVainForTheOthers)
{
    constexpr int Updates = 60;
    const auto write = [&](int process, int update) {
        CentreValues values;
        CentreChanges changes;
        changes.insert({ {}, QStringLiteral("%1/%2").arg(process).arg(update) }, QVariant(update));
        return CentreFile(path("config-centre.json")).update(values, changes);
    };
    // Others write all the time until this process has done its updates.
    pid_t others[3];
    for (pid_t& other : others) {
        other = fork();
        for (int update = 0; other == 0; ++update)
            write(getpid(), update % Updates);
    }
    int kept = 0;
    for (int update = 0; update < Updates; ++update)
        kept += write(0, update);
    for (const pid_t other : others) {
        kill(other, SIGKILL);
        waitpid(other, nullptr, 0);
    }
    EXPECT_EQ(kept, Updates);
    CentreValues values;
    EXPECT_TRUE(CentreFile(path("config-centre.json")).read(values));
    for (int update = 0; update < Updates; ++update)
        EXPECT_TRUE(values.contains({ {}, QStringLiteral("0/%1").arg(update) })) << update;
}

} // namespace
