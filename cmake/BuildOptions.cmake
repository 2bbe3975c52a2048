# What every target of the project is compiled with. Log lines name source files, so their paths are
# those inside the project, whatever machine builds it.
add_library(build_options INTERFACE)
target_compile_options(build_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wvla -Wformat=2 -Wundef -Werror=return-type
    -fmacro-prefix-map=${PROJECT_SOURCE_DIR}/=)

# What the presets for tests add. The plug-in is also built without it, as it ships.
add_library(instrumentation INTERFACE)
if(SMART_ROUTER_SANITIZERS)
    target_compile_options(instrumentation INTERFACE
        -fsanitize=${SMART_ROUTER_SANITIZERS} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(instrumentation INTERFACE -fsanitize=${SMART_ROUTER_SANITIZERS})
endif()
if(SMART_ROUTER_COVERAGE)
    target_compile_options(instrumentation INTERFACE --coverage)
    target_link_options(instrumentation INTERFACE --coverage)
endif()
