// A member called from C++, as the JS core calls it, against the least that such a call can cost, and against
// the calls that it owes to the JS core alone; and through the JS core, which may be observed.
#include "bench/allocations.h"
#include "bench/dispatchrivals.h"
#include "bench/extension.h"
#include "bench/page.h"

#include <benchmark/benchmark.h>

namespace bench {

namespace {

/// Times `call`, which gets fresh slots every time, and states what one call allocates.
template <typename Call> void measure(benchmark::State& state, Call call)
{
    const auto once = [&] {
        KJSVariant result;
        KJSVariant exception;
        if (call(result, exception) != KR_OK)
            qFatal("The call failed.");
        benchmark::DoNotOptimize(result);
    };
    state.counters["allocations"] = allocationsOf(once);
    for (auto _ : state)
        once();
}

void member(benchmark::State& state, const char16_t* name)
{
    NativePage page;
    const vexlite::BoundObject bound = page.bind(&extensionFactory);
    IJSExtentionObject* object = bound.object.get();
    const std::int32_t id = memberId(bound, name);
    const JSContextEnv context = page.context();
    JSApiArguments none;
    measure(state, [&](KJSVariant& result, KJSVariant& exception) {
        return object->InvokeMethod(context, id, none, result, 0, exception);
    });
}

void rival(benchmark::State& state, std::unique_ptr<Dispatch> (*make)(), std::int32_t id)
{
    const NativePage page;
    const std::unique_ptr<Dispatch> object = make();
    const JSContextEnv context = page.context();
    JSApiArguments none;
    measure(state, [&](KJSVariant& result, KJSVariant& exception) {
        return object->invoke(context, id, none, result, exception);
    });
}

/// A call through a core: the page's own, or the rival that is made by `make`.
void throughCore(benchmark::State& state, std::unique_ptr<PlainCore> (*make)(), vexlite::Observer* observer)
{
    NativePage page;
    const vexlite::BoundObject bound = page.bind(&extensionFactory);
    vexlite::Core& core = *vexlite::Core::instance();
    const std::int32_t id = memberId(bound, u"enveloped");
    const JSContextEnv context = page.context();
    const std::unique_ptr<PlainCore> rival = make ? make() : nullptr;
    JSApiArguments none;
    if (observer)
        core.addObserver(observer);
    const auto run = [&](auto& with) {
        measure(state, [&](KJSVariant& result, KJSVariant& exception) {
            return with.call(bound.object.get(), context, id, JSAccess::Method, none, result, exception);
        });
    };
    if (rival)
        run(*rival);
    else
        run(core);
}

struct Nobody final : vexlite::Observer {
} nobody;

BENCHMARK_CAPTURE(throughCore, off, nullptr, nullptr)->Name("dispatch_core/call");
BENCHMARK_CAPTURE(throughCore, plain, makePlainCore, nullptr)->Name("dispatch_core/without_hook");
BENCHMARK_CAPTURE(throughCore, observed, nullptr, &nobody)->Name("dispatch_core/observed");
BENCHMARK_CAPTURE(member, empty, u"empty")->Name("dispatch_empty/member");
BENCHMARK_CAPTURE(rival, empty, makeMapDispatch, EmptyMember)->Name("dispatch_empty/map_and_pointer");
BENCHMARK_CAPTURE(rival, core, makeCoreCalls, EmptyMember)->Name("dispatch_empty/core_calls");
BENCHMARK_CAPTURE(member, enveloped, u"enveloped")->Name("dispatch_envelope/member");
BENCHMARK_CAPTURE(rival, enveloped, makeMapDispatch, EnvelopedMember)
    ->Name("dispatch_envelope/map_and_pointer");

} // namespace

} // namespace bench
