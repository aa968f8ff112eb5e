# vexlite_prelude(NAMESPACE): makes preludesource.cpp, with the folder's prelude.js and the script that all engines share in it.
function(vexlite_prelude PRELUDE_NAMESPACE)
    set(shared ${PROJECT_SOURCE_DIR}/host/engine/pagescript.js)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/prelude.js ${shared})
    file(READ ${shared} PAGE_SCRIPT)
    configure_file(prelude.js prelude.js @ONLY)
    file(READ ${CMAKE_CURRENT_BINARY_DIR}/prelude.js PRELUDE)
    configure_file(${PROJECT_SOURCE_DIR}/host/engine/preludesource.cpp.in preludesource.cpp @ONLY)
endfunction()
