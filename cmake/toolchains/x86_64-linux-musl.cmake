# SPDX-License-Identifier: MIT
# The C library musl instead of glibc, with Debian's musl-tools. There is no C++ library for it, and the
# plug-in does not need one.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER musl-gcc)
set(CMAKE_CXX_COMPILER g++)
set(CMAKE_CXX_FLAGS_INIT "-specs /usr/lib/x86_64-linux-musl/musl-gcc.specs")
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
