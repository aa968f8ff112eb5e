#include "host/vexlite/scriptvalues.h"

#include "tests/vexlite/fakes.h"
#include "vexlite/jsapiutil.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QRect>
#include <QUrl>
#include <QVariantHash>
#include <cmath>
#include <limits>

using namespace vexlite;
using namespace vexlite::test;

namespace {

constexpr qlonglong largest = std::numeric_limits<qlonglong>::max();

struct FormCase {
    const char* name;
    QVariant given;
    MVarType type;
    QVariant back; ///< what the script form reads as
};

class Forms : public testing::TestWithParam<FormCase> { };

TEST_P(Forms, ThereAndBack)
{
    KJSVariant script;
    KJSApiUtil::ConvertQVariantToJSVariant(GetParam().given, script);
    EXPECT_EQ(script.type(), GetParam().type);
    QVariant back;
    ASSERT_TRUE(KJSApiUtil::ConvertJSVariantToQVariant(script, back));
    EXPECT_EQ(back, GetParam().back);
    EXPECT_EQ(back.userType(), GetParam().back.userType());
}

FormCase same(const char* name, const QVariant& value, MVarType type)
{
    return { name, value, type, value };
}

const QChar Odd[] = { QLatin1Char('a'), QChar(0), QChar(0xD800), QLatin1Char('b') };
const QVariantList Numbers { 1, QStringLiteral("x"), QVariantList { true } };
const QVariantMap Object { { QStringLiteral("a"), Numbers }, { QString(), 1.5 } };

INSTANTIATE_TEST_SUITE_P(Values, Forms,
    testing::Values(same("Undefined", {}, MV_EMPTY), same("Null", QVariant::fromValue(nullptr), MV_NULL),
        same("False", false, MV_BOOL), same("Int", -7, MV_INT32),
        FormCase { "UnsignedInt", 4'000'000'000u, MV_INT64, qlonglong { 4'000'000'000 } },
        same("LargestInt64", largest, MV_INT64),
        same("SmallestInt64", std::numeric_limits<qlonglong>::min(), MV_INT64),
        FormCase {
            "LargestUnsigned", std::numeric_limits<qulonglong>::max(), MV_DOUBLE, std::ldexp(1.0, 64) },
        FormCase { "UnsignedThatFits", qulonglong(largest), MV_INT64, largest },
        same("Double", 0.1, MV_DOUBLE), FormCase { "Float", 0.5f, MV_DOUBLE, 0.5 },
        same("TextWithNulAndLoneSurrogate", QString(Odd, 4), MV_STRING),
        same("EmptyText", QStringLiteral(""), MV_STRING),
        FormCase { "Bytes", QByteArray("\xc3\xa4"), MV_STRING, QString(QChar(0xe4)) },
        FormCase { "Address", QUrl(QStringLiteral("x:y")), MV_STRING, QStringLiteral("x:y") },
        FormCase { "NoScriptForm", QRect(1, 2, 3, 4), MV_EMPTY, {} },
        FormCase {
            "Texts", QStringList { QStringLiteral("x") }, MV_ARRAY, QVariantList { QStringLiteral("x") } },
        same("List", Numbers, MV_ARRAY), same("Map", Object, MV_UNKNOWN),
        FormCase { "Hash", QVariantHash { { QStringLiteral("k"), 1 } }, MV_UNKNOWN,
            QVariantMap { { QStringLiteral("k"), 1 } } },
        FormCase { "Json", QJsonDocument::fromJson("{\"k\":[null,\"t\"]}").object(), MV_UNKNOWN,
            QVariantMap { { QStringLiteral("k"),
                QVariantList { QVariant::fromValue(nullptr), QStringLiteral("t") } } } }),
    caseName<FormCase>);

struct DepthCase {
    const char* name;
    int depth;
    bool passes;
};

class Depth : public testing::TestWithParam<DepthCase> { };

TEST_P(Depth, IsLimitedBothWays)
{
    QVariant lists = 1;
    QVariant maps = 1;
    KJSVariant script = KJSVariant::fromInt32(1);
    for (int level = 0; level < GetParam().depth; ++level) {
        lists = QVariantList { lists };
        maps = QVariantMap { { QStringLiteral("k"), maps } };
        Ref<IJSArray> array = makeScriptArray();
        array->Append(script);
        script = KJSVariant::fromUnknown(array.release(), MV_ARRAY);
    }
    for (const QVariant& nested : { lists, maps }) {
        KJSVariant out;
        KJSApiUtil::ConvertQVariantToJSVariant(nested, out);
        EXPECT_EQ(!out.isEmpty(), GetParam().passes);
    }
    QVariant back;
    EXPECT_EQ(KJSApiUtil::ConvertJSVariantToQVariant(script, back), GetParam().passes);
    EXPECT_EQ(back.isValid(), GetParam().passes);
}

