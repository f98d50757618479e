# Cross-building for the gateway's 32-bit big-endian MIPS with Debian's
# g++-mips-linux-gnu and its sysroot:
#   cmake -S . -B build-mips -DCMAKE_TOOLCHAIN_FILE=cmake/toolchains/mips-linux-gnu.cmake
# Another SDK's toolchain: copy this file and set CALTOFAL_CROSS_PREFIX (the
# compilers' common prefix, e.g. /opt/sdk/bin/mips-openwrt-linux-musl-) and
# CALTOFAL_SYSROOT (the target's root with its headers and libraries), or pass
# them with -D. OpenWrt and Buildroot write a toolchain file of their own;
# their recipes in packaging/ use that one.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR mips)

set(CALTOFAL_CROSS_PREFIX "mips-linux-gnu-" CACHE STRING "Prefix of the cross compilers")
set(CALTOFAL_SYSROOT "/usr/mips-linux-gnu" CACHE PATH "The target's headers and libraries")

set(CMAKE_C_COMPILER ${CALTOFAL_CROSS_PREFIX}gcc)
set(CMAKE_CXX_COMPILER ${CALTOFAL_CROSS_PREFIX}g++)

# Libraries and headers come from the target's root only; programs from the
# host. Packages may come from the host too: CLI11 and nlohmann-json are
# header-only (the tests build GoogleTest from source for the target).
set(CMAKE_FIND_ROOT_PATH ${CALTOFAL_SYSROOT})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE BOTH)

# Target programs (tests, test discovery) run under qemu-mips with the sysroot.
find_program(CALTOFAL_QEMU qemu-mips)
if(CALTOFAL_QEMU)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${CALTOFAL_QEMU} -L ${CALTOFAL_SYSROOT})
endif()
