#include "tests/jsc/fixture.h"

#include <cmath>
#include <limits>

using namespace engine;
using namespace engine::test;
using namespace vexlite;

namespace {

// What native code sees, in words.
QString seen(const KJSVariant& value, int level = 0)
{
    const MVARIANT& raw = value.raw();
    switch (raw.vt) {
    case MV_EMPTY:
        return QStringLiteral("empty");
    case MV_NULL:
        return QStringLiteral("null");
    case MV_BOOL:
        return raw.boolVal == -1 ? QStringLiteral("true") : QStringLiteral("false");
    case MV_INT32:
        return QStringLiteral("int %1").arg(raw.lVal);
    case MV_INT64:
        return QStringLiteral("long %1").arg(raw.llVal);
    case MV_DOUBLE:
        return (std::signbit(raw.dblVal) ? QStringLiteral("double -%1") : QStringLiteral("double %1"))
            .arg(std::fabs(raw.dblVal));
    case MV_STRING: {
        QString text;
        for (const char16_t unit : value.text())
            text += unit >= 0x20 && unit < 0x7f ? QString(QChar(unit))
                                                : QStringLiteral("<%1>").arg(static_cast<int>(unit), 0, 16);
        return QStringLiteral("'%1'").arg(text);
    }
    default:
        break;
    }
    if (level > 4)
        return QStringLiteral("...");
    if (const IJSArray* array = arrayOf(value)) {
        QStringList items;
        for (std::int32_t i = 0; i < array->Count(); ++i)
            items += seen(*array->At(i), level + 1);
        return QStringLiteral("[%1]").arg(items.join(QStringLiteral(", ")));
    }
    if (const IJSONValue* object = objectOf(value)) {
        QStringList items;
        const QString* key = nullptr;
        const KJSVariant* item = nullptr;
        for (std::int32_t i = 0; object->At(i, &key, &item); ++i)
            items += *key + QStringLiteral(": ") + seen(*item, level + 1);
        return QStringLiteral("{%1}").arg(items.join(QStringLiteral(", ")));
    }
    void* found = nullptr;
    for (const auto& [iid, name] : { std::pair { IID_IJSFunction, "function" },
             std::pair { IID_IJSExtentionObject, "native object" } }) {
        if (raw.punkVal->QueryInterface(iid, &found) == KR_OK) {
            static_cast<IUnknown*>(found)->Release();
            return QString::fromLatin1(name);
        }
    }
    return QStringLiteral("type %1").arg(raw.vt);
}

struct ArgumentCase {
    const char* name;
    const char* script;
    const char* native;
};

class Arguments : public PageTest, public testing::WithParamInterface<ArgumentCase> { };

TEST_P(Arguments, ReachNativeCode)
{
    method(u"see", [](ProbeCall& call) {
        QStringList all;
        for (const KJSVariant& value : call.arguments)
            all += seen(value);
        call.result = makeText(all.join(QStringLiteral(" | ")));
        return KR_OK;
    });
    const QByteArray source =
        QByteArray("const see = (...all) => NovaExtension.Probe.see(...all); return see(") + GetParam().script
        + ")";
    EXPECT_EQ(run(source).text, QString::fromLatin1(GetParam().native));
}

INSTANTIATE_TEST_SUITE_P(Values, Arguments,
    testing::Values(ArgumentCase { "None", "", "" }, ArgumentCase { "Undefined", "undefined", "empty" },
        ArgumentCase { "Null", "null", "null" }, ArgumentCase { "Booleans", "true, false", "true | false" },
        ArgumentCase { "Int32Limits", "2147483647, -2147483648", "int 2147483647 | int -2147483648" },
        ArgumentCase { "BeyondInt32", "2147483648", "double 2.14748e+09" },
        ArgumentCase { "MinusZero", "-0, 0", "double -0 | int 0" },
        ArgumentCase { "Fraction", "1.5", "double 1.5" },
        ArgumentCase { "NotANumber", "NaN, Infinity", "double nan | double inf" },
        ArgumentCase { "BigIntLimits", "9223372036854775807n, -9223372036854775808n",
            "long 9223372036854775807 | long -9223372036854775808" },
        ArgumentCase { "EmptyText", "''", "''" },
        ArgumentCase { "AnyText", "'a\\0b\\ud800\\u20ac'", "'a<0>b<d800><20ac>'" },
        ArgumentCase { "Object", "{ b: 1, a: 'x', c: undefined }", "{a: 'x', b: int 1, c: empty}" },
        ArgumentCase { "NumericKeys", "{ 10: 1, 9: 2 }", "{10: int 1, 9: int 2}" },
        ArgumentCase { "OwnProtoKey", "JSON.parse('{\"__proto__\": 1}')", "{__proto__: int 1}" },
        ArgumentCase { "NoPrototype", "Object.assign(Object.create(null), { a: 1 })", "{a: int 1}" },
        ArgumentCase { "PageClass", "new (class extends (class { a = 1 }) { get b() { return 2 } c = 3 })",
            "{a: int 1, c: int 3}" },
        ArgumentCase { "SymbolAndHiddenKeysDropped",
            "Object.defineProperty({ [Symbol('s')]: 1, a: 2 }, 'hidden', { value: 3 })", "{a: int 2}" },
        ArgumentCase {
            "GetterRunsOnce", "(() => { let n = 0; return { get a() { return ++n } } })()", "{a: int 1}" },
        ArgumentCase { "Array", "[1, , 'x', [true]]", "[int 1, empty, 'x', [true]]" },
        ArgumentCase { "SameObjectTwice", "(() => { const o = { a: 1 }; return [o, o] })()",
            "[{a: int 1}, {a: int 1}]" },
        ArgumentCase {
            "Functions", "() => 0, class { }, [async () => 0]", "function | function | [function]" },
        ArgumentCase { "NativeObject", "NovaExtension.Probe", "native object" },
        ArgumentCase { "MoreThanFitOnTheStack", "1, 2, 3, 4, 5, 6, 7, 8, 9, 10",
            "int 1 | int 2 | int 3 | int 4 | int 5 | int 6 | int 7 | int 8 | int 9 | int 10" }),
    caseName<ArgumentCase>);

// Names are kept by the page from the second time on, all but long ones, and those of many objects displace
// each other.
TEST_F(PageTest, SameNamesAgainAndAgain)
{
    method(u"see", [](ProbeCall& call) {
        call.result = makeText(seen(call.arguments[0]));
        return KR_OK;
    });
    engine->collectGarbage();
    EXPECT_EQ(answer("const p = NovaExtension.Probe; let wrong = 0;"
                     "for (let round = 0; round < 20; ++round) for (let i = 0; i < 600; ++i) {"
                     "const key = 'k' + i, long = 'x'.repeat(200) + i;"
                     "const text = p.see({ [key]: round, same: i, [long]: 1 });"
                     "if (text !== `{${key}: int ${round}, same: int ${i}, ${long}: int 1}`) ++wrong;"
                     "} return wrong"),
        QStringLiteral("0"));
    engine->collectGarbage();
    EXPECT_EQ(answer("return NovaExtension.Probe.see({ k1: 1, other: 2, k599: 3 })"),
        QStringLiteral("\"{k1: int 1, k599: int 3, other: int 2}\""));
}

struct ResultCase {
    const char* name;
    std::function<KJSVariant()> native;
    const char* script; ///< an expression over `x`, the result
    const char* json;
};

class Results : public PageTest, public testing::WithParamInterface<ResultCase> { };

// Twice: the second object of a shape is made another way.
TEST_P(Results, ReachScript)
{
    method(u"get", [](ProbeCall& call) {
        call.result = GetParam().native();
        return KR_OK;
    });
    const QByteArray source = QByteArray("const get = () => { const x = NovaExtension.Probe.get(); return ")
        + GetParam().script + " }; get(); get(); return get()";
    EXPECT_EQ(answer(source), QString::fromUtf8(GetParam().json));
}

KJSVariant object(std::initializer_list<std::pair<const char*, KJSVariant>> pairs)
{
    Ref<IJSONValue> made = makeScriptObject();
    for (const auto& [key, value] : pairs)
        made->SetValue(QString::fromUtf8(key), value);
    return KJSVariant::fromUnknown(made.release());
}

KJSVariant numbers(int count)
{
    Ref<IJSArray> made = makeScriptArray();
    for (int i = 0; i < count; ++i)
        made->Append(KJSVariant::fromInt32(i));
    return KJSVariant::fromUnknown(made.release(), MV_ARRAY);
}

KJSVariant wide(int count)
{
    Ref<IJSONValue> made = makeScriptObject();
    for (int i = 0; i < count; ++i)
        made->SetInt32(QStringLiteral("k%1").arg(i), i);
    return KJSVariant::fromUnknown(made.release());
}

KJSVariant nested(int depth)
{
    KJSVariant value = KJSVariant::fromInt32(0);
    for (int i = 0; i < depth; ++i)
        value = object({ { i % 2 ? "a" : "b", value } });
    return value;
}

KJSVariant byReference()
{
    static KJSVariant target = KJSVariant::fromInt32(9);
    MVARIANT reference {};
    reference.vt = MV_BYREF_VARIANT;
    reference.pvarVal = const_cast<MVARIANT*>(&target.raw());
    return { reference, nullptr };
}

KJSVariant errorValue()
{
    MVARIANT error {};
    error.vt = MV_ERROR;
    error.scode = KR_NO_MEMORY;
    return { error, nullptr };
}

INSTANTIATE_TEST_SUITE_P(Values, Results,
    testing::Values(ResultCase { "Empty", [] { return KJSVariant(); }, "x === undefined", "true" },
        ResultCase { "Null", [] { return KJSVariant::null(); }, "x", "null" },
        ResultCase { "Boolean", [] { return KJSVariant::fromBool(true); }, "x", "true" },
        ResultCase { "Int32", [] { return KJSVariant::fromInt32(-5); }, "x", "-5" },
        ResultCase { "Double", [] { return KJSVariant::fromDouble(0.25); }, "x", "0.25" },
        ResultCase { "ExactInt64", [] { return KJSVariant::fromInt64(9007199254740991); }, "[typeof x, x]",
            "[\"number\",9007199254740991]" },
        ResultCase { "WideInt64",
            [] { return KJSVariant::fromInt64(std::numeric_limits<std::int64_t>::min()); }, "[typeof x, x]",
            "[\"bigint\",-9223372036854775808]" },
        ResultCase { "Text", [] { return KJSVariant::fromString(std::u16string_view(u"a\0\xd800z", 4)); },
            "[x.length, x.charCodeAt(1), x.charCodeAt(2)]", "[4,0,55296]" },
        ResultCase { "Object",
            [] {
                return object({ { "b", KJSVariant::fromInt32(1) }, { "a", text("x") } });
            },
            "x", "{\"a\":\"x\",\"b\":1}" },
        ResultCase { "ObjectIsPlain", [] { return object({}); },
            "Object.getPrototypeOf(x) === Object.prototype", "true" },
        ResultCase { "ProtoKeyIsOwn",
            [] {
                return object({ { "__proto__", object({}) } });
            },
            "[Object.keys(x), Object.getPrototypeOf(x) === Object.prototype]", "[[\"__proto__\"],true]" },
        ResultCase { "AwkwardKeys",
            [] {
                return object({ { "a\"]\n", text("1") }, { "7", text("2") } });
            },
            "x", "{\"7\":\"2\",\"a\\\"]\\n\":\"1\"}" },
        ResultCase { "WideObject", [] { return wide(100); }, "[Object.keys(x).length, x.k99]", "[100,99]" },
        ResultCase { "ShortArray", [] { return numbers(3); }, "[Array.isArray(x), x]", "[true,[0,1,2]]" },
        ResultCase { "LongArray", [] { return numbers(5000); }, "[x.length, x[4999]]", "[5000,4999]" },
        ResultCase { "DeepestNesting", [] { return nested(1000); }, "typeof x", "\"object\"" },
        ResultCase { "TooDeep", [] { return nested(1001); }, "x", "!the answer is nested too deep" },
        ResultCase { "ByReference", [] { return byReference(); }, "x", "9" },
        ResultCase { "ErrorValue", [] { return errorValue(); }, "x", "!the answer is the error 0x80000002" }),
    caseName<ResultCase>);

INSTANTIATE_TEST_SUITE_P(Envelopes, Results,
    testing::Values(
        ResultCase { "Data",
            [] {
                return object({ { "data", text("x") }, { "success", KJSVariant::fromBool(true) } });
            },
            "[x, Object.getPrototypeOf(x) === Object.prototype]",
            "[{\"data\":\"x\",\"success\":true},true]" },
        ResultCase { "NoData",
            [] {
                return object({ { "data", {} }, { "success", KJSVariant::fromBool(true) } });
            },
            "[Object.keys(x), x.data === undefined]", "[[\"data\",\"success\"],true]" },
        ResultCase { "ObjectAsData",
            [] {
                return object({ { "data", wide(20) }, { "success", KJSVariant::fromBool(true) } });
            },
            "[x.success, x.data.k19]", "[true,19]" },
        ResultCase { "EnvelopeAsData",
            [] {
                const KJSVariant inner =
                    object({ { "data", numbers(1) }, { "success", KJSVariant::fromBool(true) } });
                return object({ { "data", inner }, { "success", KJSVariant::fromBool(true) } });
            },
            "x", "{\"data\":{\"data\":[0],\"success\":true},\"success\":true}" },
        ResultCase { "WithMessage",
            [] {
                return object({ { "data", text("x") }, { "msg", text("m") },
                    { "success", KJSVariant::fromBool(true) } });
            },
            "x", "{\"data\":\"x\",\"msg\":\"m\",\"success\":true}" },
        ResultCase { "NoSuccess",
            [] {
                return object({ { "data", text("x") }, { "success", KJSVariant::fromBool(false) } });
            },
            "x", "{\"data\":\"x\",\"success\":false}" },
        ResultCase { "SuccessIsANumber",
            [] {
                return object({ { "data", text("x") }, { "success", KJSVariant::fromInt32(1) } });
            },
            "x", "{\"data\":\"x\",\"success\":1}" },
        ResultCase { "OtherKey",
            [] {
                return object({ { "date", text("x") }, { "success", KJSVariant::fromBool(true) } });
            },
            "x", "{\"date\":\"x\",\"success\":true}" },
        ResultCase { "OtherSuccess",
            [] {
                return object({ { "data", text("x") }, { "succeed", KJSVariant::fromBool(true) } });
            },
            "x", "{\"data\":\"x\",\"succeed\":true}" },
        ResultCase { "DataIsAnError",
            [] {
                return object({ { "data", errorValue() }, { "success", KJSVariant::fromBool(true) } });
            },
            "x", "!the answer is the error 0x80000002" },
        ResultCase { "DataIsTooDeep",
            [] {
                return object({ { "data", nested(1000) }, { "success", KJSVariant::fromBool(true) } });
            },
            "x", "!the answer is nested too deep" }),
    caseName<ResultCase>);

TEST_F(PageTest, FailureIsThrownAsAnErrorWithItsFields)
{
    method(u"fail", [](ProbeCall& call) {
        call.exception = makeFailure(7, QStringLiteral("no luck"));
        return KR_REJECTED;
    });
    EXPECT_EQ(answer("try { NovaExtension.Probe.fail() } catch (e) {"
                     "return [e instanceof Error, e.message, e.success, e.code, e.msg] }"),
        QStringLiteral("[true,\"no luck\",false,7,\"no luck\"]"));
    const Outcome outcome = run("NovaExtension.Probe.fail()");
    EXPECT_TRUE(
        !outcome.ok && outcome.hasCode && outcome.code == 7 && outcome.text == QStringLiteral("no luck"));
}

TEST_F(PageTest, FunctionComesBackAsItself)
{
    method(u"echo", [](ProbeCall& call) {
        call.result = call.arguments[0];
        return KR_OK;
    });
    EXPECT_EQ(
        answer(
            "const f = () => 1; const p = NovaExtension.Probe; return [p.echo(f) === f, p.echo([f])[0] === f,"
            "p.echo(p) === p]"),
        QStringLiteral("[true,true,true]"));
}

TEST_F(PageTest, SubObjectHasOneWrapperWhileItIsHeld)
{
    auto child = Ref<IJSExtentionObject>::adopt(new Probe(2, { { u"who", 0, [](ProbeCall& call) {
                                                                    call.result = text("child");
                                                                    return KR_OK;
                                                                } } }));
    property(u"Child", [child](ProbeCall& call) {
        call.result = KJSVariant::fromUnknown(new SubObject(child));
        return KR_OK;
    });
    method(u"fresh", [](ProbeCall& call) {
        call.result = KJSVariant::fromUnknown(
            new SubObject(Ref<IJSExtentionObject>::adopt(new Probe(2, { { u"who", 0, {} } }))));
        return KR_OK;
    });
    EXPECT_EQ(answer("const p = NovaExtension.Probe, c = p.Child; return [c === p.Child, c.who(), String(c),"
                     "Object.getPrototypeOf(c) === Object.getPrototypeOf(p.fresh())]"),
        QStringLiteral("[true,\"child\",\"[object NovaExtension.Probe.Child]\",true]"));
    EXPECT_EQ(
        answer("for (let i = 0; i < 1000; ++i) NovaExtension.Probe.fresh()"), QStringLiteral("undefined"));
    engine->collectGarbage();
    EXPECT_LT(core.liveCounts().objects, 20) << "collected wrappers still hold their objects";
    members.clear();
}

struct MisuseCase {
    const char* name;
    const char* script;
    const char* text;
};

class Misuse : public PageTest, public testing::WithParamInterface<MisuseCase> { };

TEST_P(Misuse, IsRefused)
{
    method(u"get", [](ProbeCall&) { return KR_OK; });
    property(u"Part", [](ProbeCall& call) {
        call.result = KJSVariant::fromUnknown(
            new SubObject(Ref<IJSExtentionObject>::adopt(new Probe(2, { { u"other", 0, {} } }))));
        return KR_OK;
    });
    EXPECT_EQ(answer(GetParam().script), QString::fromLatin1(GetParam().text));
}

INSTANTIATE_TEST_SUITE_P(Calls, Misuse,
    testing::Values(
        MisuseCase { "NoThis", "const f = NovaExtension.Probe.get; f()", "!TypeError: Illegal invocation" },
        MisuseCase { "OtherThis", "NovaExtension.Probe.get.call({})", "!TypeError: Illegal invocation" },
        MisuseCase {
            "HeirAsThis", "Object.create(NovaExtension.Probe).get()", "!TypeError: Illegal invocation" },
        MisuseCase { "ThisOfAnotherClass", "const p = NovaExtension.Probe; p.get.call(p.Part)",
            "!TypeError: Illegal invocation" },
        MisuseCase { "CallsDownToTheEndOfTheStack",
            "const p = NovaExtension.Probe; const f = () => { p.get({ a: [1] }); f() }; f()",
            "!RangeError: Maximum call stack size exceeded." },
        MisuseCase {
            "UnboundObject", "NovaExtension.Broken", "!NovaExtension.Broken can not be bound: 0x80000008" },
        MisuseCase { "UnboundObjectHasCode",
            "try { NovaExtension.Broken } catch (e) { return [e.success, e.code] }", "[false,3]" },
        MisuseCase { "UnknownObject", "return NovaExtension.Nothing === undefined", "true" },
        MisuseCase { "BoundOnce", "return NovaExtension.Probe === NovaExtension.Probe", "true" },
        MisuseCase { "PlainPropertyAfterTouch",
            "NovaExtension.Probe; return 'value' in Object.getOwnPropertyDescriptor(NovaExtension, 'Probe')",
            "true" },
        MisuseCase { "Tag", "return String(NovaExtension.Probe)", "\"[object NovaExtension.Probe]\"" }),
    caseName<MisuseCase>);

} // namespace
