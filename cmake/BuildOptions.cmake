# What every target of the project is compiled with. Log lines name source files, so their paths are
# those inside the project, whatever machine builds it. GCC 12 believes at -O3 that a literal and the
# string that it is joined with may overlap (its bug 105651).
add_library(build_options INTERFACE)
target_compile_options(build_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wvla -Wformat=2 -Wundef -Werror=return-type
    $<$<COMPILE_LANG_AND_ID:CXX,GNU>:-Wno-restrict>
    -fmacro-prefix-map=${PROJECT_SOURCE_DIR}/=)

# What makes an error in memory harder to use, for all that runs beside the plug-in; what of it the
# plug-in has room for stands in its own CMakeLists.txt. The checks of lengths need an optimiser, and the
# sanitizers have their own.
add_library(hardening INTERFACE)
if(NOT SMART_ROUTER_SANITIZERS)
    target_compile_options(hardening INTERFACE
        -fstack-protector-strong
        $<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=3>)
endif()
target_link_options(hardening INTERFACE -Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)

# What the presets for tests add to the code that is tested. The plug-in is also built without it, as
# it ships.
add_library(instrumentation INTERFACE)

# What they add to the tests themselves: what watches memory and threads. Everything else would cost
# more time to compile than all the code that is tested, and say nothing about it.
add_library(test_instrumentation INTERFACE)

if(SMART_ROUTER_SANITIZERS)
    target_link_options(test_instrumentation INTERFACE -fsanitize=${SMART_ROUTER_SANITIZERS})
    string(REGEX REPLACE ",?undefined" "" memory_or_threads "${SMART_ROUTER_SANITIZERS}")
    set(options -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_compile_options(test_instrumentation INTERFACE
        -fsanitize=${memory_or_threads} ${options})
    target_link_options(instrumentation INTERFACE -fsanitize=${SMART_ROUTER_SANITIZERS})
    target_compile_options(instrumentation INTERFACE
        -fsanitize=${SMART_ROUTER_SANITIZERS} ${options})
endif()
if(SMART_ROUTER_COVERAGE)
    # A test that includes a header of the plug-in brings its functions along, and the linker may take
    # that copy of them: it has to count as well.
    foreach(counted instrumentation test_instrumentation)
        target_link_options(${counted} INTERFACE --coverage)
        target_compile_options(${counted} INTERFACE --coverage)
    endforeach()
endif()
