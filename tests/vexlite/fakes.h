// The fixture of the JS core's tests: the core with two pages.
#pragma once

#include "host/vexlite/core.h"
#include "host/vexlite/scriptvalues.h"
#include "tests/support/page.h"
#include "tests/support/rows.h"

namespace vexlite::test {

using support::FakeFunction;
using support::function;

class CoreTest : public testing::Test {
protected:
    CoreTest()
        : core(Core::start({}))
        , first(core.openPage(&firstPage, {}))
        , second(core.openPage(&secondPage, {}))
    {
    }
    ~CoreTest() override { Core::stop(); }

    support::NullPage firstPage;
    support::NullPage secondPage;
    Core& core;
    JSContextEnv first;
    JSContextEnv second;
};

} // namespace vexlite::test
