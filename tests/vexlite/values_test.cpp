#include "host/vexlite/scriptvalues.h"

#include "tests/support/page.h"

#include <QJsonObject>
#include <QRect>
#include <QUrl>
#include <cmath>
#include <limits>

using namespace vexlite;

namespace {

constexpr qlonglong Largest = std::numeric_limits<qlonglong>::max();
constexpr qlonglong Smallest = std::numeric_limits<qlonglong>::min();

TEST(Values, GoThereAndBack)
{
    const QChar odd[] = { u'a', QChar(0), QChar(0xD800), u'b' };
    const QVariantList numbers { 1, QStringLiteral("x"), QVariantList { true } };
    const QVariantMap object { { QStringLiteral("a"), numbers }, { QString(), 1.5 } };
    const QVariantMap one { { QStringLiteral("k"), 1 } };
    const struct {
        const char* name;
        QVariant given;
        MVarType type;
        QVariant back; // what the script form reads as; null: the same
    } rows[] = {
        { "undefined", {}, MV_EMPTY, {} },
        { "null", QVariant::fromValue(nullptr), MV_NULL, {} },
        { "boolean", false, MV_BOOL, {} },
        { "int", -7, MV_INT32, {} },
        { "unsigned", 4'000'000'000u, MV_INT64, qlonglong { 4'000'000'000 } },
        { "largest int64", Largest, MV_INT64, {} },
        { "smallest int64", Smallest, MV_INT64, {} },
        { "largest unsigned", std::numeric_limits<qulonglong>::max(), MV_DOUBLE, std::ldexp(1.0, 64) },
        { "unsigned that fits", qulonglong(Largest), MV_INT64, Largest },
        { "double", 0.1, MV_DOUBLE, {} },
        { "float", 0.5f, MV_DOUBLE, 0.5 },
        { "NUL and half a surrogate pair", QString(odd, 4), MV_STRING, {} },
        { "empty text", QStringLiteral(""), MV_STRING, {} },
        { "address", QUrl(QStringLiteral("x:y")), MV_STRING, QStringLiteral("x:y") },
        { "no script form", QRect(1, 2, 3, 4), MV_EMPTY, QVariant() },
        { "texts", QStringList { QStringLiteral("x") }, MV_ARRAY, QVariantList { QStringLiteral("x") } },
        { "list", numbers, MV_ARRAY, {} },
        { "map", object, MV_UNKNOWN, {} },
        { "hash", QVariantHash { { QStringLiteral("k"), 1 } }, MV_UNKNOWN, one },
        { "JSON", QJsonObject { { QStringLiteral("k"), QJsonArray { QJsonValue(), true } } }, MV_UNKNOWN,
            QVariantMap { { QStringLiteral("k"), QVariantList { QVariant::fromValue(nullptr), true } } } },
    };
    for (const auto& row : rows) {
        const KJSVariant script = support::value(row.given);
        EXPECT_EQ(script.type(), row.type) << row.name;
        const QVariant back = support::read(script);
        const QVariant expected = row.back.isValid() || row.type == MV_EMPTY ? row.back : row.given;
        EXPECT_EQ(back, expected) << row.name;
        EXPECT_EQ(back.userType(), expected.userType()) << row.name;
    }
}

TEST(Values, DepthIsLimitedBothWays)
{
    QVariant lists = 1;
    QVariant maps = 1;
    KJSVariant script = KJSVariant::fromInt32(1);
    for (int depth = 1; depth <= maximumDepth + 1; ++depth) {
        lists = QVariantList { lists };
        maps = QVariantMap { { QStringLiteral("k"), maps } };
        const Ref<IJSArray> array = makeScriptArray();
        array->Append(script);
        script = KJSVariant::fromUnknown(Ref(array).release(), MV_ARRAY);
        if (depth < maximumDepth)
            continue;
        const bool passes = depth == maximumDepth;
        EXPECT_EQ(!support::value(lists).isEmpty(), passes);
        EXPECT_EQ(!support::value(maps).isEmpty(), passes);
        QVariant back;
        EXPECT_EQ(KJSApiUtil::ConvertJSVariantToQVariant(script, back), passes);
        EXPECT_EQ(back.isValid(), passes);
    }
}

TEST(Values, WhatHasNoQtFormIsRefusedAsAWhole)
{
    const Ref<IJSONValue> object = makeScriptObject();
    const auto refused = [&] {
        QVariant out = 5;
        EXPECT_FALSE(
            KJSApiUtil::ConvertJSVariantToQVariant(KJSVariant::fromUnknown(Ref(object).release()), out));
        EXPECT_FALSE(out.isValid());
        object->Clear();
    };
    object->SetInt32(QStringLiteral("a"), 1);
    object->SetValue(
        QStringLiteral("f"), support::function({ 1, 1 }, 1, [](const JSApiArguments&) { return KR_OK; }));
    refused();
    object->SetValue(QStringLiteral("bytes"), support::value(QByteArray("x")));
    refused();
    for (const char* key : { "a", "b" }) // it contains itself
        object->SetValue(QLatin1String(key), KJSVariant::fromUnknown(Ref(object).release()));
    refused();
}

TEST(ScriptObject, KeepsKeyOrderWhileItChanges)
{
    const Ref<IJSONValue> object = makeScriptObject();
    const auto keys = [&] {
        QString all;
        const QString* key = nullptr;
        const KJSVariant* value = nullptr;
        for (int position = 0; object->At(position, &key, &value); ++position)
            all += *key + QString::number(value->raw().lVal);
        return all.toStdString();
    };
    for (const char* key : { "b", "B", "a" })
        object->SetInt32(QLatin1String(key), 1);
    EXPECT_EQ(keys(), "B1a1b1");
    object->SetInt32(QStringLiteral("a"), 2);
    object->SetInt32(QStringLiteral("aa"), 3);
    EXPECT_EQ(keys(), "B1a2aa3b1");
    EXPECT_TRUE(object->Remove(QStringLiteral("a")));
    EXPECT_FALSE(object->Remove(QStringLiteral("a")));
    EXPECT_EQ(keys(), "B1aa3b1");

    KJSVariant names[2];
    KJSVariant values[2];
    EXPECT_EQ(object->CopyOut(0, names, values), 0);
    EXPECT_EQ(object->CopyOut(2, names, values), 2);
    EXPECT_EQ(textOf(names[1]), QStringLiteral("aa"));
    EXPECT_EQ(values[1].raw().lVal, 3);
    KJSVariant absent = KJSVariant::fromInt32(1);
    EXPECT_EQ(object->Get(QStringLiteral("zz"), absent), KR_NOT_AVAILABLE);
    EXPECT_TRUE(absent.isEmpty());
}

TEST(ScriptObject, OrdersThePairsItIsMadeOf)
{
    std::vector<ScriptPair> pairs;
    for (const char* key : { "b", "", "a", "B" })
        pairs.emplace_back(QString::fromLatin1(key), KJSVariant::fromInt32(*key));
    QStringList keys;
    makeScriptObject(std::move(pairs))->Keys(keys);
    EXPECT_EQ(keys.join(u',').toStdString(), ",B,a,b");
}

} // namespace
