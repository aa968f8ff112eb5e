// A page, script functions and an object for tests of the JS core, and the fixture that starts it.
#pragma once

#include "host/vexlite/core.h"
#include "host/vexlite/counted.h"
#include "host/vexlite/scriptvalues.h"

#include <gtest/gtest.h>
#include <map>
#include <vector>

namespace vexlite::test {

/// Keeps what the core asked of it.
class FakePage final : public ScriptPage {
public:
    struct Settled {
        JSPromiseState state;
        KJSVariant value;
    };

    bool createPromise(std::int64_t promise) override
    {
        if (makesPromises)
            created.push_back(promise);
        return makesPromises;
    }
    void settlePromise(std::int64_t promise, JSPromiseState state, const KJSVariant& value) override
    {
        settled[promise].push_back({ state, value });
        if (onSettle)
            onSettle();
    }
    void releasePromise(std::int64_t promise) override { released.push_back(promise); }

    bool makesPromises = true;
    std::function<void()> onSettle;
    std::vector<std::int64_t> created;
    std::vector<std::int64_t> released;
    std::map<std::int64_t, std::vector<Settled>> settled;
};

/// A function of a page; what it does is up to the test.
class FakeFunction final : public Counted<IJSFunction, IID_IJSFunction> {
public:
    using Body = std::function<KResult(const JSApiArguments&)>;

    FakeFunction(const JSContextEnv& context, std::uintptr_t identity, Body body)
        : m_context(context)
        , m_identity(identity)
        , m_body(std::move(body))
    {
        ++alive;
    }
    ~FakeFunction() override { --alive; }

    KResult Call(const JSApiArguments& arguments, KJSVariant*) override { return m_body(arguments); }
    std::uintptr_t Identity() const override { return m_identity; }
    JSContextEnv Context() const override { return m_context; }

    static inline int alive = 0;

private:
    JSContextEnv m_context;
    std::uintptr_t m_identity;
    Body m_body;
};

/// A value with a new wrapper of the function `identity` of a page.
inline KJSVariant function(const JSContextEnv& context, std::uintptr_t identity, FakeFunction::Body body)
{
    return KJSVariant::fromUnknown(new FakeFunction(context, identity, std::move(body)));
}

/// The core with two pages.
class CoreTest : public testing::Test {
protected:
    explicit CoreTest(const CoreServices& services = {})
        : core(Core::start(services))
        , first(core.openPage(&firstPage, {}))
        , second(core.openPage(&secondPage, {}))
    {
    }
    ~CoreTest() override { Core::stop(); }

    FakePage firstPage;
    FakePage secondPage;
    Core& core;
    JSContextEnv first;
    JSContextEnv second;
};

template <typename Case> std::string caseName(const testing::TestParamInfo<Case>& info)
{
    return info.param.name;
}

} // namespace vexlite::test
