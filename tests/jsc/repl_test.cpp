#include "tests/jsc/fixture.h"

using namespace engine;
using namespace engine::test;

namespace {

struct ReplCase {
    const char* name;
    std::vector<const char*> before;
    const char* script;
    const char* shown;
};

class Repl : public PageTest, public testing::WithParamInterface<ReplCase> { };

TEST_P(Repl, Evaluates)
{
    for (const char* line : GetParam().before)
        EXPECT_TRUE(evaluate(line).ok) << line;
    const QString expected = QString::fromUtf8(GetParam().shown);
    const QString found = shown(evaluate(GetParam().script));
    if (expected.startsWith(QLatin1Char('!')))
        EXPECT_TRUE(found.startsWith(expected)) << found;
    else
        EXPECT_EQ(found, expected);
}

INSTANTIATE_TEST_SUITE_P(Lines, Repl,
    testing::Values(ReplCase { "Expression", {}, "1 + 1", "2" },
        ReplCase {
            "DeclarationsStay", { "const a = 1; let b = 2", "function f() { return a + b }" }, "f()", "3" },
        ReplCase { "ObjectLiteral", {}, "{ a: 1, b: { c: 2 } };", "{\"a\":1,\"b\":{\"c\":2}}" },
        ReplCase { "Block", {}, "{ let x = 1; x + 1 }", "2" },
        ReplCase { "PromiseIsAwaited", {}, "Promise.resolve(3)", "3" },
        ReplCase { "Await", {}, "await Promise.resolve(4)", "4" },
        ReplCase { "AwaitedDeclarationStays", { "const x = await Promise.resolve(5);" }, "x", "5" },
        ReplCase { "AwaitedPatternStays",
            { "const { a, b: [c = 1] } = await Promise.resolve({ a: 6, b: [] })" }, "a + c", "7" },
        ReplCase { "AwaitedHolderIsGone", { "let y = await 1" }, "typeof __awaited", "\"undefined\"" },
        ReplCase { "AwaitInStatements", {}, "for (const p of [1]) { await p }", "undefined" },
        ReplCase { "AwaitedFailure", {}, "await Promise.reject(new Error('no'))", "!no" },
        ReplCase { "AwaitInText", {}, "'await'", "\"await\"" },
        ReplCase { "SyntaxError", {}, "1 +", "!SyntaxError: " },
        ReplCase { "SyntaxErrorWithAwait", {}, "await +", "!SyntaxError: " },
        ReplCase { "Throws", {}, "throw new TypeError('t')", "!TypeError: t" }),
    caseName<ReplCase>);

struct CompletionCase {
    const char* name;
    const char* path;
    const char* has;
    const char* hasNot;
};

class Completion : public PageTest, public testing::WithParamInterface<CompletionCase> { };

TEST_P(Completion, NamesWithoutRunningThePage)
{
    method(u"get", [](ProbeCall&) { return KR_OK; });
    evaluate("globalThis.ran = 0; const local = { inner: { deep: 1 }, get getter() { ++ran; return { never: "
             "1 } } };"
             "globalThis.proxy = new Proxy({ hidden: 1 }, { ownKeys() { ++ran; return [] }, get() { ++ran },"
             "getOwnPropertyDescriptor() { ++ran }, getPrototypeOf() { ++ran; return null } });"
             "Object.defineProperty(NovaExtension, 'fake', { get() { ++ran; return { never: 1 } } })");
    const QStringList names = page->propertyNames(QString::fromLatin1(GetParam().path));
    if (*GetParam().has) {
        EXPECT_TRUE(names.contains(QString::fromLatin1(GetParam().has))) << names.join(QLatin1Char(' '));
    }
    EXPECT_FALSE(names.contains(QString::fromLatin1(GetParam().hasNot)));
    EXPECT_EQ(shown(evaluate("ran")), QStringLiteral("0"));
}

INSTANTIATE_TEST_SUITE_P(Paths, Completion,
    testing::Values(CompletionCase { "Globals", "", "NovaExtension", "native" },
        CompletionCase { "Nova", "NovaExtension", "Probe", "get" },
        CompletionCase { "UntouchedObject", "NovaExtension.Probe", "get", "Probe" },
        CompletionCase { "Inherited", "NovaExtension.Probe", "hasOwnProperty", "x" },
        CompletionCase { "Unbound", "NovaExtension.Broken", "", "get" },
        CompletionCase { "Lexical", "local.inner", "deep", "inner" },
        CompletionCase { "Getter", "local.getter", "", "never" },
        CompletionCase { "GetterUnderNova", "NovaExtension.fake", "", "never" },
        CompletionCase { "Proxy", "proxy", "", "hidden" },
        CompletionCase { "Nothing", "nothing.at.all", "", "at" },
        CompletionCase { "Primitive", "process.argv.length", "toFixed", "x" }),
    caseName<CompletionCase>);

} // namespace
