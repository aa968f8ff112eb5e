// The library's version: what a program is compiled with, and what it runs with. docs/abi.md says what each number
// counts. C99 and C++.
#ifndef VEXLITE_JSAPI_VERSION_H
#define VEXLITE_JSAPI_VERSION_H

#include <stdint.h>

#define VEXLITE_JSAPI_VERSION_MAJOR 0
#define VEXLITE_JSAPI_VERSION_MINOR 1
#define VEXLITE_JSAPI_VERSION_PATCH 0

/// The version as one number: that of a later version is greater.
#define VEXLITE_JSAPI_VERSION                                                                                \
    (VEXLITE_JSAPI_VERSION_MAJOR << 16 | VEXLITE_JSAPI_VERSION_MINOR << 8 | VEXLITE_JSAPI_VERSION_PATCH)

#ifdef __cplusplus
extern "C" {
#endif

/// The version of the library that runs. It fits a program that was compiled with a header of the same major version,
/// and of the same minor version or a smaller one. [any thread]
uint32_t VexliteJsApiVersion(void);

#ifdef __cplusplus
}
#endif

#endif
