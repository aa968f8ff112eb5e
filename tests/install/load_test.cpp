// Loads the library with all symbols resolved, uses it, unloads it, and looks whether anything of it is left. What the
// application offers is in the process before, by a library of any name.
#include "vexlite/registrymap.h"

#include <cstdio>
#include <dlfcn.h>
#include <fstream>
#include <string>

namespace {

bool isMapped(const char* name)
{
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);) {
        if (line.find(name) != std::string::npos)
            return true;
    }
    return false;
}

int fail(const char* what)
{
    std::fprintf(stderr, "%s: %s\n", what, dlerror());
    return 1;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 3)
        return fail("usage: load_test LIBRARY APPLICATION");
    if (!dlopen(argv[2], RTLD_NOW | RTLD_GLOBAL))
        return fail("dlopen");
    ExtensionFactoryMap factories;
    for (int round = 0; round < 3; ++round) {
        void* library = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
        if (!library)
            return fail("dlopen");
        const auto entry =
            reinterpret_cast<void (*)(ExtensionFactoryMap*)>(dlsym(library, "GetNovaExtensionJsApiObj"));
        if (!entry)
            return fail("dlsym");
        entry(&factories);
        // No JS core has started: a factory says so, having made its object.
        for (const ExtensionFactory factory : factories) {
            if (factory(1, 2) != KR_NOT_AVAILABLE)
                return fail("a factory bound without a JS core");
        }
        if (!isMapped("libvexlitejsapi"))
            return fail("not loaded");
        if (dlclose(library) != 0)
            return fail("dlclose");
        if (isMapped("libvexlitejsapi"))
            return fail("still loaded after dlclose");
    }
    // The suite's map is its own: its keys must still be readable.
    return factories.contains(QStringLiteral("Log")) ? 0 : fail("the map has changed");
}
