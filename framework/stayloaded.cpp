#include "framework/stayloaded.h"

#include <dlfcn.h>

void stayLoaded()
{
    // A reference that could be given back would be no use: code that gives back the last one is gone when
    // dlclose returns to it.
    static const bool isHeld = [] {
        Dl_info library {};
        return dladdr(reinterpret_cast<const void*>(&stayLoaded), &library)
            && dlopen(library.dli_fname, RTLD_NOW | RTLD_NOLOAD | RTLD_NODELETE);
    }();
    static_cast<void>(isHeld);
}
