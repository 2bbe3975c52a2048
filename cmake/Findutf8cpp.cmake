# SPDX-License-Identifier: MIT
# utf8cpp is header-only, but Debian installs its CMake package in the folder of one architecture, which
# builds for other architectures do not search.
find_path(utf8cpp_INCLUDE_DIR utf8.h PATH_SUFFIXES utf8cpp)
include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(utf8cpp REQUIRED_VARS utf8cpp_INCLUDE_DIR)
mark_as_advanced(utf8cpp_INCLUDE_DIR)
if(utf8cpp_FOUND AND NOT TARGET utf8cpp)
    add_library(utf8cpp INTERFACE IMPORTED)
    set_target_properties(utf8cpp PROPERTIES INTERFACE_INCLUDE_DIRECTORIES ${utf8cpp_INCLUDE_DIR})
endif()
