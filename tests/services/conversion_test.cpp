#include "kbase/system.h"
#include "kbase/variant.h"
#include "safec/safec.h"

#include <QRegularExpression>
#include <QString>
#include <cerrno>
#include <gtest/gtest.h>

namespace {

const std::pair<const char*, std::uint16_t> Types[] = { { "int32", MV_INT32 }, { "int64", MV_INT64 },
    { "double", MV_DOUBLE }, { "bool", MV_BOOL }, { "wide", MV_LPWSTR }, { "narrow", MV_LPSTR },
    { "string", MV_STRING }, { "null", MV_NULL }, { "error", MV_ERROR }, { "object", MV_UNKNOWN },
    { "dispatch", MV_DISPATCH }, { "fails", MV_EMPTY } };

/// A type and a value in words, "int64 -5"; nothing for a word that is no type.
struct Source {
    explicit Source(const QString& words)
        : bytes(words.section(QLatin1Char(' '), 1).toUtf8())
        , units(words.section(QLatin1Char(' '), 1).toStdU16String())
    {
        for (const auto& [name, type] : Types)
            variant.vt = words.section(QLatin1Char(' '), 0, 0) == QLatin1String(name) ? type : variant.vt;
        if (variant.vt == MV_INT32)
            variant.lVal = bytes.toInt();
        else if (variant.vt == MV_INT64)
            variant.llVal = bytes.toLongLong();
        else if (variant.vt == MV_DOUBLE)
            variant.dblVal = bytes.toDouble();
        else if (variant.vt == MV_BOOL)
            variant.boolVal = bytes == "true" ? -1 : 0;
        else if (variant.vt == MV_LPWSTR)
            variant.pwszVal = units.c_str();
        else if (variant.vt == MV_LPSTR)
            variant.pszVal = bytes.constData();
    }
    QByteArray bytes;
    std::u16string units;
    MVARIANT variant {};
};

/// What it has become, likewise.
QString wordsOf(const MVARIANT& value)
{
    QString words;
    for (const auto& [name, type] : Types)
        words += QLatin1String(value.vt == type ? name : "");
    switch (value.vt) {
    case MV_INT32:
        return words + QStringLiteral(" %1").arg(value.lVal);
    case MV_INT64:
        return words + QStringLiteral(" %1").arg(value.llVal);
    case MV_DOUBLE:
        return words + QStringLiteral(" %1").arg(value.dblVal, 0, 'g', 17);
    case MV_BOOL:
        return words
            + (value.boolVal == -1 ? QStringLiteral(" true") : QStringLiteral(" %1").arg(value.boolVal));
    case MV_STRING:
        return words + QLatin1Char(' ')
            + QString::fromUtf16(value.bstrVal, static_cast<int>(_XSysStringLen(value.bstrVal)));
    default:
        return words;
    }
}

TEST(Variants, ConvertExactlyOrFail)
{
    const char* conversions = R"(
int32 -5 -> int64 -5; int64 -2147483648 -> int32 -2147483648; int64 2147483648 -> int32 fails
double 12 -> int32 12; double 1.5 -> int32 fails; double 3e9 -> int32 fails; bool true -> int32 1
double 9223372036854775808 -> int64 fails; double -9223372036854775808 -> int64 -9223372036854775808
double nan -> int64 fails; wide 12 -> int32 12; narrow 12.00 -> int32 12; narrow 12.01 -> int32 fails
wide 9223372036854775807 -> int64 9223372036854775807; wide 9223372036854775808 -> int64 fails
wide 12x -> int32 fails; wide abc -> int32 fails; wide -> int32 fails; wide １２ -> int32 fails
int32 3 -> double 3; int64 9007199254740992 -> double 9007199254740992; int64 9007199254740993 -> double fails
int64 9223372036854775807 -> double fails; narrow -2.5e3 -> double -2500; narrow inf -> double fails
narrow 1e999 -> double fails; wide true -> bool true; narrow false -> bool 0; wide 0.5 -> bool true
wide 0 -> bool 0; wide yes -> bool fails; int32 0 -> bool 0; int64 9223372036854775807 -> bool true
double nan -> bool fails; int64 -9223372036854775808 -> string -9223372036854775808; double 0.1 -> string 0.1
double 100000 -> string 100000; double 1.7976931348623157e+308 -> string 1.7976931348623157e+308
double 1e-6 -> string 0.000001; double 1e-7 -> string 1e-7; double -1.5e-9 -> string -1.5e-9; double 0.00012 -> string 0.00012
double 1e21 -> string 1e+21; double 1.2345678901234567e20 -> string 123456789012345670000; double -0.0 -> string 0
double -12.5 -> string -12.5; double 123456 -> string 123456
double inf -> string fails; bool true -> string true; narrow hé -> string hé; string -> string
null -> bool fails; error -> string fails; object -> string fails; wide a -> dispatch fails; wide a -> wide fails)";
    for (const QString& conversion :
        QString::fromUtf8(conversions)
            .split(QRegularExpression(QStringLiteral("[;\n]")), Qt::SkipEmptyParts)) {
        const Source given(conversion.section(QLatin1String("->"), 0, 0).trimmed());
        const QString expected = conversion.section(QLatin1String("->"), 1).trimmed();
        MVARIANT target = given.variant;
        const KResult result = _MVariantChangeType(&target, &given.variant, 0, Source(expected).variant.vt);
        const bool fails = expected.endsWith(QLatin1String(" fails"));
        EXPECT_EQ(result == KR_OK, !fails) << conversion.toStdString();
        EXPECT_EQ(wordsOf(target).trimmed().toStdString(), fails ? "fails" : expected.toStdString())
            << conversion.toStdString();
        if (target.vt == MV_STRING)
            _XSysFreeString(target.bstrVal);
    }
}

TEST(Variants, ReferencesAreFollowedAndRingsFail)
{
    MVARIANT value = Source(QStringLiteral("int64 41")).variant;
    MVARIANT inner {};
    inner.vt = MV_BYREF_VARIANT;
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

TEST(Variants, OwnTheInterfaceOrTheTextThatTheyAreGiven)
{
    CountedObject object;
    MVARIANT source {};
    source.vt = MV_DISPATCH;
    source.punkVal = &object;
    MVARIANT target {};
    ASSERT_EQ(_MVariantChangeType(&target, &source, 0, MV_UNKNOWN), KR_OK);
    EXPECT_EQ(target.punkVal, &object);
    EXPECT_EQ(object.count, 2u);

    const char16_t units[] = { u'a', 0, 0xd800, 0xfeff };
    source.vt = MV_STRING;
    source.bstrVal = _XSysAllocStringLen(units, 4);
    ASSERT_EQ(_MVariantChangeType(&target, &source, 0, MV_STRING), KR_OK);
    EXPECT_NE(target.bstrVal, source.bstrVal);
    ASSERT_EQ(_XSysStringLen(target.bstrVal), 4u);
    EXPECT_EQ(std::u16string_view(target.bstrVal, 5), std::u16string_view(u"a\0\xd800\xfeff\0", 5));
    _XSysFreeString(target.bstrVal);
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
