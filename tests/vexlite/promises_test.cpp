#include "tests/vexlite/fakes.h"

using namespace vexlite;
using namespace vexlite::test;

namespace {

using List = std::vector<KJSVariant>;
using Ends = std::vector<std::string>;

const List Good { KJSVariant::fromBool(true), KJSVariant(), KJSVariant() };

class Promises : public CoreTest {
protected:
    std::int64_t pending() { return GetVEXJSCore()->PromiseService()->CreatePending(first, promise); }
    static KResult answer(
        std::int64_t id, const JSContextEnv& context, const List& list = Good, std::int32_t one = 1)
    {
        return GetVEXJSCore()->AnswerChannel()->Answer(id, context, list, one);
    }

    KJSVariant promise;
};

TEST_F(Promises, AreSettledOnce)
{
    const struct {
        bool success;
        const char* values;
        const char* end;
    } rows[] = {
        { true, R"({"data": 5})", "5" },
        { true, R"({"data": 5, "x": 1})", R"({"data":5,"x":1})" },
        { true, "{}", "{}" },
        { false, "{}", "rejected: 3 why" },
        { false, R"({"code": 12})", "rejected: 12 why" },
        { false, R"({"data": 5})", "rejected: 3 why" },
    };
    for (const auto& row : rows) {
        firstPage.settled.clear();
        const std::int64_t id = pending();
        ASSERT_EQ(promiseHandle(promise.raw().punkVal), id);
        EXPECT_EQ(core.liveCounts().promises, 1);
        // Whatever script does while it is settled, it is settled.
        firstPage.onSettle = [&] { EXPECT_EQ(answer(id, first), KR_NOT_AVAILABLE); };
        const List list = KJSApiUtil::getAsynRetValList(
            row.success ? -1 : 0, QStringLiteral("why"), support::parse(row.values).first().toMap());
        EXPECT_EQ(answer(id, first, list), KR_OK);
        EXPECT_EQ(answer(id, first), KR_NOT_AVAILABLE);
        EXPECT_EQ(firstPage.lastSettled, id);
        EXPECT_EQ(firstPage.settled, Ends { row.end });
        EXPECT_EQ(core.liveCounts().promises, 0);
    }
}

TEST_F(Promises, StayPendingWhenAnswersAreMisdirected)
{
    const std::int64_t id = pending();
    EXPECT_EQ(answer(id, second), KR_NOT_AVAILABLE);
    EXPECT_EQ(answer(id + 1, first), KR_NOT_AVAILABLE);
    EXPECT_EQ(answer(id, first, { Good[0] }), KR_REJECTED) << "a short list";
    EXPECT_EQ(answer(id, first, { makeFailure(1, {}), {}, {} }), KR_REJECTED) << "success is no boolean";
    EXPECT_EQ(answer(id, first, Good, 0), KR_REJECTED);
    EXPECT_TRUE(firstPage.settled.empty() && secondPage.settled.empty());
    EXPECT_EQ(answer(id, first), KR_OK);
    EXPECT_EQ(promiseHandle(makeFailure(1, {}).raw().punkVal), 0) << "other objects are no promises";
}

TEST_F(Promises, AreDroppedByAClosedPage)
{
    const std::int64_t id = pending();
    core.closePage(first);
    EXPECT_EQ(core.liveCounts().promises, 0);
    EXPECT_EQ(answer(id, first), KR_NOT_AVAILABLE);
    EXPECT_TRUE(firstPage.settled.empty());
    promise = {};
    EXPECT_TRUE(firstPage.released.empty()) << "nothing is asked of a page that has gone";
    EXPECT_EQ(pending(), 0);
    EXPECT_TRUE(promise.isEmpty());
}

TEST_F(Promises, OutliveTheCore)
{
    pending();
    Core::stop();
    promise = {};
}

TEST_F(Promises, ArePassedBackWhenNativeCodeHoldsThemNoMore)
{
    const std::int64_t id = pending();
    KJSVariant copy = promise;
    promise = {};
    EXPECT_TRUE(firstPage.released.empty());
    copy = {};
    EXPECT_EQ(firstPage.released, std::vector<std::int64_t> { id });
    EXPECT_EQ(answer(id, first), KR_OK);
}

TEST_F(Promises, AreSettledAtOnce)
{
    IJSPromiseService* service = GetVEXJSCore()->PromiseService();
    const auto fill = [&](KJSVariant& value) { value = makeText(QStringLiteral("why")); };
    ASSERT_EQ(service->CreateSettled(JSPromiseState::Rejected, first, fill, promise), KR_OK);
    EXPECT_EQ(promiseHandle(promise.raw().punkVal), firstPage.lastSettled);
    ASSERT_EQ(service->CreateSettled(JSPromiseState::Resolved, first, fill, promise), KR_OK);
    EXPECT_EQ(firstPage.settled, (Ends { "rejected: 3 why", "\"why\"" }));
    firstPage.makesPromises = false;
    EXPECT_EQ(service->CreateSettled(JSPromiseState::Resolved, first, fill, promise), KR_NOT_AVAILABLE);
    EXPECT_TRUE(promise.isEmpty());
}

TEST_F(Promises, PageKeepsToItsLimit)
{
    std::int64_t last = 0;
    for (int made = 0; made < CoreLimits::pendingPromisesPerPage; ++made)
        last = pending();
    ASSERT_NE(last, 0);
    EXPECT_EQ(pending(), 0);
    EXPECT_EQ(answer(last, first), KR_OK);
    EXPECT_NE(pending(), 0);
}

} // namespace
