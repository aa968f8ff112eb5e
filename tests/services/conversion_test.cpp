#include "kbase/system.h"
#include "kbase/variant.h"
#include "safec/safec.h"
#include "tests/services/fixture.h"

#include <cerrno>
#include <cmath>
#include <limits>
#include <optional>

namespace {

MVARIANT of(MVarType type)
{
    MVARIANT made {};
    made.vt = type;
    return made;
}
MVARIANT int32(std::int32_t value)
{
    MVARIANT made = of(MV_INT32);
    made.lVal = value;
    return made;
}
MVARIANT int64(std::int64_t value)
{
    MVARIANT made = of(MV_INT64);
    made.llVal = value;
    return made;
}
MVARIANT real(double value)
{
    MVARIANT made = of(MV_DOUBLE);
    made.dblVal = value;
    return made;
}
MVARIANT truth(bool value)
{
    MVARIANT made = of(MV_BOOL);
    made.boolVal = value ? -1 : 0;
    return made;
}
MVARIANT wide(const char16_t* text)
{
    MVARIANT made = of(MV_LPWSTR);
    made.pwszVal = text;
    return made;
}
MVARIANT narrow(const char* text)
{
    MVARIANT made = of(MV_LPSTR);
    made.pszVal = text;
    return made;
}

/// A result in words: its type and value, or "fails".
std::string describe(const MVARIANT& value)
{
    switch (value.vt) {
    case MV_INT32:
        return "int32 " + std::to_string(value.lVal);
    case MV_INT64:
        return "int64 " + std::to_string(value.llVal);
    case MV_DOUBLE:
        return "double " + QString::number(value.dblVal, 'g', 17).toStdString();
    case MV_BOOL:
        return value.boolVal == -1 ? "true" : value.boolVal ? "odd bool" : "false";
    case MV_STRING:
        return "\"" + QString::fromUtf16(value.bstrVal, int(_XSysStringLen(value.bstrVal))).toStdString()
            + "\"";
    default:
        return "type " + std::to_string(value.vt);
    }
}

struct Conversion {
    const char* name;
    MVARIANT source;
    MVarType type;
    const char* expected;
};

class Conversions : public testing::TestWithParam<Conversion> { };

constexpr double TwoTo63 = 9223372036854775808.0;
constexpr auto MaxInt64 = std::numeric_limits<std::int64_t>::max();

TEST_P(Conversions, ExactOrFailing)
{
    MVARIANT target = int32(7);
    const KResult result = _MVariantChangeType(&target, &GetParam().source, 0, GetParam().type);
    EXPECT_EQ(result == KR_OK ? describe(target) : "fails", GetParam().expected);
    if (result == KR_OK)
        EXPECT_EQ(target.vt, GetParam().type);
    else
        EXPECT_EQ(target.vt, MV_EMPTY);
    if (target.vt == MV_STRING)
        _XSysFreeString(target.bstrVal);
}

INSTANTIATE_TEST_SUITE_P(ToIntegers, Conversions,
    testing::Values(Conversion { "Int32Widens", int32(-5), MV_INT64, "int64 -5" },
        Conversion { "Int64Fits", int64(-2147483648LL), MV_INT32, "int32 -2147483648" },
        Conversion { "Int64OutOfRange", int64(2147483648LL), MV_INT32, "fails" },
        Conversion { "IntegralDouble", real(12), MV_INT32, "int32 12" },
        Conversion { "FractionalDouble", real(1.5), MV_INT32, "fails" },
        Conversion { "DoubleOutOfInt32", real(3e9), MV_INT32, "fails" },
        Conversion { "DoubleAtInt64End", real(TwoTo63), MV_INT64, "fails" },
        Conversion { "LowestInt64", real(-TwoTo63), MV_INT64, "int64 -9223372036854775808" },
        Conversion { "NotANumber", real(NAN), MV_INT64, "fails" },
        Conversion { "TrueIsOne", truth(true), MV_INT32, "int32 1" },
        Conversion { "Text", wide(u"12"), MV_INT32, "int32 12" },
        Conversion {
            "TextBeyondDoubles", wide(u"9223372036854775807"), MV_INT64, "int64 9223372036854775807" },
        Conversion { "TextTooLarge", wide(u"9223372036854775808"), MV_INT64, "fails" },
        Conversion { "TextWithZeroFraction", narrow("12.00"), MV_INT32, "int32 12" },
        Conversion { "TextWithFraction", narrow("12.01"), MV_INT32, "fails" },
        Conversion { "TextWithRest", wide(u"12x"), MV_INT32, "fails" },
        Conversion { "NoNumber", wide(u"abc"), MV_INT32, "fails" },
        Conversion { "EmptyText", wide(u""), MV_INT32, "fails" },
        Conversion { "WideDigitsAreNoAscii", wide(u"１２"), MV_INT32, "fails" }),
    caseName<Conversion>);

INSTANTIATE_TEST_SUITE_P(ToDoublesAndBools, Conversions,
    testing::Values(Conversion { "Int32", int32(3), MV_DOUBLE, "double 3" },
        Conversion { "ExactInt64", int64(1LL << 53), MV_DOUBLE, "double 9007199254740992" },
        Conversion { "InexactInt64", int64((1LL << 53) + 1), MV_DOUBLE, "fails" },
        Conversion { "LargestInt64", int64(MaxInt64), MV_DOUBLE, "fails" },
        Conversion { "Text", narrow("-2.5e3"), MV_DOUBLE, "double -2500" },
        Conversion { "InfinityText", narrow("inf"), MV_DOUBLE, "fails" },
        Conversion { "TooLargeText", narrow("1e999"), MV_DOUBLE, "fails" },
        Conversion { "TrueText", wide(u"true"), MV_BOOL, "true" },
        Conversion { "FalseText", narrow("false"), MV_BOOL, "false" },
        Conversion { "NumberText", wide(u"0.5"), MV_BOOL, "true" },
        Conversion { "ZeroText", wide(u"0"), MV_BOOL, "false" },
        Conversion { "OtherText", wide(u"yes"), MV_BOOL, "fails" },
        Conversion { "Zero", int32(0), MV_BOOL, "false" },
        Conversion { "InexactInt64IsTrue", int64(MaxInt64), MV_BOOL, "true" },
        Conversion { "NotANumber", real(NAN), MV_BOOL, "fails" }),
    caseName<Conversion>);

INSTANTIATE_TEST_SUITE_P(ToText, Conversions,
    testing::Values(Conversion { "Int64", int64(-MaxInt64 - 1), MV_STRING, "\"-9223372036854775808\"" },
        Conversion { "Tenth", real(0.1), MV_STRING, "\"0.1\"" },
        Conversion { "IntegralDoubleIsWrittenOut", real(100000), MV_STRING, "\"100000\"" },
        Conversion {
            "Largest", real(std::numeric_limits<double>::max()), MV_STRING, "\"1.7976931348623157e+308\"" },
        Conversion { "Infinity", real(INFINITY), MV_STRING, "fails" },
        Conversion { "True", truth(true), MV_STRING, "\"true\"" },
        Conversion { "Utf8", narrow("h\xc3\xa9"), MV_STRING, "\"h\xc3\xa9\"" },
        Conversion { "NullString", of(MV_STRING), MV_STRING, "\"\"" }, //
        Conversion { "Empty", of(MV_EMPTY), MV_STRING, "fails" },
        Conversion { "Null", of(MV_NULL), MV_BOOL, "fails" },
        Conversion { "Error", of(MV_ERROR), MV_STRING, "fails" },
        Conversion { "Object", of(MV_UNKNOWN), MV_STRING, "fails" },
        Conversion { "TextToObject", wide(u"a"), MV_DISPATCH, "fails" },
        Conversion { "NotOwnedTarget", wide(u"a"), MV_LPWSTR, "fails" }),
    caseName<Conversion>);

TEST(Variants, ReferencesAreFollowedAndRingsFail)
{
    MVARIANT value = wide(u"41");
    MVARIANT inner = of(MV_BYREF_VARIANT);
    inner.pvarVal = &value;
    MVARIANT outer = inner;
    outer.pvarVal = &inner;
    MVARIANT target {};
    ASSERT_EQ(_MVariantChangeType(&target, &outer, 0, MV_INT32), KR_OK);
    EXPECT_EQ(target.lVal, 41);

    inner.pvarVal = &outer;
    EXPECT_NE(_MVariantChangeType(&target, &outer, 0, MV_INT32), KR_OK);
    EXPECT_EQ(target.vt, MV_EMPTY);
}

class CountedObject final : public IUnknown {
public:
    KResult QueryInterface(const KIID&, void**) override { return KR_NO_INTERFACE; }
    std::uint32_t AddRef() override { return ++count; }
    std::uint32_t Release() override { return --count; }
    std::uint32_t count = 1;
};

TEST(Variants, ConvertedInterfaceIsOwned)
{
    CountedObject object;
    MVARIANT source = of(MV_DISPATCH);
    source.punkVal = &object;
    MVARIANT target {};
    ASSERT_EQ(_MVariantChangeType(&target, &source, 0, MV_UNKNOWN), KR_OK);
    EXPECT_EQ(target.punkVal, &object);
    EXPECT_EQ(object.count, 2u);
}

TEST(Strings, KeepZerosAndEveryUnit)
{
    const char16_t units[] = { u'a', 0, 0xd800, 0xfeff };
    MVARIANT source = of(MV_STRING);
    source.bstrVal = _XSysAllocStringLen(units, 4);
    MVARIANT copy {};
    ASSERT_EQ(_MVariantChangeType(&copy, &source, 0, MV_STRING), KR_OK);
    EXPECT_NE(copy.bstrVal, source.bstrVal);
    ASSERT_EQ(_XSysStringLen(copy.bstrVal), 4u);
    EXPECT_EQ(std::u16string_view(copy.bstrVal, 5), std::u16string_view(u"a\0\xd800\xfeff\0", 5));
    _XSysFreeString(copy.bstrVal);
    _XSysFreeString(source.bstrVal);
    EXPECT_EQ(_XSysAllocStringLen(nullptr, 0xffffffff), nullptr);
}

TEST(System, UserNameNeedsRoomForItsTerminator)
{
    const std::uint32_t length = _XGetOSUserName(nullptr, 0);
    ASSERT_GT(length, 0u);
    std::u16string buffer(length + 1, u'#');
    EXPECT_EQ(_XGetOSUserName(buffer.data(), length), length);
    EXPECT_EQ(buffer, std::u16string(length + 1, u'#'));
    EXPECT_EQ(_XGetOSUserName(buffer.data(), length + 1), length);
    EXPECT_EQ(buffer.find(u'\0'), length);
}

TEST(BoundedCopies, RefuseWhatDoesNotFit)
{
    char target[4] = { 'x', 'x', 'x', 'x' };
    EXPECT_EQ(vmemcpy_s(target, 3, "abc", 3), 0);
    EXPECT_EQ(std::string(target, 4), "abcx");
    EXPECT_EQ(vmemcpy_s(target, 3, "abcd", 4), ERANGE);
    EXPECT_EQ(std::string(target, 4), std::string("\0\0\0x", 4));
    EXPECT_EQ(vmemcpy_s(nullptr, 3, "abc", 3), EINVAL);

    char16_t text[3] = { u'x', u'x', u'x' };
    EXPECT_EQ(u_strcpy_s(text, 3, u"ab"), 0);
    EXPECT_EQ(std::u16string(text), u"ab");
    EXPECT_EQ(u_strcpy_s(text, 3, u"abc"), ERANGE);
    EXPECT_EQ(text[0], u'\0');
    EXPECT_EQ(c_strnlen_s("abcdef", 4), 4u);
    EXPECT_EQ(c_strnlen_s(nullptr, 4), 0u);
}

} // namespace
