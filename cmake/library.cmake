# libvexlitejsapi: the library itself, built against the suite's declarations only.
find_package(ZLIB REQUIRED)

set(parts framework local webui cloud cloud/ipc exports)
set(sources)
foreach(part ${parts})
    file(GLOB part_sources CONFIGURE_DEPENDS ${part}/*.cpp)
    list(APPEND sources ${part_sources})
endforeach()

find_package(PkgConfig REQUIRED)
pkg_check_modules(XCB REQUIRED IMPORTED_TARGET xcb)

add_library(vexlitejsapi SHARED ${sources})
target_include_directories(vexlitejsapi
    PRIVATE ${PROJECT_SOURCE_DIR}
    INTERFACE $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
target_link_libraries(vexlitejsapi
    PUBLIC vexlite_platform
    PRIVATE $<BUILD_INTERFACE:vexlite_suite> $<BUILD_INTERFACE:vexlite_build_flags> Qt5::Network Qt5::Widgets Qt5::X11Extras
        $<BUILD_INTERFACE:cloud_messages> PkgConfig::XCB ZLIB::ZLIB)
# Static locals in inline code must not keep the library from being unloaded.
target_compile_options(vexlitejsapi PRIVATE -fno-gnu-unique)
target_link_options(vexlitejsapi PRIVATE
    -Wl,-z,defs -Wl,--version-script=${PROJECT_SOURCE_DIR}/framework/exports.map)
set_target_properties(vexlitejsapi PROPERTIES
    AUTOMOC ON
    CXX_VISIBILITY_PRESET hidden
    C_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON
    LINK_DEPENDS ${PROJECT_SOURCE_DIR}/framework/exports.map)
