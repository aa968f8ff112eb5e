# vexlite_script(VARIABLE FILE...): the contents of scripts, in their order.
function(vexlite_script SCRIPT_VARIABLE)
    set(all)
    foreach(file IN LISTS ARGN)
        cmake_path(ABSOLUTE_PATH file BASE_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR} NORMALIZE)
        set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${file})
        file(READ ${file} script)
        string(APPEND all "${script}")
    endforeach()
    set(${SCRIPT_VARIABLE} "${all}" PARENT_SCOPE)
endfunction()

# vexlite_prelude(NAMESPACE CONSTANT): makes CONSTANT.cpp, with the folder's prelude.js and the scripts in it, each named by a
# variable. The folder's prelude.h declares the constant. Every document holds the script, so lines of comment and indents are left out.
function(vexlite_prelude PRELUDE_NAMESPACE PRELUDE_CONSTANT)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/prelude.js)
    configure_file(prelude.js ${PRELUDE_CONSTANT}.js @ONLY)
    file(READ ${CMAKE_CURRENT_BINARY_DIR}/${PRELUDE_CONSTANT}.js PRELUDE)
    string(REGEX REPLACE "\n *//[^#\n][^\n]*" "" PRELUDE "${PRELUDE}")
    string(REGEX REPLACE "\n[ \n]+" "\n" PRELUDE "${PRELUDE}")
    cmake_path(RELATIVE_PATH CMAKE_CURRENT_SOURCE_DIR BASE_DIRECTORY ${PROJECT_SOURCE_DIR} OUTPUT_VARIABLE folder)
    set(PRELUDE_HEADER ${folder}/prelude.h)
    configure_file(${PROJECT_SOURCE_DIR}/host/engine/preludesource.cpp.in ${PRELUDE_CONSTANT}.cpp @ONLY)
endfunction()
