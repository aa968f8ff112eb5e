# libvexlitejsapi: the library itself, built against the suite's declarations only.
find_package(ZLIB REQUIRED)

set(parts framework local local/archive local/network webui cloud cloud/ipc exports)
set(sources)
foreach(part ${parts})
    file(GLOB part_sources CONFIGURE_DEPENDS ${part}/*.cpp)
    list(APPEND sources ${part_sources})
endforeach()

find_package(PkgConfig REQUIRED)
pkg_check_modules(XCB REQUIRED IMPORTED_TARGET xcb)
# By its plain name, which is the same wherever the static library of the C functions is linked.
find_library(MINIZIP_LIBRARY minizip REQUIRED)
find_path(MINIZIP_INCLUDE_DIR minizip/zip.h REQUIRED)

# In the build tree users find the headers as in the install tree: <vexlitejsapi/entry.h>.
set(public_headers exports/version.h exports/vexlitejsapi.h framework/entry.h framework/export.h
    framework/novaextensionutils.h)
foreach(header ${public_headers})
    cmake_path(GET header FILENAME name)
    configure_file(${header} ${PROJECT_BINARY_DIR}/include/vexlitejsapi/${name} COPYONLY)
endforeach()
set(public_include_dirs
    $<BUILD_INTERFACE:${PROJECT_BINARY_DIR}/include> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)

add_library(vexlitejsapi SHARED ${sources})
add_library(VexliteJsApi::vexlitejsapi ALIAS vexlitejsapi)
target_include_directories(vexlitejsapi PRIVATE ${PROJECT_SOURCE_DIR} INTERFACE ${public_include_dirs})
target_link_libraries(vexlitejsapi
    PUBLIC vexlite_platform
    PRIVATE $<BUILD_INTERFACE:vexlite_suite> $<BUILD_INTERFACE:vexlite_build_flags> Qt5::Network Qt5::Widgets Qt5::X11Extras
        $<BUILD_INTERFACE:cloud_messages> PkgConfig::THRIFT PkgConfig::XCB ZLIB::ZLIB minizip)
# Static locals in inline code must not keep the library from being unloaded.
target_compile_options(vexlitejsapi PRIVATE -fno-gnu-unique)
# Undefined symbols are no error here: scripts/imports knows which there may be.
target_link_options(vexlitejsapi PRIVATE
    -Wl,--as-needed -Wl,--version-script=${PROJECT_SOURCE_DIR}/framework/exports.map)
set_target_properties(vexlitejsapi PROPERTIES
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}
    AUTOMOC ON
    CXX_VISIBILITY_PRESET hidden
    C_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON
    LINK_DEPENDS ${PROJECT_SOURCE_DIR}/framework/exports.map)

# The C functions alone, for programs without a suite: an object file for each kind, so that only who uses _XDeflate needs
# the suite's allocator.
file(GLOB c_sources CONFIGURE_DEPENDS exports/*.cpp)
add_library(vexlitejsapi_c STATIC ${c_sources})
add_library(VexliteJsApi::c ALIAS vexlitejsapi_c)
target_include_directories(vexlitejsapi_c PRIVATE ${PROJECT_SOURCE_DIR} INTERFACE ${public_include_dirs})
# A project without C++ links no C++ runtime by itself.
target_link_libraries(vexlitejsapi_c
    PRIVATE $<BUILD_INTERFACE:vexlite_platform> $<BUILD_INTERFACE:vexlite_build_flags> minizip ZLIB::ZLIB
    INTERFACE stdc++)
set_target_properties(vexlitejsapi_c PROPERTIES OUTPUT_NAME vexlitejsapi-c EXPORT_NAME c UNITY_BUILD OFF)
