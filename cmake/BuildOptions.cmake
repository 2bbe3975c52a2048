# SPDX-License-Identifier: MIT
# Options for all targets of the project. Log lines contain the names of source files, so their paths are
# made relative to the project. GCC 12 warns wrongly at -O3 that a literal and the string that it is
# concatenated with may overlap (its bug 105651).
add_library(build_options INTERFACE)
target_compile_options(build_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wvla -Wformat=2 -Wundef -Werror=return-type
    $<$<COMPILE_LANG_AND_ID:CXX,GNU>:-Wno-restrict>
    -fmacro-prefix-map=${PROJECT_SOURCE_DIR}/=)

# Options that make memory errors harder to exploit, for everything except the plug-in, whose
# CMakeLists.txt has those that it has room for. The length checks need optimisation, and the sanitizers
# have their own.
add_library(hardening INTERFACE)
if(NOT SMART_ROUTER_SANITIZERS)
    target_compile_options(hardening INTERFACE
        -fstack-protector-strong
        $<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=3>)
endif()
target_link_options(hardening INTERFACE -Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)

# Whether programs can be loaded at any address. Not with the sanitizers: the descriptions of their checks contain
# almost two million addresses, and relocating them would take a third of the processor time of a start of the agent.
if(SMART_ROUTER_SANITIZERS)
    set(position_independent_programs OFF)
else()
    set(position_independent_programs ON)
endif()

# What the presets for tests add to the tested code. The plug-in is also built without it, as it ships.
add_library(instrumentation INTERFACE)

# What they add to the tests themselves: only the checks of memory and threads. The others would take
# more time to compile than all the tested code, and find nothing in it.
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
    foreach(instrumented instrumentation test_instrumentation)
        target_link_options(${instrumented} INTERFACE
            $<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:-no-pie>)
    endforeach()
endif()
if(SMART_ROUTER_COVERAGE)
    # A test that includes a header of the plug-in has a copy of its inline functions, which the linker
    # may choose: coverage has to count that copy as well.
    foreach(counted instrumentation test_instrumentation)
        target_link_options(${counted} INTERFACE --coverage)
        target_compile_options(${counted} INTERFACE --coverage)
    endforeach()
endif()
