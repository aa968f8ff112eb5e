// A member called from script, against a bare callback of the same engine, against such a callback that calls
// the member directly, against Qt's own script engine, and against Qt's call by name from C++.
#include "bench/barescript.h"
#include "bench/enginepage.h"
#include "bench/extension.h"
#include "bench/membercallback.h"
#include "bench/qtobject.h"

#include <QJSEngine>
#include <benchmark/benchmark.h>
#include <chrono>

namespace bench {

namespace {

/// Calls in one loop of script: enough that what stands around the loop does not count.
constexpr int batch = 2'000;
/// Calls before the first that is timed, for the engines compile what runs often in several steps.
constexpr int warmUp = 300'000;

/// The loops, the same text for every engine. Each fails when what it gets is not what all rivals must
/// answer.
QString emptyLoop()
{
    return QStringLiteral(R"((function (object, count) {
        for (let i = 0; i < count; ++i) {
            if (object.empty() !== undefined)
                throw new Error('an answer');
        }
    }))");
}

QString envelopeLoop()
{
    return QStringLiteral(R"((function (object, count) {
        for (let i = 0, last = object.enveloped().data; i < count; ++i) {
            const answer = object.enveloped();
            if (answer.success !== true || answer.data !== ++last)
                throw new Error('another answer');
        }
    }))");
}

/// What calls cost that pass something. A number is taken as it is, an object is read key by key.
QString argumentsLoop()
{
    return QStringLiteral(R"((function (object, count) {
        for (let i = 0; i < count; ++i) {
            if (object.empty(i, 2.5, true) !== undefined)
                throw new Error('an answer');
        }
    }))");
}

QString objectArgumentLoop()
{
    return QStringLiteral(R"((function (object, count) {
        for (let i = 0; i < count; ++i) {
            if (object.options({ name: 'main', visible: true, width: 10 }) !== undefined)
                throw new Error('an answer');
        }
    }))");
}

/// Times `loop(count)`, which answers the seconds it took.
template <typename Loop> void measure(benchmark::State& state, Loop loop)
{
    loop(warmUp);
    while (state.KeepRunningBatch(batch))
        state.SetIterationTime(loop(batch));
}

template <typename Action> double secondsOf(Action action)
{
    const auto begin = std::chrono::steady_clock::now();
    action();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

void member(benchmark::State& state, QString (*source)())
{
    EnginePage page(&extensionFactory);
    page.run(QStringLiteral("globalThis.loop = ") + source());
    measure(state, [&](int count) {
        page.run(QStringLiteral(
            "const object = NovaExtension.Bench; object.begin(); loop(object, %1); object.end();")
                     .arg(count));
        return scriptSeconds();
    });
}

void bareCallback(benchmark::State& state, QString (*source)())
{
    BareScript script;
    const JSObjectRef loop = script.function(source());
    measure(state, [&](int count) { return secondsOf([&] { script.call(loop, count); }); });
}

void bareCallbackOfMember(benchmark::State& state, QString (*source)())
{
    NativePage page;
    const vexlite::BoundObject bound = page.bind(&extensionFactory);
    BareScript script;
    addMemberCallbacks(script, page, bound);
    const JSObjectRef loop = script.function(source());
    measure(state, [&](int count) { return secondsOf([&] { script.call(loop, count); }); });
}

void qtScript(benchmark::State& state, QString (*source)())
{
    QJSEngine engine;
    const QJSValue object = engine.newQObject(new QtObject);
    QJSValue loop = engine.evaluate(source());
    measure(state, [&](int count) {
        QJSValue answer;
        const double seconds = secondsOf([&] { answer = loop.call({ object, count }); });
        if (answer.isError())
            qFatal("%s", qPrintable(answer.toString()));
        return seconds;
    });
}

void qtCallByName(benchmark::State& state)
{
    QtObject object;
    for (auto _ : state) {
        if (!QMetaObject::invokeMethod(&object, "empty", Qt::DirectConnection))
            qFatal("The call failed.");
    }
}

void qtCallByNameForMap(benchmark::State& state)
{
    QtObject object;
    for (auto _ : state) {
        QVariantMap answer;
        if (!QMetaObject::invokeMethod(
                &object, "enveloped", Qt::DirectConnection, Q_RETURN_ARG(QVariantMap, answer)))
            qFatal("The call failed.");
        benchmark::DoNotOptimize(answer);
    }
}

BENCHMARK_CAPTURE(member, empty, emptyLoop)->Name("script_empty/member")->UseManualTime();
BENCHMARK_CAPTURE(bareCallback, empty, emptyLoop)->Name("script_empty/bare_callback")->UseManualTime();
BENCHMARK_CAPTURE(bareCallbackOfMember, empty, emptyLoop)
    ->Name("script_empty/bare_callback_of_member")
    ->UseManualTime();
BENCHMARK_CAPTURE(qtScript, empty, emptyLoop)->Name("script_empty/QJSEngine")->UseManualTime();
BENCHMARK(qtCallByName)->Name("script_empty/QMetaObject");

BENCHMARK_CAPTURE(member, envelope, envelopeLoop)->Name("script_envelope/member")->UseManualTime();
BENCHMARK_CAPTURE(bareCallback, envelope, envelopeLoop)
    ->Name("script_envelope/bare_callback")
    ->UseManualTime();
BENCHMARK_CAPTURE(bareCallbackOfMember, envelope, envelopeLoop)
    ->Name("script_envelope/bare_callback_of_member")
    ->UseManualTime();
BENCHMARK_CAPTURE(qtScript, envelope, envelopeLoop)->Name("script_envelope/QJSEngine")->UseManualTime();
BENCHMARK(qtCallByNameForMap)->Name("script_envelope/QMetaObject");

BENCHMARK_CAPTURE(member, arguments, argumentsLoop)->Name("script_arguments/member")->UseManualTime();
BENCHMARK_CAPTURE(bareCallback, arguments, argumentsLoop)
    ->Name("script_arguments/bare_callback")
    ->UseManualTime();
BENCHMARK_CAPTURE(member, objectArgument, objectArgumentLoop)
    ->Name("script_object_argument/member")
    ->UseManualTime();
BENCHMARK_CAPTURE(bareCallback, objectArgument, objectArgumentLoop)
    ->Name("script_object_argument/bare_callback")
    ->UseManualTime();
BENCHMARK_CAPTURE(qtScript, objectArgument, objectArgumentLoop)
    ->Name("script_object_argument/QJSEngine")
    ->UseManualTime();

} // namespace

} // namespace bench
