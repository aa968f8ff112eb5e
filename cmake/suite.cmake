# The suite's side: the declarations in platform/ and the libraries that implement them, real or stand-in.
add_library(vexlite_platform INTERFACE)
target_link_libraries(vexlite_platform INTERFACE Qt5::Widgets)

if(VEXLITE_SUITE_DIR)
    # Whoever uses the installed library reads the suite's own headers, too.
    target_include_directories(vexlite_platform SYSTEM INTERFACE ${VEXLITE_SUITE_DIR}/include)
    foreach(name vexlite krt kbase libsafec novasuite)
        find_library(VEXLITE_SUITE_${name} ${name} PATHS ${VEXLITE_SUITE_DIR}/lib NO_DEFAULT_PATH REQUIRED)
        list(APPEND suite_libraries ${VEXLITE_SUITE_${name}})
    endforeach()
else()
    target_include_directories(vexlite_platform INTERFACE
        $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/platform>
        $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/vexlitejsapi/platform>)
    set(suite_libraries vexlite krt kbase safec novasuite)
endif()

# What the library links: the suite, by its declarations only.
add_library(vexlite_suite INTERFACE)
target_link_libraries(vexlite_suite INTERFACE vexlite_platform ${suite_libraries})
