// Calls, promises, events and bytes between a page and the suite, against Qt WebChannel and against a bare prompt(), each in
// a view of its own of the same process.
#include "bench/web/calls.h"

#include "bench/web/page.h"
#include "bench/web/stopwatch.h"

#include <benchmark/benchmark.h>

namespace bench {

namespace {

constexpr int Calls = 100;    ///< in one loop of script
constexpr int Transfers = 4;  ///< the same, of a megabyte each
constexpr int InFlight = 500; ///< events, or promises, at once

/// What all measurements share. The library comes first: schemes are registered before the browser starts.
struct Pages {
    Library library;
    BareProfile profile;
    std::unique_ptr<Page> member = library.openPage();
    std::unique_ptr<Page> channel = openBarePage(profile, true);
    std::unique_ptr<Page> prompt = openBarePage(profile, false);
};
std::unique_ptr<Pages> pages;

Page& page(std::unique_ptr<Page> Pages::*which)
{
    if (!pages)
        pages = std::make_unique<Pages>();
    return *((*pages).*which);
}

/// Times `function(count)` by the page's clock.
void loop(benchmark::State& state, std::unique_ptr<Page> Pages::*which, const char* function)
{
    Page& shown = page(which);
    const QString source = QString::fromLatin1(function);
    shown.measure(source, Calls);
    while (state.KeepRunningBatch(Calls))
        state.SetIterationTime(shown.measure(source, Calls));
}

constexpr char CallMember[] = R"((count) => {
    const object = NovaExtension.Bench;
    for (let last = object.next().data; count > 0; --count) {
        if (object.next().data !== ++last)
            throw new Error('another answer');
    }
})";
constexpr char CallPrompt[] = R"((count) => {
    for (; count > 0; --count) {
        if (prompt('nova', '0C1;12;30007;0;') !== '00;0;red1;')
            throw new Error('another answer');
    }
})";
constexpr char CallChannel[] = R"((count) => new Promise((resolve) => {
    const next = () => (count-- > 0 ? channel.next(next) : resolve());
    next();
}))";
constexpr char CallPromise[] = R"(async (count) => {
    for (const object = NovaExtension.Bench; count > 0; --count) {
        if (await object.later() !== 1)
            throw new Error('another answer');
    }
})";

BENCHMARK_CAPTURE(loop, member, &Pages::member, CallMember)->Name("web_call/member")->UseManualTime();
BENCHMARK_CAPTURE(loop, prompt, &Pages::prompt, CallPrompt)->Name("web_call/prompt")->UseManualTime();
BENCHMARK_CAPTURE(loop, channel, &Pages::channel, CallChannel)->Name("web_call/WebChannel")->UseManualTime();
BENCHMARK_CAPTURE(loop, promise, &Pages::member, CallPromise)->Name("web_promise/member")->UseManualTime();

/// From the first event that is emitted, or the first promise that is settled, until the page has said that it has
/// noticed the last, by the native clock. The argument is how many.
void notice(benchmark::State& state, std::unique_ptr<Page> Pages::*which, const char* function)
{
    Page& shown = page(which);
    const QString source = QString::fromLatin1(function);
    const auto count = static_cast<int>(state.range(0));
    shown.measure(source, count);
    Stopwatch::takeSeconds();
    for (auto _ : state) {
        shown.measure(source, count);
        state.SetIterationTime(Stopwatch::takeSeconds());
    }
}

constexpr char HearEvents[] = R"((count) => new Promise((resolve) => {
    const object = NovaExtension.Bench;
    let heard = 0;
    const listener = () => {
        if (++heard < count)
            return;
        object.heard();
        object.removeEventListener('bench.event', listener);
        resolve();
    };
    object.addEventListener('bench.event', listener);
    object.burst(count);
}))";
constexpr char HearSignals[] = R"((count) => new Promise((resolve) => {
    let heard = 0;
    const listener = () => {
        if (++heard < count)
            return;
        channel.heard(resolve);
        channel.event.disconnect(listener);
    };
    channel.event.connect(listener);
    channel.burst(count);
}))";
constexpr char SettlePromises[] = R"(async (count) => {
    const object = NovaExtension.Bench;
    const promises = Array.from({ length: count }, () => object.pending());
    object.settleAll();
    await Promise.all(promises);
    object.heard();
})";

BENCHMARK_CAPTURE(notice, event, &Pages::member, HearEvents)
    ->Name("web_event/member")
    ->Arg(1)
    ->Arg(InFlight)
    ->UseManualTime();
BENCHMARK_CAPTURE(notice, signal, &Pages::channel, HearSignals)
    ->Name("web_event/WebChannel")
    ->Arg(1)
    ->Arg(InFlight)
    ->UseManualTime();
