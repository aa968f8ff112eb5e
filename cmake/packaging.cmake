# Install rules, find_package(VexliteJsApi), and the Debian package.
include(CMakePackageConfigHelpers)

install(TARGETS vexlitejsapi EXPORT VexliteJsApiTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(TARGETS vexlite_platform EXPORT VexliteJsApiTargets)
install(FILES framework/entry.h framework/novaextensionutils.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/vexlitejsapi)
install(EXPORT VexliteJsApiTargets
    NAMESPACE VexliteJsApi::
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/VexliteJsApi)
configure_package_config_file(cmake/VexliteJsApiConfig.cmake.in
    ${CMAKE_CURRENT_BINARY_DIR}/VexliteJsApiConfig.cmake
    INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/VexliteJsApi)
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/VexliteJsApiConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES
    ${CMAKE_CURRENT_BINARY_DIR}/VexliteJsApiConfig.cmake
    ${CMAKE_CURRENT_BINARY_DIR}/VexliteJsApiConfigVersion.cmake
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/VexliteJsApi)
install(DIRECTORY platform/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/vexlitejsapi/platform FILES_MATCHING PATTERN "*.h")
install(DIRECTORY examples/ DESTINATION ${CMAKE_INSTALL_DATADIR}/vexlitejsapi/examples)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME vexlitejsapi)
set(CPACK_PACKAGE_CONTACT "The vexlitejsapi developers <vexlitejsapi@example.org>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Native JavaScript objects for the pages of a desktop office suite")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The package's own libraries are looked for where the build has put them.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
set(CPACK_STRIP_FILES ON)
include(CPack)
