# Install rules, find_package(VexliteJsApi), pkg-config, and the Debian packages. Components: `library`, `dev` (what is needed
# to build with the library, and to read about it), and `standin` (the stand-in suite).
include(CMakePackageConfigHelpers)

set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME dev)
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/VexliteJsApi)

# The plain name goes with the library: suites load it by that.
install(TARGETS vexlitejsapi EXPORT VexliteJsApiTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library)
install(TARGETS vexlite_platform vexlitejsapi_c EXPORT VexliteJsApiTargets)
install(FILES ${public_headers} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/vexlitejsapi)
install(EXPORT VexliteJsApiTargets NAMESPACE VexliteJsApi:: DESTINATION ${package_dir})
configure_package_config_file(cmake/VexliteJsApiConfig.cmake.in
    ${CMAKE_CURRENT_BINARY_DIR}/VexliteJsApiConfig.cmake
    INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/VexliteJsApiConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES
    ${CMAKE_CURRENT_BINARY_DIR}/VexliteJsApiConfig.cmake
    ${CMAKE_CURRENT_BINARY_DIR}/VexliteJsApiConfigVersion.cmake
    DESTINATION ${package_dir})

if(VEXLITE_SUITE_DIR)
    set(suite_include_dir ${VEXLITE_SUITE_DIR}/include)
else()
    set(suite_include_dir "\${includedir}/vexlitejsapi/platform")
    install(DIRECTORY platform/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/vexlitejsapi/platform
        FILES_MATCHING PATTERN "*.h")
endif()
cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX BASE_DIRECTORY ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig
    OUTPUT_VARIABLE prefix_from_pkgconfig)
foreach(name vexlitejsapi vexlitejsapi-c)
    configure_file(cmake/${name}.pc.in ${name}.pc @ONLY)
    install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${name}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endforeach()

# Laid out as in the source tree, so that the docs' links lead there.
set(data_dir ${CMAKE_INSTALL_DATADIR}/vexlitejsapi)
install(FILES README.md CHANGELOG.md DESTINATION ${data_dir})
install(DIRECTORY docs DESTINATION ${data_dir})
install(PROGRAMS scripts/check-suite DESTINATION ${data_dir}/scripts)
install(FILES scripts/suitesymbols.py DESTINATION ${data_dir}/scripts)
install(FILES framework/exports.txt framework/imports.txt DESTINATION ${data_dir}/framework)
install(DIRECTORY examples/embed DESTINATION ${data_dir}/examples PATTERN build EXCLUDE)
install(FILES types/README.md types/api.json types/nova-extension.d.ts types/standin.d.ts types/package.json
    DESTINATION ${data_dir}/types)
install(DIRECTORY testkit DESTINATION ${data_dir})

if(NOT PROJECT_IS_TOP_LEVEL)
    return()
endif()

set(CPACK_COMPONENTS_ALL library dev)
if(VEXLITE_SUITE_DIR)
    set(suite_library_dir ${VEXLITE_SUITE_DIR}/lib)
else()
    list(APPEND CPACK_COMPONENTS_ALL standin)
    set(suite_library_dir ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
    install(DIRECTORY examples/ DESTINATION ${data_dir}/examples COMPONENT standin
        PATTERN embed EXCLUDE PATTERN node_modules EXCLUDE PATTERN ".gitignore" EXCLUDE PATTERN ".npmrc" EXCLUDE)
    install(FILES host/profile/profile.schema.json DESTINATION ${data_dir} COMPONENT standin)
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME vexlitejsapi)
set(CPACK_PACKAGE_CONTACT "The vexlitejsapi developers <vexlitejsapi@example.org>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Native JavaScript objects for the pages of a desktop office suite")
set(CPACK_COMPONENT_LIBRARY_DESCRIPTION "The library that an office suite loads for its pages.")
set(CPACK_COMPONENT_DEV_DESCRIPTION
    "For building a suite with the library: headers, the C functions as a static library, types of the pages' objects, docs.")
set(CPACK_COMPONENT_STANDIN_DESCRIPTION "A stand-in suite that runs page script with the library: for trusted pages only.")
set(CPACK_COMPONENT_DEV_DEPENDS library)
set(CPACK_COMPONENT_STANDIN_DEPENDS library)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME vexlitejsapi)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_DEV_PACKAGE_NAME vexlitejsapi-dev)
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEV_PACKAGE_DEPENDS "qtbase5-dev (>= 5.15), libminizip-dev, zlib1g-dev")
# check-suite
set(CPACK_DEBIAN_DEV_PACKAGE_RECOMMENDS "python3, binutils")
set(CPACK_DEBIAN_STANDIN_PACKAGE_NAME vexlitejsapi-standin)
set(CPACK_DEBIAN_STANDIN_PACKAGE_SECTION devel)
# Loaded at run time, so nothing links it.
set(CPACK_DEBIAN_STANDIN_PACKAGE_DEPENDS "libqt5sql5-sqlite")
# The icons of its skins.
set(CPACK_DEBIAN_STANDIN_PACKAGE_RECOMMENDS "breeze-icon-theme")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The suite's libraries, real or stand-in, belong to no package that the library depends on.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${suite_library_dir})
set(CPACK_STRIP_FILES ON)
include(CPack)
