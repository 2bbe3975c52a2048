# What every target of the project is compiled with. Log lines name source files, so their paths are
# those inside the project, whatever machine builds it.
add_library(build_options INTERFACE)
target_compile_options(build_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wvla -Wformat=2 -Wundef -Werror=return-type
    -fmacro-prefix-map=${PROJECT_SOURCE_DIR}/=)

add_library(sanitizers INTERFACE)
if(SMART_ROUTER_SANITIZERS)
    target_compile_options(sanitizers INTERFACE
        -fsanitize=${SMART_ROUTER_SANITIZERS} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(sanitizers INTERFACE -fsanitize=${SMART_ROUTER_SANITIZERS})
endif()
