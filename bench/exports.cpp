// The C functions against zlib and malloc called directly, and against the zip program.
#include "bench/livebytes.h"
#include "exports/vexlitejsapi.h"
#include "host/kbase/globalfree.h"
#include "kbase/globalalloc.h"

#include <QDir>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>
#include <cstdlib>
#include <filesystem>
#include <fstream>
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

/// 256 files of 1 MiB of text, in a directory of its own that goes with the process.
class Tree {
public:
    static const Tree& instance()
    {
        static const Tree tree;
        return tree;
    }

    std::string path(const char* name) const
    {
        return m_place.filePath(QString::fromLatin1(name)).toStdString();
    }

private:
    Tree()
    {
        QDir(m_place.path()).mkdir(QStringLiteral("tree"));
        const std::string text = textOf(256 << 20);
        for (std::size_t i = 0; i < 256; ++i)
            std::ofstream(path("tree/") + std::to_string(i)) << text.substr(i << 20, 1 << 20);
    }

    QTemporaryDir m_place;
};

constexpr int ZipLevel = 6;

void zipTree(benchmark::State& state)
{
    const std::u16string source = QString::fromStdString(Tree::instance().path("tree")).toStdU16String();
    const std::u16string archive = QString::fromStdString(Tree::instance().path("ours.zip")).toStdU16String();
    const char16_t* const sources[] = { source.c_str() };
    for (auto _ : state) {
        if (_XCompressToZipFile(archive.c_str(), sources, 1, ZipLevel) != VEXLITE_ZIP_OK)
            qFatal("no archive");
    }
    state.counters["size"] =
        static_cast<double>(std::filesystem::file_size(Tree::instance().path("ours.zip")));
}

void zipProgram(benchmark::State& state)
{
    const std::string archive = Tree::instance().path("theirs.zip");
    const std::string command = "cd '" + Tree::instance().path("") + "' && zip -q -r -"
        + std::to_string(ZipLevel) + " theirs.zip tree && sync theirs.zip";
    for (auto _ : state) {
        std::filesystem::remove(archive);
        if (std::system(command.c_str()) != 0) // NOLINT(*-env33-c): every argument is of this file
            qFatal("no archive");
    }
    state.counters["size"] = static_cast<double>(std::filesystem::file_size(archive));
}

BENCHMARK(zipTree)
    ->Name("zip/_XCompressToZipFile")
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Iterations(1);
BENCHMARK(zipProgram)->Name("zip/zip")->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(1);

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
