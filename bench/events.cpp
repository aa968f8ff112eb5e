// An event sent to few and to many listeners, which are functions of script or native ones. The time of one
// benchmark is that of a whole event; the table divides it by the listeners.
#include "framework/events.h"
#include "bench/enginepage.h"
#include "bench/nativefunction.h"
#include "bench/page.h"
#include "framework/factory.h"

#include <benchmark/benchmark.h>

namespace bench {

namespace {

class EventSource final : public KJCExtendJsEventObj<EventSource> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.Bench";
    static const jsapi::MemberList& members();
};

const jsapi::MemberList& EventSource::members()
{
    static const jsapi::MemberList list = jsapi::MemberList("Events to measure.", {}).withEvents();
    return list;
}

const QString& eventName()
{
    static const QString name = QStringLiteral("bench.event");
    return name;
}

/// Times events with a number as payload, as an object's native side sends them to a page.
void dispatchAll(benchmark::State& state, IJSExtentionObject* object, const JSContextEnv& target)
{
    IJSEventHub* hub = dynamic_cast<IKJSExtentionApiEvent&>(*object).hub();
    const std::vector<KJSVariant> payload { KJSVariant::fromInt32(1) };
    for (auto _ : state)
        hub->Dispatch(eventName(), target, payload);
}

void nativeListeners(benchmark::State& state)
{
    std::int64_t heard = 0;
    NativePage page;
    const vexlite::BoundObject bound = page.bind(&sharedObjectFactory<EventSource>);
    IJSEventHub* hub = dynamic_cast<IKJSExtentionApiEvent&>(*bound.object.get()).hub();
    for (int i = 0; i < state.range(0); ++i)
        hub->Add(eventName(), page.context(),
            makeFunction(
                page.context(), [&](const JSApiArguments& payload) { heard += payload[0].raw().lVal; }));
    dispatchAll(state, bound.object.get(), page.context());
    if (heard != state.range(0) * static_cast<std::int64_t>(state.iterations()))
        qFatal("Not every listener was called.");
}

void scriptListeners(benchmark::State& state)
{
    EnginePage page(&sharedObjectFactory<EventSource>);
    page.run(QStringLiteral(R"(
        globalThis.heard = 0;
        for (let i = 0; i < %1; ++i)
            NovaExtension.Bench.addEventListener('%2', (number) => { heard += number; });
    )")
                 .arg(state.range(0))
                 .arg(eventName()));
    dispatchAll(state, page.object().get(), page.context());
    page.run(QStringLiteral("if (heard !== %1) throw new Error('not every listener was called: ' + heard);")
                 .arg(state.range(0) * static_cast<std::int64_t>(state.iterations())));
}

BENCHMARK(nativeListeners)->Name("event_native")->Arg(1)->Arg(100)->Arg(10'000);
BENCHMARK(scriptListeners)->Name("event_script")->Arg(1)->Arg(100)->Arg(10'000);

} // namespace

} // namespace bench
