# How everything here is compiled and where it goes.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

if(VEXLITE_CCACHE)
    find_program(VEXLITE_CCACHE_PROGRAM ccache)
    foreach(language C CXX)
        if(VEXLITE_CCACHE_PROGRAM AND NOT CMAKE_${language}_COMPILER_LAUNCHER)
            set(CMAKE_${language}_COMPILER_LAUNCHER ${VEXLITE_CCACHE_PROGRAM})
        endif()
    endforeach()
endif()

# Sources of a target are compiled in batches: most time goes into Qt's headers, which each of them includes. The preset
# `debug` has a command for each source instead. What can not stand in a batch, since it has names of its neighbours'
# in its unnamed namespace, or macros, opts out: a source with
#   set_source_files_properties(NAME.cpp PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
# and a target with set_target_properties(NAME PROPERTIES UNITY_BUILD OFF).
if(PROJECT_IS_TOP_LEVEL)
    option(CMAKE_UNITY_BUILD "Compile sources in batches" ON)
endif()
set(CMAKE_UNITY_BUILD_BATCH_SIZE 16)

# Debian has a folder for the libraries of each architecture. CMake knows it only for the prefix /usr, which is that of the
# packages and not of the tree that they are made in.
if(PROJECT_IS_TOP_LEVEL AND EXISTS /etc/debian_version AND CMAKE_LIBRARY_ARCHITECTURE)
    set(CMAKE_INSTALL_LIBDIR lib/${CMAKE_LIBRARY_ARCHITECTURE} CACHE STRING "Where libraries are installed")
endif()
include(GNUInstallDirs)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)

# In the build tree libraries lie side by side in lib/. Installed, those of the stand-in suite have a folder of their
# own: their names belong to a suite. A suite of its own has loaded its libraries, or they lie beside ours.
set(VEXLITE_STANDIN_LIBDIR ${CMAKE_INSTALL_LIBDIR}/vexlitejsapi)
set(CMAKE_BUILD_WITH_INSTALL_RPATH ON)
set(CMAKE_INSTALL_RPATH "$ORIGIN")
if(NOT VEXLITE_SUITE_DIR)
    list(APPEND CMAKE_INSTALL_RPATH "$ORIGIN/vexlitejsapi;$ORIGIN/../lib;$ORIGIN/../${VEXLITE_STANDIN_LIBDIR}")
endif()

find_package(Qt5 5.15 REQUIRED COMPONENTS Core Gui Widgets Network X11Extras)

add_library(vexlite_build_flags INTERFACE)
target_compile_options(vexlite_build_flags INTERFACE -Wall -Wextra -Wpedantic $<$<BOOL:${VEXLITE_WERROR}>:-Werror>)
target_compile_definitions(vexlite_build_flags INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS QT_DEPRECATED_WARNINGS)
if(CMAKE_UNITY_BUILD)
    # A source in a batch is a header to GCC, which warns of a class there that holds one of an unnamed namespace.
    target_compile_options(vexlite_build_flags INTERFACE $<$<COMPILE_LANG_AND_ID:CXX,GNU>:-Wno-subobject-linkage>)
endif()
if(VEXLITE_SANITIZE)
    target_compile_options(vexlite_build_flags INTERFACE
        -fsanitize=${VEXLITE_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=undefined
        # The script engine is built without run-time types and shares templates of the standard library with us.
        -fno-sanitize=vptr)
    target_link_options(vexlite_build_flags INTERFACE -fsanitize=${VEXLITE_SANITIZE})
endif()