INSTANTIATE_TEST_SUITE_P(Nesting, Depth,
    testing::Values(
        DepthCase { "Deepest", maximumDepth, true }, DepthCase { "TooDeep", maximumDepth + 1, false }),
    caseName<DepthCase>);

TEST(Values, WhatHasNoQtFormIsRefusedAsAWhole)
{
    Ref<IJSONValue> object = makeScriptObject();
    object->SetInt32(QStringLiteral("a"), 1);
    object->SetValue(QStringLiteral("f"), function({ 1, 1 }, 1, [](const JSApiArguments&) { return KR_OK; }));
    QVariant out = 5;
    EXPECT_FALSE(KJSApiUtil::ConvertJSVariantToQVariant(KJSVariant::fromUnknown(object.release()), out));
    EXPECT_FALSE(out.isValid());
}

TEST(Values, SelfContainingObjectIsRefused)
{
    Ref<IJSONValue> object = makeScriptObject();
    object->SetValue(QStringLiteral("a"), KJSVariant::fromUnknown(Ref(object).release()));
    object->SetValue(QStringLiteral("b"), KJSVariant::fromUnknown(Ref(object).release()));
    QVariant out;
    EXPECT_FALSE(KJSApiUtil::ConvertJSVariantToQVariant(KJSVariant::fromUnknown(Ref(object).release()), out));
    object->Clear();
}

TEST(ScriptObject, KeepsKeyOrderWhileItChanges)
{
    Ref<IJSONValue> object = makeScriptObject();
    const auto keys = [&] {
        QString all;
        const QString* key = nullptr;
        const KJSVariant* value = nullptr;
        for (int position = 0; object->At(position, &key, &value); ++position)
            all += *key + QString::number(value->raw().lVal);
        return all;
    };
    for (const char* key : { "b", "B", "a" })
        object->SetInt32(QLatin1String(key), 1);
    EXPECT_EQ(keys(), QStringLiteral("B1a1b1"));
    object->SetInt32(QStringLiteral("a"), 2);
    object->SetInt32(QStringLiteral("aa"), 3);
    EXPECT_EQ(keys(), QStringLiteral("B1a2aa3b1"));
    EXPECT_TRUE(object->Remove(QStringLiteral("a")));
    EXPECT_FALSE(object->Remove(QStringLiteral("a")));
    EXPECT_EQ(keys(), QStringLiteral("B1aa3b1"));

    KJSVariant names[2];
    KJSVariant values[2];
    EXPECT_EQ(object->CopyOut(0, names, values), 0);
    EXPECT_EQ(object->CopyOut(2, names, values), 2);
    EXPECT_EQ(textOf(names[1]), QStringLiteral("aa"));
    EXPECT_TRUE(values[1].raw().lVal == 3);
    KJSVariant absent = KJSVariant::fromInt32(1);
    EXPECT_EQ(object->Get(QStringLiteral("zz"), absent), KR_NOT_AVAILABLE);
    EXPECT_TRUE(absent.isEmpty());
}

TEST(ScriptObject, OrdersThePairsItIsMadeOf)
{
    std::vector<ScriptPair> pairs;
    for (const char* key : { "b", "", "a", "B" })
        pairs.emplace_back(QString::fromLatin1(key), KJSVariant::fromInt32(*key));
    Ref<IJSONValue> object = makeScriptObject(std::move(pairs));
    QStringList keys;
    object->Keys(keys);
    EXPECT_EQ(keys.join(QLatin1Char(',')), QStringLiteral(",B,a,b"));
    EXPECT_EQ(object->GetInt32(QStringLiteral("a"), 0), 'a');
    EXPECT_FALSE(object->Has(QStringLiteral("c")));
}

TEST(ScriptObject, TypedGettersConvertOrFallBack)
{
    Ref<IJSONValue> object = makeScriptObject();
    object->SetString(QStringLiteral("text"), QStringLiteral("12"));
    object->SetInt64(QStringLiteral("large"), largest);
    object->SetBoolean(QStringLiteral("flag"), true);
    EXPECT_EQ(object->GetInt32(QStringLiteral("text"), 0), 12);
    EXPECT_EQ(object->GetDouble(QStringLiteral("text"), 0), 12.0);
    EXPECT_EQ(object->GetInt64(QStringLiteral("large"), 0), largest);
    EXPECT_EQ(object->GetInt32(QStringLiteral("large"), -1), -1);
    EXPECT_EQ(object->GetString(QStringLiteral("flag"), {}), QStringLiteral("true"));
    EXPECT_TRUE(object->GetBoolean(QStringLiteral("absent"), true));
    EXPECT_FALSE(object->GetArray(QStringLiteral("text")));
}

} // namespace
