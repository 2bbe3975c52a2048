# SPDX-License-Identifier: MIT
# eager_binding(OUTPUT): writes a source that takes the address of every undefined function that the
# plug-in calls. On MIPS, the linker generates a stub of 16 bytes for a function that is only called, for
# lazy binding. The plug-in binds all functions when it is loaded; taking their addresses, at four bytes
# each, avoids the stubs. The code is never run, so the linker has to keep it by name, as with
# -Wl,--undefined=eager_binding.
function(eager_binding output)
    set(needed_list ${PROJECT_SOURCE_DIR}/smart_router_service/needed.txt)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${needed_list})
    file(STRINGS ${needed_list} others REGEX "^[A-Za-z][A-Za-z0-9_]+$")
    list(TRANSFORM others REPLACE "(.+)" "    TAKE(, \\1, , )")
    list(JOIN others "\n" others)
    file(CONFIGURE OUTPUT ${output} CONTENT
"#include \"smart_router_service/device_functions.h\"

#define TAKE(result, name, parameters, arguments) \"lw $25, %got(\" #name \")($28)\\n\"

__asm__(
    \".section .text.eager_binding, \\\"ax\\\", @progbits\\n\"
    \".globl eager_binding\\n\"
    \".hidden eager_binding\\n\"
    \"eager_binding:\\n\"
    \".set push\\n\"
    \".set nomips16\\n\"
    \".set noreorder\\n\"
    DEVICE_FUNCTIONS(TAKE)
${others}
    \".set pop\\n\"
    \".previous\\n\");
")
endfunction()
