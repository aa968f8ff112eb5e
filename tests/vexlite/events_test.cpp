#include "tests/vexlite/fakes.h"

#include <algorithm>

using namespace vexlite;
using namespace vexlite::test;

namespace {

const QString Event = QStringLiteral("changed");

using Identities = std::vector<int>;

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
    KResult remove(const JSContextEnv& context, int identity)
    {
        return hub.Remove(Event, context, noting(context, identity));
    }
    /// The identities of the listeners that a dispatch has called.
    Identities dispatch(const JSContextEnv& target = JSContextEnv::everyContext(), KResult status = KR_OK)
    {
        called.clear();
        EXPECT_EQ(hub.Dispatch(Event, target, {}), status);
        return called;
    }

    IJSEventHub& hub;
    Identities called;
};

TEST_F(Events, GoToPagesInTheOrderOfAdding)
{
    hub.Add(Event, first, function(first, 9, [](const JSApiArguments&) { return KR_REJECTED; })); // it throws
    add(first, 1);
    add(second, 2);
    add(first, 3);
    add(second, 1);
    add(first, 1); // known already
    EXPECT_EQ(dispatch(), Identities({ 1, 2, 3, 1 }));
    EXPECT_EQ(dispatch(first), Identities({ 1, 3 }));
    EXPECT_EQ(dispatch(second), Identities({ 2, 1 }));
}

TEST_F(Events, ListenersMayComeAndGoMeanwhile)
{
    add(first, 1, [this] {
        EXPECT_EQ(remove(first, 1), KR_OK);
        EXPECT_EQ(remove(first, 2), KR_OK);
        EXPECT_EQ(add(first, 2), KR_OK); // it comes back behind the others, and after this dispatch
    });
    add(first, 2);
    add(first, 3);
    EXPECT_EQ(dispatch(), Identities({ 1, 3 }));
    EXPECT_EQ(dispatch(), Identities({ 3, 2 }));
}

TEST_F(Events, PageClosedMeanwhileHearsNoMore)
{
    add(first, 1, [this] { core.closePage(first); });
    add(first, 2);
    add(second, 3);
    EXPECT_EQ(dispatch(), Identities({ 1, 3 }));
    EXPECT_EQ(core.liveCounts().listeners, 1);
    dispatch(first, KR_NOT_AVAILABLE);
    EXPECT_EQ(add(first, 1), KR_NOT_AVAILABLE);
}

TEST_F(Events, AllListenersRemovedAndOthersAddedMeanwhile)
{
    int dispatches = 0;
    add(first, 1, [&] {
        EXPECT_EQ(hub.Remove(Event, first, KJSVariant()), KR_OK);
        add(first, 3);
        if (dispatches++ == 0)
            hub.Dispatch(Event, first, {});
    });
    add(first, 2);
    EXPECT_EQ(dispatch(), Identities({ 1, 3 }));
}

TEST_F(Events, HubReleasedMeanwhileCallsNoMore)
{
    IJSEventHubFactory* hubs = GetVEXJSCore()->EventHubs();
    IJSEventHub* own = hubs->InstanceHub(1, nullptr);
    EXPECT_EQ(own, hubs->InstanceHub(1, nullptr));
    own->Add(Event, first, noting(first, 1, [=] { hubs->ReleaseInstanceHub(own); }));
    own->Add(Event, first, noting(first, 2));
    EXPECT_EQ(own->Dispatch(Event, first, {}), KR_OK);
    EXPECT_EQ(called, Identities({ 1 }));
    EXPECT_EQ(core.liveCounts().listeners, 0);
    EXPECT_EQ(FakeFunction::alive, 0);
}

TEST_F(Events, EndlessRecursionIsRefused)
{
    int refused = 0;
    add(first, 1, [&] { refused += hub.Dispatch(Event, first, {}) == KR_REJECTED; });
    for (int twice = 0; twice < 2; ++twice) // the levels are given back
        EXPECT_EQ(static_cast<int>(dispatch().size()), CoreLimits::nestedDispatches);
    EXPECT_EQ(refused, 2);
}

KJSVariant idle(const JSContextEnv& context)
{
    return function(context, 7, [](const JSApiArguments&) { return KR_OK; });
}

TEST_F(Events, RefuseWhatIsNoListenerOfThePage)
{
    add(first, 1);
    EXPECT_EQ(hub.Add(Event, first, makeFailure(1, {})), KR_REJECTED);
    EXPECT_EQ(hub.Add(Event, first, {}), KR_REJECTED);
    EXPECT_EQ(hub.Add(Event, first, idle(second)), KR_REJECTED);
    EXPECT_EQ(hub.Add(QString(CoreLimits::eventNameLength + 1, u'x'), first, idle(first)), KR_REJECTED);
    EXPECT_EQ(hub.Remove(Event, first, KJSVariant::null()), KR_REJECTED);
    EXPECT_EQ(hub.Remove(Event, first, idle(first)), KR_OK) << "a stranger";
    EXPECT_EQ(hub.Remove(Event, second, {}), KR_OK) << "another page's";
    EXPECT_EQ(hub.Remove(QStringLiteral("other"), first, {}), KR_OK);
    EXPECT_EQ(core.liveCounts().listeners, 1);
    EXPECT_EQ(dispatch(), Identities({ 1 }));
}

TEST_F(Events, PageKeepsToItsLimit)
{
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
        ASSERT_EQ(remove(first, identity), KR_OK);
    EXPECT_EQ(core.liveCounts().listeners, 1);
    EXPECT_EQ(FakeFunction::alive, 1);
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
    const JSContextEnv page = Core::start({}).openPage(&firstPage, {});
    EXPECT_FALSE(page == gone);
    EXPECT_EQ(add(page, 5), KR_OK);
    EXPECT_EQ(dispatch(), Identities({ 5 }));
}

} // namespace
