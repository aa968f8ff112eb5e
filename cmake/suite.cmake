# The suite's side: the declarations in platform/ and the libraries that implement them, real or stand-in.
add_library(vexlite_platform INTERFACE)
add_library(VexliteJsApi::vexlite_platform ALIAS vexlite_platform)
target_compile_features(vexlite_platform INTERFACE cxx_std_20)
target_link_libraries(vexlite_platform INTERFACE Qt5::Widgets)

if(VEXLITE_SUITE_DIR)
    # Whoever uses the installed library reads the suite's own headers, too.
    target_include_directories(vexlite_platform SYSTEM INTERFACE ${VEXLITE_SUITE_DIR}/include)
    foreach(name vexlite krt kbase libsafec)
        find_library(VEXLITE_SUITE_${name} ${name} PATHS ${VEXLITE_SUITE_DIR}/lib NO_DEFAULT_PATH REQUIRED)
        list(APPEND suite_libraries ${VEXLITE_SUITE_${name}})
    endforeach()
else()
    target_include_directories(vexlite_platform INTERFACE
        $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/platform>
        $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/vexlitejsapi/platform>)
    set(suite_libraries vexlite krt kbase safec)
endif()

# What the library links: the suite's libraries, by their declarations only. What the application itself offers is looked up
# in the process when the library is loaded, whatever has brought it there: an executable brings novasuite, of the stand-in.
add_library(vexlite_suite INTERFACE)
target_link_libraries(vexlite_suite INTERFACE vexlite_platform ${suite_libraries})
