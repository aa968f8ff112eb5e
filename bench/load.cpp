// The real library loaded, asked for its objects and unloaded, against a library with nothing in it.
#include "vexlite/registrymap.h"

#include <benchmark/benchmark.h>
#include <dlfcn.h>

namespace bench {

namespace {

void* opened(const char* name)
{
    void* library = dlopen(name, RTLD_NOW | RTLD_LOCAL);
    if (!library)
        qFatal("%s", dlerror());
    return library;
}

void* entryOf(void* library, const char* name)
{
    void* entry = dlsym(library, name);
    if (!entry)
        qFatal("%s", dlerror());
    return entry;
}

/// A library that stayed would make the next loading cost nothing.
void close(void* library, const char* name)
{
    dlclose(library);
    if (dlopen(name, RTLD_NOW | RTLD_NOLOAD))
        qFatal("%s is still loaded.", name);
}

void library(benchmark::State& state)
{
    using Entry = void (*)(ExtensionFactoryMap * factories);
    for (auto _ : state) {
        void* loaded = opened(BENCH_LIBRARY);
        ExtensionFactoryMap factories;
        reinterpret_cast<Entry>(entryOf(loaded, "GetNovaExtensionJsApiObj"))(&factories);
        if (factories.isEmpty())
            qFatal("The library has no objects.");
        factories.clear();
        close(loaded, BENCH_LIBRARY);
    }
}

void trivial(benchmark::State& state)
{
    using Entry = int (*)();
    for (auto _ : state) {
        void* loaded = opened(BENCH_TRIVIAL);
        if (!reinterpret_cast<Entry>(entryOf(loaded, "trivialEntry"))())
            qFatal("The library does not answer.");
        close(loaded, BENCH_TRIVIAL);
    }
}

BENCHMARK(library)->Name("load/library")->Unit(benchmark::kMicrosecond);
BENCHMARK(trivial)->Name("load/trivial_library")->Unit(benchmark::kMicrosecond);

} // namespace

} // namespace bench
