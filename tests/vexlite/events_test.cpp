#include "tests/vexlite/fakes.h"

#include <algorithm>
#include <chrono>

using namespace vexlite;
using namespace vexlite::test;

namespace {

const QString Event = QStringLiteral("changed");

class Events : public CoreTest {
protected:
    Events()
        : hub(*GetVEXJSCore()->EventHubs()->ClassHub(GetVEXJSCore()->TypeIds()->AllocateTypeId(0)))
    {
    }

    /// A listener that notes its identity, and then does `then`.
    KJSVariant noting(const JSContextEnv& context, int identity, std::function<void()> then = {})
    {
        return function(context, static_cast<std::uintptr_t>(identity), [=, this](const JSApiArguments&) {
            called.push_back(identity);
            if (then)
                then();
            return KR_OK;
        });
    }
    KResult add(const JSContextEnv& context, int identity, std::function<void()> then = {})
    {
        return hub.Add(Event, context, noting(context, identity, std::move(then)));
    }
    KResult dispatch(const JSContextEnv& target = JSContextEnv::everyContext())
    {
        return hub.Dispatch(Event, target, {});
    }

    IJSEventHub& hub;
    std::vector<int> called;
};

using Calls = std::vector<int>;

struct TargetCase {
    const char* name;
    int target; ///< 0 every page, 1 or 2 one of them
    Calls called;
};

class Targets : public Events, public testing::WithParamInterface<TargetCase> { };

TEST_P(Targets, AreCalledInTheOrderOfAdding)
{
    add(first, 1);
    add(second, 2);
    add(first, 3);
    add(second, 1);
    add(first, 1); // known already
    const JSContextEnv targets[] = { JSContextEnv::everyContext(), first, second };
    EXPECT_EQ(dispatch(targets[GetParam().target]), KR_OK);
    EXPECT_EQ(called, GetParam().called);
}

INSTANTIATE_TEST_SUITE_P(Dispatch, Targets,
    testing::Values(TargetCase { "EveryPage", 0, { 1, 2, 3, 1 } }, TargetCase { "FirstPage", 1, { 1, 3 } },
        TargetCase { "SecondPage", 2, { 2, 1 } }),
    caseName<TargetCase>);

TEST_F(Events, ListenersAddedMeanwhileWaitForTheNextDispatch)
{
    add(first, 1, [this] { add(first, 2); });
    dispatch();
    EXPECT_EQ(called, Calls({ 1 }));
    dispatch();
    EXPECT_EQ(called, Calls({ 1, 1, 2 }));
}

TEST_F(Events, ListenersRemovedMeanwhileAreNotCalled)
{
    add(first, 1, [this] {
        EXPECT_EQ(hub.Remove(Event, first, noting(first, 1)), KR_OK);
        EXPECT_EQ(hub.Remove(Event, first, noting(first, 2)), KR_OK);
        EXPECT_EQ(add(first, 2), KR_OK); // it comes back behind the others, and after this dispatch
    });
    add(first, 2);
    add(first, 3);
    dispatch();
    EXPECT_EQ(called, Calls({ 1, 3 }));
    dispatch();
    EXPECT_EQ(called, Calls({ 1, 3, 3, 2 }));
}

TEST_F(Events, PageClosedMeanwhileHearsNoMore)
{
    add(first, 1, [this] { core.closePage(first); });
    add(first, 2);
    add(second, 3);
    dispatch();
    EXPECT_EQ(called, Calls({ 1, 3 }));
    EXPECT_EQ(core.liveCounts().listeners, 1);
    EXPECT_EQ(dispatch(first), KR_NOT_AVAILABLE);
    EXPECT_EQ(add(first, 1), KR_NOT_AVAILABLE);
}

TEST_F(Events, AllListenersRemovedAndOthersAddedMeanwhile)
{
    add(first, 1, [this] {
        EXPECT_EQ(hub.Remove(Event, first, KJSVariant()), KR_OK);
        add(first, 3);
        if (called.size() == 1)
            dispatch();
    });
    add(first, 2);
    dispatch();
    EXPECT_EQ(called, Calls({ 1, 3 }));
}

TEST_F(Events, HubReleasedMeanwhileCallsNoMore)
{
    IJSEventHubFactory* hubs = GetVEXJSCore()->EventHubs();
    IJSEventHub* own = hubs->InstanceHub(1, nullptr);
    EXPECT_EQ(own, hubs->InstanceHub(1, nullptr));
    own->Add(Event, first, noting(first, 1, [=] { hubs->ReleaseInstanceHub(own); }));
    own->Add(Event, first, noting(first, 2));
    EXPECT_EQ(own->Dispatch(Event, first, {}), KR_OK);
    EXPECT_EQ(called, Calls({ 1 }));
    EXPECT_EQ(core.liveCounts().listeners, 0);
    EXPECT_EQ(FakeFunction::alive, 0);
}

TEST_F(Events, ThrowingListenerStopsNoOther)
{
    hub.Add(Event, first, function(first, 9, [](const JSApiArguments&) { return KR_REJECTED; }));
    add(first, 1);
    EXPECT_EQ(dispatch(), KR_OK);
    EXPECT_EQ(called, Calls({ 1 }));
}

TEST_F(Events, EndlessRecursionIsRefused)
{
    KResult innermost = KR_OK;
    bool refused = false;
    add(first, 1, [&] {
        innermost = dispatch();
        refused = refused || innermost == KR_REJECTED;
    });
    EXPECT_EQ(dispatch(), KR_OK);
    EXPECT_TRUE(refused);
    EXPECT_EQ(static_cast<int>(called.size()), CoreLimits::nestedDispatches);
    called.clear();
    EXPECT_EQ(dispatch(), KR_OK); // the levels were given back
    EXPECT_EQ(static_cast<int>(called.size()), CoreLimits::nestedDispatches);
}

TEST_F(Events, PayloadArrivesAsArguments)
{
    QStringList seen;
    hub.Add(Event, first, function(first, 1, [&](const JSApiArguments& arguments) {
        for (const KJSVariant& argument : arguments)
            seen.append(textOf(argument));
        return KR_OK;
    }));
    hub.Dispatch(Event, first, { makeText(QStringLiteral("a")), makeText(QStringLiteral("b")) });
    EXPECT_EQ(seen, QStringList({ QStringLiteral("a"), QStringLiteral("b") }));
}

struct RefusedCase {
    const char* name;
    std::function<KResult(IJSEventHub&, const JSContextEnv& own, const JSContextEnv& other)> act;
    KResult status;
};

KJSVariant idle(const JSContextEnv& context)
{
    return function(context, 7, [](const JSApiArguments&) { return KR_OK; });
}

class Refused : public Events, public testing::WithParamInterface<RefusedCase> { };

TEST_P(Refused, AndNothingChanges)
{
    add(first, 1);
    EXPECT_EQ(GetParam().act(hub, first, second), GetParam().status);
    EXPECT_EQ(core.liveCounts().listeners, 1);
    dispatch();
    EXPECT_EQ(called, Calls({ 1 }));
}

INSTANTIATE_TEST_SUITE_P(Listeners, Refused,
    testing::Values(RefusedCase { "AddOfNoFunction",
                        [](auto& hub, auto& own, auto&) { return hub.Add(Event, own, makeFailure(1, {})); },
                        KR_REJECTED },
        RefusedCase { "AddOfNothing", [](auto& hub, auto& own, auto&) { return hub.Add(Event, own, {}); },
            KR_REJECTED },
        RefusedCase { "AddOfAnotherPagesFunction",
            [](auto& hub, auto& own, auto& other) { return hub.Add(Event, own, idle(other)); }, KR_REJECTED },
        RefusedCase { "AddUnderAnEndlessName",
            [](auto& hub, auto& own, auto&) {
                return hub.Add(QString(CoreLimits::eventNameLength + 1, QLatin1Char('x')), own, idle(own));
            },
            KR_REJECTED },
        RefusedCase { "RemoveOfAnUnknownFunction",
            [](auto& hub, auto& own, auto&) { return hub.Remove(Event, own, idle(own)); }, KR_OK },
        RefusedCase { "RemoveOfNull",
            [](auto& hub, auto& own, auto&) { return hub.Remove(Event, own, KJSVariant::null()); },
            KR_REJECTED },
        RefusedCase { "RemoveOfAnotherPagesListeners",
            [](auto& hub, auto&, auto& other) { return hub.Remove(Event, other, {}); }, KR_OK },
        RefusedCase { "RemoveFromAnotherEvent",
            [](auto& hub, auto& own, auto&) { return hub.Remove(QStringLiteral("other"), own, {}); },
            KR_OK }),
    caseName<RefusedCase>);

TEST_F(Events, ReportCountsEveryEventByName)
{
    hub.Add(QStringLiteral("b"), first, idle(first));
    hub.Add(QStringLiteral("a"), first, idle(first));
    hub.Add(QStringLiteral("a"), second, idle(second));
    hub.Add(QStringLiteral("c"), second, idle(second));
    hub.Remove(QStringLiteral("c"), second, {});
    KJSVariant report;
    hub.Report(report);
    const IJSArray* list = arrayOf(report);
    ASSERT_TRUE(list && list->Count() == 2);
    const char* const names[] = { "a", "b" };
    for (int index = 0; index < 2; ++index) {
        const IJSONValue* entry = objectOf(*list->At(index));
        EXPECT_EQ(entry->GetString(QStringLiteral("eventName"), {}), QLatin1String(names[index]));
        EXPECT_EQ(entry->GetInt32(QStringLiteral("listenerCount"), 0), 2 - index);
    }
}

TEST_F(Events, PageKeepsToItsLimit)
{
    const auto start = std::chrono::steady_clock::now();
    for (int identity = 1; identity <= CoreLimits::listenersPerPage; ++identity)
        ASSERT_EQ(add(first, identity), KR_OK);
    EXPECT_EQ(add(first, CoreLimits::listenersPerPage + 1), KR_REJECTED);
    EXPECT_EQ(add(first, 1), KR_OK); // is there already
    EXPECT_EQ(add(second, 1), KR_OK);
    dispatch();
    ASSERT_EQ(static_cast<int>(called.size()), CoreLimits::listenersPerPage + 1);
    EXPECT_TRUE(std::is_sorted(called.begin(), called.end() - 1));
    // One by one and from the front, which is the worst order for a list.
    for (int identity = 1; identity <= CoreLimits::listenersPerPage; ++identity)
        ASSERT_EQ(hub.Remove(Event, first, noting(first, identity)), KR_OK);
    EXPECT_EQ(core.liveCounts().listeners, 1);
    EXPECT_EQ(FakeFunction::alive, 1);
    // Anything quadratic takes minutes.
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
}

TEST_F(Events, ListenersThatCameAndWentCostNothing)
{
    add(first, 1);
    for (int round = 0; round < 100'000; ++round) {
        add(first, 2);
        hub.Remove(Event, first, noting(first, 2));
    }
    const auto start = std::chrono::steady_clock::now();
    for (int round = 0; round < 20'000; ++round)
        dispatch();
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
}

TEST_F(Events, ClosedPageLeavesEveryHub)
{
    IJSEventHub* instance = GetVEXJSCore()->EventHubs()->InstanceHub(2, nullptr);
    add(first, 1);
    instance->Add(Event, first, idle(first));
    instance->Add(Event, second, idle(second));
    core.closePage(first);
    EXPECT_EQ(core.liveCounts().listeners, 1);
    EXPECT_EQ(FakeFunction::alive, 1);
    GetVEXJSCore()->EventHubs()->ReleaseInstanceHub(instance);
    EXPECT_EQ(FakeFunction::alive, 0);
}

TEST_F(Events, HubsOutliveTheCore)
{
    add(first, 1);
    const JSContextEnv gone = first;
    Core::stop();
    EXPECT_EQ(FakeFunction::alive, 0);
    EXPECT_EQ(hub.Add(Event, gone, idle(gone)), KR_NOT_AVAILABLE);
    Core& next = Core::start({});
    const JSContextEnv page = next.openPage(&firstPage, {});
    EXPECT_FALSE(page == gone);
    EXPECT_EQ(add(page, 5), KR_OK);
    dispatch();
    EXPECT_EQ(called, Calls({ 5 }));
}

} // namespace
