# SPDX-License-Identifier: MIT
# 32-bit little-endian MIPS with Debian's cross compiler; programs are run by qemu.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR mipsel)
set(CMAKE_C_COMPILER mipsel-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER mipsel-linux-gnu-g++)
set(CMAKE_STRIP mipsel-linux-gnu-strip)
set(CMAKE_LIBRARY_ARCHITECTURE mipsel-linux-gnu)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-mipsel)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