BENCHMARK_CAPTURE(notice, promise, &Pages::member, SettlePromises)
    ->Name("web_settle/member")
    ->Arg(InFlight)
    ->UseManualTime();

/// What carries a string there and back again.
struct Carrier {
    const char* name;
    std::unique_ptr<Page> Pages::*page;
    const char* put; ///< of an async function's body, returns when `bytes` has been carried
    const char* get; ///< returns what has been put
    bool hasZeros;
};
const Carrier Carriers[] = {
    { "member", &Pages::member, "NovaExtension.Bench.put(bytes)", "NovaExtension.Bench.get().data", true },
    { "prompt", &Pages::prompt, "prompt('put', bytes)", "prompt('get', '')", false },
    { "WebChannel", &Pages::channel, "await new Promise((resolve) => channel.put(bytes, resolve))",
        "await new Promise((resolve) => channel.get(resolve))", true },
};

/// What the bytes are, as an expression of the place.
struct Content {
    const char* name;
    const char* unit;
};
const Content Contents[] = {
    { "all_values", "i" },
    { "random", "random = Math.imul(random, 1664525) + 1013904223, random >>> 24" },
    { "zeros", "0" },
    { "every_other_zero", "i & 1 ? 0 : 65 + (i & 15)" },
    { "no_zeros", "i % 255 + 1" },
};

/// A megabyte as a string of one character for each byte, carried as often as KeepRunningBatch() says.
void carry(benchmark::State& state, const Carrier& carrier, const Content& content, bool isPut)
{
    Page& shown = page(carrier.page);
    const QString put = QString::fromLatin1(carrier.put);
    const QString get = QString::fromLatin1(carrier.get);
    shown.measure(
        QStringLiteral(R"(async () => {
        const units = new Uint8Array(1 << 20);
        for (let i = 0, random = 1; i < units.length; ++i)
            units[i] = %1;
        let text = '';
        for (let i = 0; i < units.length; i += 4096)
            text += String.fromCharCode(...units.subarray(i, i + 4096)%2);
        globalThis.bytes = text;
        %3;
        if ((%4) !== bytes)
            throw new Error('other bytes');
    })")
            .arg(QString::fromLatin1(content.unit),
                carrier.hasZeros ? QString() : QStringLiteral(".map((unit) => unit || 1)"), put, get),
        0);
    const QString once = isPut
        ? put
        // Looking into the string makes it one piece, if it is not.
        : QStringLiteral(
            "if ((%1).charCodeAt(1000) !== bytes.charCodeAt(1000)) throw new Error('other bytes')")
              .arg(get);
    const QString source =
        QStringLiteral("async (count) => { for (; count > 0; --count) { %1; } }").arg(once);
    while (state.KeepRunningBatch(Transfers))
        state.SetIterationTime(shown.measure(source, Transfers));
}

/// The same as bytes, and a copy that the page makes for itself.
void carryBytes(benchmark::State& state, const char* once)
{
    Page& shown = page(&Pages::member);
    shown.measure(QStringLiteral(R"(async () => {
        globalThis.bytes = Uint8Array.from({ length: 1 << 20 }, (_, i) => i * 7);
        NovaExtension.Bench.putBytes(bytes);
        if (NovaExtension.Bench.getBytes().data.some((byte, i) => byte !== bytes[i]))
            throw new Error('other bytes');
    })"),
        0);
    const QString source =
        QStringLiteral("async (count) => { for (; count > 0; --count) { %1; } }").arg(QLatin1String(once));
    while (state.KeepRunningBatch(Transfers))
        state.SetIterationTime(shown.measure(source, Transfers));
}
BENCHMARK_CAPTURE(carryBytes, put, "NovaExtension.Bench.putBytes(bytes)")
    ->Name("web_put_bytes/member")
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime();
BENCHMARK_CAPTURE(
    carryBytes, get, "if (NovaExtension.Bench.getBytes().data[9] !== 63) throw new Error('other bytes')")
    ->Name("web_get_bytes/member")
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime();
BENCHMARK_CAPTURE(carryBytes, copy, "if (new Uint8Array(bytes)[9] !== 63) throw new Error('other bytes')")
    ->Name("web_bytes/copy")
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime();

[[maybe_unused]] const bool areRegistered = [] {
    for (const Content& content : Contents) {
        for (const Carrier& carrier : Carriers) {
            for (const bool isPut : { true, false }) {
                const std::string name =
                    std::string(isPut ? "web_put_" : "web_get_") + content.name + '/' + carrier.name;
                benchmark::RegisterBenchmark(name.c_str(),
                    [&carrier, &content, isPut](
                        benchmark::State& state) { carry(state, carrier, content, isPut); })
                    ->Unit(benchmark::kMillisecond)
                    ->UseManualTime();
            }
        }
    }
    return true;
}();

} // namespace

void closePages()
{
    pages.reset();
}

} // namespace bench
