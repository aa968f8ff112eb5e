// The C functions against zlib and malloc called directly.
#include "bench/livebytes.h"
#include "exports/vexlitejsapi.h"
#include "host/kbase/globalfree.h"
#include "kbase/globalalloc.h"

#include <QtGlobal>
#include <benchmark/benchmark.h>
#include <cstdlib>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>
#include <zlib.h>

namespace bench {

namespace {

/// Words of a small language, as often as its words come, in lines.
std::string textOf(std::size_t length)
{
    std::mt19937 random(1);
    std::vector<std::string> words(5000);
    for (std::string& word : words)
        for (auto letters = 2 + random() % 9; letters; --letters)
            word += static_cast<char>('a' + random() % 26);
    std::string text;
    text.reserve(length + 16);
    while (text.size() < length) {
        const auto rank = random() % words.size();
        text += words[rank * (random() % words.size()) / words.size()];
        text += random() % 12 ? ' ' : '\n';
    }
    text.resize(length);
    return text;
}

struct Input {
    explicit Input(std::size_t size)
        : text(textOf(size))
    {
    }

    const auto* bytes() const { return reinterpret_cast<const Bytef*>(text.data()); }
    auto length() const { return static_cast<std::uint32_t>(text.size()); }
    auto bound() const { return length() + length() / 1000 + 16; }

    std::string text;
};

std::size_t blockCompress(const Input& input)
{
    void* block = nullptr;
    if (_XZlibCompress(input.bytes(), input.length(), &block, Z_DEFAULT_COMPRESSION) != VEXLITE_COMPRESS_OK)
        return 0;
    const std::size_t size = _XGblSize(block);
    _XGblFree(block);
    return size;
}

std::size_t hostDeflate(const Input& input)
{
    void* handle = nullptr;
    std::uint32_t size = 0;
    if (_XDeflate(input.bytes(), input.length(), &handle, &size) != VEXLITE_COMPRESS_OK)
        return 0;
    mfxGlobalFree(handle);
    return size;
}

std::size_t directCompress(const Input& input, Bytef* output)
{
    uLongf size = input.bound();
    return compress2(output, &size, input.bytes(), input.length(), Z_DEFAULT_COMPRESSION) == Z_OK ? size : 0;
}

std::size_t directDeflate(const Input& input, Bytef* output)
{
    z_stream stream {};
    if (deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, -15, 9, Z_DEFAULT_STRATEGY) != Z_OK)
        return 0;
    stream.next_in = const_cast<Bytef*>(input.bytes());
    stream.avail_in = input.length();
    stream.next_out = output;
    stream.avail_out = input.bound();
    const int code = deflate(&stream, Z_SYNC_FLUSH);
    deflateEnd(&stream);
    return code == Z_OK ? stream.total_out - 4 : 0;
}

/// One of the library's functions and the same work by direct calls. Either answers the size of the output.
struct Compressor {
    const char* format;
    const char* ourName;
    std::size_t (*ours)(const Input& input);
    const char* directName;
    std::size_t (*direct)(const Input& input, Bytef* output);
};

constexpr Compressor compressors[] = {
    { "zlib", "_XZlibCompress", blockCompress, "compress2", directCompress },
    { "raw", "_XDeflate", hostDeflate, "deflate", directDeflate },
};

/// An input with what does not change from run to run.
struct Contest {
    Contest(const Compressor& compressor, std::size_t size)
        : input(size)
    {
        auto* output = static_cast<Bytef*>(std::malloc(input.bound()));
        // The output is there before, so the peak is zlib's own state alone.
        directPeak = peakOf([&] { outputSize = compressor.direct(input, output); });
        std::free(output);
        oursPeak = peakOf([&] { compressor.ours(input); });
    }

    Input input;
    std::size_t outputSize;
    double oursPeak;
    double directPeak;
};

const Contest& contestOf(const Compressor& compressor, std::size_t size)
{
    static std::map<std::pair<const Compressor*, std::size_t>, Contest> made;
    return made.try_emplace({ &compressor, size }, compressor, size).first->second;
}

void ours(benchmark::State& state, const Compressor& compressor, std::size_t size)
{
    const Contest& contest = contestOf(compressor, size);
    state.counters["reserved"] = contest.input.bound();
    state.counters["peak"] = contest.oursPeak;
    for (auto _ : state) {
        if (compressor.ours(contest.input) != contest.outputSize)
            qFatal("The output is not what zlib makes.");
    }
}

void direct(benchmark::State& state, const Compressor& compressor, std::size_t size)
{
    const Contest& contest = contestOf(compressor, size);
    state.counters["peak"] = contest.directPeak;
    for (auto _ : state) {
        auto* output = static_cast<Bytef*>(std::malloc(contest.input.bound()));
        if (compressor.direct(contest.input, output) != contest.outputSize)
            qFatal("zlib makes another output.");
        std::free(output);
    }
}

void registerContest(const Compressor& compressor, std::string name, std::size_t size)
{
    name = compressor.format + ('_' + name) + '/';
    benchmark::RegisterBenchmark((name + compressor.ourName).c_str(),
        [&compressor, size](benchmark::State& state) { ours(state, compressor, size); });
    benchmark::RegisterBenchmark((name + compressor.directName).c_str(),
        [&compressor, size](benchmark::State& state) { direct(state, compressor, size); });
}

const bool compressorsRegistered = [] {
    for (const Compressor& compressor : compressors) {
        registerContest(compressor, "4KiB", 4096);
        registerContest(compressor, "1MiB", 1 << 20);
        registerContest(compressor, "64MiB", 64 << 20);
    }
    return true;
}();

constexpr std::size_t LiveBlocks = 1000000;

template <typename Allocate, typename Free>
void liveBlocks(benchmark::State& state, Allocate allocate, Free end)
{
    std::vector<void*> blocks(LiveBlocks);
    for (auto _ : state) {
        for (void*& block : blocks) {
            if (!(block = allocate()))
                qFatal("Memory is short.");
        }
        for (void* block : blocks)
            end(block);
    }
}

void* globalBlock()
{
    return _XGblAlloc(0, 64);
}

template <std::size_t Bytes> void* heapBlock()
{
    void* block = std::malloc(Bytes);
    benchmark::DoNotOptimize(block);
    return block;
}

BENCHMARK_CAPTURE(liveBlocks, ours, globalBlock, _XGblFree)->Name("blocks/_XGblAlloc");
BENCHMARK_CAPTURE(liveBlocks, same, heapBlock<64>, std::free)->Name("blocks/malloc_64");
BENCHMARK_CAPTURE(liveBlocks, whole, heapBlock<1024>, std::free)->Name("blocks/malloc_1024");

} // namespace

} // namespace bench
