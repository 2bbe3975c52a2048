# SPDX-License-Identifier: MIT
# toml++ as headers alone: Debian's own CMake package links a shared library, which every start of the
# agent would load.
find_path(tomlplusplus_INCLUDE_DIR toml++/toml.h)
include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(tomlplusplus REQUIRED_VARS tomlplusplus_INCLUDE_DIR)
mark_as_advanced(tomlplusplus_INCLUDE_DIR)
if(tomlplusplus_FOUND AND NOT TARGET tomlplusplus)
    add_library(tomlplusplus INTERFACE IMPORTED)
    set_target_properties(tomlplusplus PROPERTIES INTERFACE_INCLUDE_DIRECTORIES ${tomlplusplus_INCLUDE_DIR})
    # Only parsing is used. The depth to which values may be nested bounds the stack that a file takes.
    target_compile_definitions(tomlplusplus INTERFACE
        TOML_HEADER_ONLY=1 TOML_ENABLE_FORMATTERS=0 TOML_MAX_NESTED_VALUES=8)
endif()
