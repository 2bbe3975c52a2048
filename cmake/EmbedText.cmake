# SPDX-License-Identifier: MIT
# embed_texts(TARGET NAME FILE...): compiles text files into a target, so that it needs no files at
# run time. The target gets the header embedded/NAME.h with
#   std::span<const embedded::Text> embedded::NAME()   each with the file's name and its text.
function(embed_texts target name)
    set(directory ${CMAKE_CURRENT_BINARY_DIR}/embedded_${name})
    set(script ${PROJECT_SOURCE_DIR}/cmake/embed_text.cmake)
    add_custom_command(
        OUTPUT ${directory}/embedded/${name}.h ${directory}/${name}.cpp
        COMMAND ${CMAKE_COMMAND} -D NAME=${name} -D "FILES=${ARGN}" -D DIRECTORY=${directory}
                -P ${script}
        DEPENDS ${script} ${ARGN}
        VERBATIM)
    # The compilers used here accept longer literals than the standard requires.
    set_source_files_properties(${directory}/${name}.cpp PROPERTIES
        COMPILE_OPTIONS $<$<CXX_COMPILER_ID:Clang>:-Wno-overlength-strings>)
    target_sources(${target} PRIVATE ${directory}/embedded/${name}.h ${directory}/${name}.cpp)
    target_include_directories(${target} PRIVATE ${directory})
endfunction()
