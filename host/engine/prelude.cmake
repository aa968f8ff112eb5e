# vexlite_prelude(NAMESPACE): makes preludesource.cpp, with the folder's prelude.js and the script that all engines share in it.
# The folder's prelude.h declares it. Every document holds the script, so lines of comment and indents are left out.
function(vexlite_prelude PRELUDE_NAMESPACE)
    set(shared ${PROJECT_SOURCE_DIR}/host/engine/pagescript.js)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/prelude.js ${shared})
    file(READ ${shared} PAGE_SCRIPT)
    configure_file(prelude.js prelude.js @ONLY)
    file(READ ${CMAKE_CURRENT_BINARY_DIR}/prelude.js PRELUDE)
    string(REGEX REPLACE "\n *//[^#\n][^\n]*" "" PRELUDE "${PRELUDE}")
    string(REGEX REPLACE "\n[ \n]+" "\n" PRELUDE "${PRELUDE}")
    cmake_path(RELATIVE_PATH CMAKE_CURRENT_SOURCE_DIR BASE_DIRECTORY ${PROJECT_SOURCE_DIR} OUTPUT_VARIABLE folder)
    set(PRELUDE_HEADER ${folder}/prelude.h)
    configure_file(${PROJECT_SOURCE_DIR}/host/engine/preludesource.cpp.in preludesource.cpp @ONLY)
endfunction()
