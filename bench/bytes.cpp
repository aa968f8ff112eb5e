// A megabyte to the library and from it, as bytes, against a copy that script makes for itself.
#include "bench/enginepage.h"
#include "framework/factory.h"
#include "local/js_api_bytebuffer.h"

#include <benchmark/benchmark.h>
#include <chrono>

namespace bench {

namespace {

constexpr int Transfers = 50;

/// `once` in a loop of script. The buffers of the library are emptied as soon as they are not needed: the engine does not
/// know how large they are.
void carry(benchmark::State& state, const char* once)
{
    // The class of buffers is announced to the first core of a process.
    static EnginePage& page = *new EnginePage(&sharedObjectFactory<jsapi::KJsApiByteBufferManager>);
    page.run(QStringLiteral(R"(
        const bytes = Uint8Array.from({ length: 1 << 20 }, (_, i) => i * 7);
        const kept = NovaExtension.Bench.create(bytes);
        globalThis.loop = (count) => { for (; count > 0; --count) { %1; } };
        if (kept.data().some((byte, i) => byte !== bytes[i]))
            throw new Error('other bytes');
        loop(20);)")
                 .arg(QString::fromLatin1(once)));
    while (state.KeepRunningBatch(Transfers)) {
        const auto begin = std::chrono::steady_clock::now();
        page.run(QStringLiteral("loop(%1)").arg(Transfers));
        state.SetIterationTime(
            std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count());
    }
}

BENCHMARK_CAPTURE(carry, put, "NovaExtension.Bench.create(bytes).setSize(0)")
    ->Name("bytes_put/member")
    ->UseManualTime();
BENCHMARK_CAPTURE(carry, get, "if (kept.data()[9] !== 63) throw new Error('other bytes')")
    ->Name("bytes_get/member")
    ->UseManualTime();
BENCHMARK_CAPTURE(carry, copy, "if (new Uint8Array(bytes)[9] !== 63) throw new Error('other bytes')")
    ->Name("bytes/copy")
    ->UseManualTime();

} // namespace

} // namespace bench
