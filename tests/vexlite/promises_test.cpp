#include "tests/vexlite/fakes.h"

#include "vexlite/jsapiutil.h"

using namespace vexlite;
using namespace vexlite::test;

namespace {

using List = std::vector<KJSVariant>;

class Promises : public CoreTest {
protected:
    std::int64_t pending() { return GetVEXJSCore()->PromiseService()->CreatePending(first, promise); }
    KResult answer(std::int64_t id, const JSContextEnv& context, const List& list, std::int32_t one = 1)
    {
        return GetVEXJSCore()->AnswerChannel()->Answer(id, context, list, one);
    }
    static List list(bool success, const QVariantMap& values, const char* message = "")
    {
        return KJSApiUtil::getAsynRetValList(success ? -1 : 0, QLatin1String(message), values);
    }

    KJSVariant promise;
};

struct AnswerCase {
    const char* name;
    bool success;
    QVariantMap values;
    JSPromiseState state;
    QVariant value;
};

QVariantMap map(std::initializer_list<std::pair<QString, QVariant>> pairs)
{
    return QVariantMap(pairs);
}

QVariantMap failure(int code)
{
    return map({ { QStringLiteral("success"), false }, { QStringLiteral("code"), code },
        { QStringLiteral("msg"), QStringLiteral("why") } });
}

class Answers : public Promises, public testing::WithParamInterface<AnswerCase> { };

TEST_P(Answers, SettleOnce)
{
    const std::int64_t id = pending();
    ASSERT_EQ(promiseHandle(promise.raw().punkVal), id);
    EXPECT_EQ(core.liveCounts().promises, 1);
    // Whatever script does while it is settled, it is settled.
    firstPage.onSettle = [&] { EXPECT_EQ(answer(id, first, list(true, {})), KR_NOT_AVAILABLE); };
    EXPECT_EQ(answer(id, first, list(GetParam().success, GetParam().values, "why")), KR_OK);
    EXPECT_EQ(answer(id, first, list(true, {})), KR_NOT_AVAILABLE);
    ASSERT_EQ(firstPage.settled[id].size(), 1u);
    EXPECT_EQ(firstPage.settled[id][0].state, GetParam().state);
    QVariant value;
    ASSERT_TRUE(KJSApiUtil::ConvertJSVariantToQVariant(firstPage.settled[id][0].value, value));
    EXPECT_EQ(value, GetParam().value);
    EXPECT_EQ(core.liveCounts().promises, 0);
}

INSTANTIATE_TEST_SUITE_P(Lists, Answers,
    testing::Values(AnswerCase { "DataAloneIsTheValue", true, map({ { QStringLiteral("data"), 5 } }),
                        JSPromiseState::Resolved, 5 },
        AnswerCase { "MoreThanDataIsAnObject", true,
            map({ { QStringLiteral("data"), 5 }, { QStringLiteral("x"), 1 } }), JSPromiseState::Resolved,
            map({ { QStringLiteral("data"), 5 }, { QStringLiteral("x"), 1 } }) },
        AnswerCase { "NothingIsAnEmptyObject", true, {}, JSPromiseState::Resolved, QVariantMap() },
        AnswerCase { "RefusalHasTheUsualCode", false, {}, JSPromiseState::Rejected, failure(3) },
        AnswerCase { "RefusalHasItsCode", false, map({ { QStringLiteral("code"), 12 } }),
            JSPromiseState::Rejected, failure(12) },
        AnswerCase { "RefusalWithoutDetailsIsNoObject", false, map({ { QStringLiteral("data"), 5 } }),
            JSPromiseState::Rejected, failure(3) }),
    caseName<AnswerCase>);

struct LateCase {
    const char* name;
    std::function<KResult(
        IJSAnswerChannel&, std::int64_t, const JSContextEnv& own, const JSContextEnv& other)>
        act;
    KResult status;
};

const List Good { KJSVariant::fromBool(true), KJSVariant(), KJSVariant() };

class Misdirected : public Promises, public testing::WithParamInterface<LateCase> { };

TEST_P(Misdirected, LeavesThePromisePending)
{
    const std::int64_t id = pending();
    EXPECT_EQ(GetParam().act(*GetVEXJSCore()->AnswerChannel(), id, first, second), GetParam().status);
    EXPECT_TRUE(firstPage.settled.empty() && secondPage.settled.empty());
    EXPECT_EQ(answer(id, first, Good), KR_OK);
}

INSTANTIATE_TEST_SUITE_P(Answers, Misdirected,
    testing::Values(
        LateCase { "OfAnotherPage",
            [](auto& channel, auto id, auto&, auto& other) { return channel.Answer(id, other, Good, 1); },
            KR_NOT_AVAILABLE },
        LateCase { "OfAnotherPromise",
            [](auto& channel, auto id, auto& own, auto&) { return channel.Answer(id + 1, own, Good, 1); },
            KR_NOT_AVAILABLE },
        LateCase { "ShortList",
            [](auto& channel, auto id, auto& own, auto&) { return channel.Answer(id, own, { Good[0] }, 1); },
            KR_REJECTED },
        LateCase { "NoDirection",
            [](auto& channel, auto id, auto& own, auto&) {
                return channel.Answer(id, own, { makeFailure(1, {}), KJSVariant(), KJSVariant() }, 1);
            },
            KR_REJECTED },
        LateCase { "NotOne",
            [](auto& channel, auto id, auto& own, auto&) { return channel.Answer(id, own, Good, 0); },
            KR_REJECTED }),
    caseName<LateCase>);

TEST_F(Promises, ClosedPageDropsThem)
{
    const std::int64_t id = pending();
    core.closePage(first);
    EXPECT_EQ(core.liveCounts().promises, 0);
    EXPECT_EQ(answer(id, first, Good), KR_NOT_AVAILABLE);
    EXPECT_TRUE(firstPage.settled.empty());
    promise = {};
    EXPECT_TRUE(firstPage.released.empty()); // nothing is asked of a page that has gone
    EXPECT_EQ(pending(), 0);
    EXPECT_TRUE(promise.isEmpty());
}

TEST_F(Promises, SettledPromiseOutlivesTheCore)
{
    pending();
    Core::stop();
    const auto* kept = static_cast<IJSPromise*>(promise.raw().punkVal);
    EXPECT_EQ(kept->Id(), 0);
    promise = {};
    Core::start({});
}

TEST_F(Promises, PageIsToldWhenNativeCodeHoldsItNoMore)
{
    const std::int64_t id = pending();
    KJSVariant copy = promise;
    promise = {};
    EXPECT_TRUE(firstPage.released.empty());
    copy = {};
    EXPECT_EQ(firstPage.released, std::vector<std::int64_t> { id });
    EXPECT_EQ(answer(id, first, Good), KR_OK);
}

TEST_F(Promises, SettledAtOnce)
{
    IJSPromiseService* service = GetVEXJSCore()->PromiseService();
    int filled = 0;
    const auto fill = [&](KJSVariant& value) {
        ++filled;
        value = makeText(QStringLiteral("why"));
    };
    ASSERT_EQ(service->CreateSettled(JSPromiseState::Rejected, first, fill, promise), KR_OK);
    const std::int64_t handle = promiseHandle(promise.raw().punkVal);
    ASSERT_EQ(firstPage.settled[handle].size(), 1u);
    QVariant value;
    KJSApiUtil::ConvertJSVariantToQVariant(firstPage.settled[handle][0].value, value);
    EXPECT_EQ(value, failure(3));
    EXPECT_EQ(static_cast<IJSPromise*>(promise.raw().punkVal)->Id(), 0);

    firstPage.makesPromises = false;
    EXPECT_EQ(service->CreateSettled(JSPromiseState::Resolved, first, fill, promise), KR_NOT_AVAILABLE);
    EXPECT_TRUE(promise.isEmpty());
    EXPECT_EQ(filled, 2);
}

TEST_F(Promises, PageKeepsToItsLimit)
{
    std::int64_t last = 0;
    for (int made = 0; made < CoreLimits::pendingPromisesPerPage; ++made)
        last = pending();
    ASSERT_NE(last, 0);
    EXPECT_EQ(pending(), 0);
    EXPECT_EQ(answer(last, first, Good), KR_OK);
    EXPECT_NE(pending(), 0);
}

TEST_F(Promises, OtherObjectsAreNone)
{
    EXPECT_EQ(promiseHandle(makeFailure(1, {}).raw().punkVal), 0);
    EXPECT_EQ(promiseHandle(nullptr), 0);
}

} // namespace
