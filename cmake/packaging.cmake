# Install rules, find_package(VexliteJsApi), and the Debian packages. Components: `library`, `dev` (headers and the
# CMake package), and `standin` (the stand-in suite).
include(CMakePackageConfigHelpers)

set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME dev)
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/VexliteJsApi)

install(TARGETS vexlitejsapi EXPORT VexliteJsApiTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library)
install(TARGETS vexlite_platform EXPORT VexliteJsApiTargets)
install(FILES exports/vexlitejsapi.h framework/entry.h framework/export.h framework/novaextensionutils.h
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/vexlitejsapi)
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

set(CPACK_COMPONENTS_ALL library dev)
if(VEXLITE_SUITE_DIR)
    set(suite_library_dir ${VEXLITE_SUITE_DIR}/lib)
else()
    list(APPEND CPACK_COMPONENTS_ALL standin)
    set(suite_library_dir ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
    install(DIRECTORY platform/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/vexlitejsapi/platform
        FILES_MATCHING PATTERN "*.h")
    install(DIRECTORY examples/ DESTINATION ${CMAKE_INSTALL_DATADIR}/vexlitejsapi/examples COMPONENT standin)
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME vexlitejsapi)
set(CPACK_PACKAGE_CONTACT "The vexlitejsapi developers <vexlitejsapi@example.org>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Native JavaScript objects for the pages of a desktop office suite")
set(CPACK_COMPONENT_LIBRARY_DESCRIPTION "The library that an office suite loads for its pages.")
set(CPACK_COMPONENT_DEV_DESCRIPTION "Headers and the CMake package, for building a suite with the library.")
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
set(CPACK_DEBIAN_DEV_PACKAGE_DEPENDS "qtbase5-dev (>= 5.15)")
set(CPACK_DEBIAN_STANDIN_PACKAGE_NAME vexlitejsapi-standin)
set(CPACK_DEBIAN_STANDIN_PACKAGE_SECTION devel)
# Loaded at run time, so nothing links it.
set(CPACK_DEBIAN_STANDIN_PACKAGE_DEPENDS "libqt5sql5-sqlite")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The suite's libraries, real or stand-in, belong to no package that the library depends on.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${suite_library_dir})
set(CPACK_STRIP_FILES ON)
include(CPack)
