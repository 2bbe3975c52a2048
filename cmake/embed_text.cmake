# SPDX-License-Identifier: MIT
# The script that embed_texts() runs, with NAME, FILES and DIRECTORY.
set(texts "")
foreach(file IN LISTS FILES)
    file(READ ${file} text)
    get_filename_component(file_name ${file} NAME)
    # Compilers limit the length of a literal, but not of adjacent ones, so the text is split into pieces.
    string(LENGTH "${text}" length)
    set(pieces "")
    set(at 0)
    while(at LESS length)
        string(SUBSTRING "${text}" ${at} 8000 piece)
        string(APPEND pieces "\n     R\"embedded(${piece})embedded\"")
        math(EXPR at "${at} + 8000")
    endwhile()
    # The suffix saves the compiler counting the characters, which it refuses to do for a long text.
    string(APPEND texts "    {\"${file_name}\",${pieces}sv},\n")
endforeach()

file(WRITE ${DIRECTORY}/embedded/${NAME}.h
"#pragma once

#include <span>
#include <string_view>

namespace embedded {

#ifndef EMBEDDED_TEXT
#define EMBEDDED_TEXT
struct Text {
    std::string_view file_name;
    std::string_view text;
};
#endif

std::span<const Text> ${NAME}();

} // namespace embedded
")

file(WRITE ${DIRECTORY}/${NAME}.cpp
"#include \"embedded/${NAME}.h\"

using namespace std::string_view_literals;

namespace {

constexpr embedded::Text kTexts[] = {
${texts}};

} // namespace

std::span<const embedded::Text> embedded::${NAME}()
{
    return kTexts;
}
")
