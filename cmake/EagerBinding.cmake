# eager_binding(OUTPUT): writes a source that takes the address of every function that the plug-in
# calls and does not have. On MIPS the linker makes a stub of 16 bytes for a function that is only ever
# called, to look it up at the first call. The plug-in has all of them looked up when it is loaded, and
# four bytes for each are all that it takes to have no stubs. What is written there is never run: it has
# to be kept by name, as with -Wl,--undefined=eager_binding.
function(eager_binding output)
    set(device_header smart_router_service/include/smart_router_service/device_access.h)
    set(needed_list smart_router_service/needed.txt)
    foreach(list IN ITEMS ${device_header} ${needed_list})
        set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${list})
    endforeach()
    file(STRINGS ${PROJECT_SOURCE_DIR}/${device_header} functions REGEX "^(int32_t|void) devapi_")
    list(TRANSFORM functions REPLACE "^[a-z0-9_]+ ([A-Za-z0-9_]+).*" "\\1")
    file(STRINGS ${PROJECT_SOURCE_DIR}/${needed_list} others REGEX "^[A-Za-z][A-Za-z0-9_]+$")
    list(APPEND functions ${others})
    list(TRANSFORM functions REPLACE "(.+)" "    \"lw $25, %got(\\1)($28)\\\\n\"")
    list(JOIN functions "\n" instructions)
    file(CONFIGURE OUTPUT ${output} CONTENT
"__asm__(
    \".section .text.eager_binding, \\\"ax\\\", @progbits\\n\"
    \".globl eager_binding\\n\"
    \".hidden eager_binding\\n\"
    \"eager_binding:\\n\"
    \".set push\\n\"
    \".set nomips16\\n\"
    \".set noreorder\\n\"
${instructions}
    \".set pop\\n\"
    \".previous\\n\");
")
endfunction()
