# Debian's cross compiler for 64-bit ARM; tools/arm64 lays out the libraries in ORMUND_SYSROOT. What
# the build makes and runs itself, like the program that draws the skin, runs under qemu.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_C_COMPILER aarch64-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES ORMUND_SYSROOT)
if(NOT ORMUND_SYSROOT)
  set(ORMUND_SYSROOT $ENV{ORMUND_SYSROOT})
endif()
set(CMAKE_SYSROOT ${ORMUND_SYSROOT})
set(CMAKE_LIBRARY_ARCHITECTURE aarch64-linux-gnu)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-aarch64 -L ${ORMUND_SYSROOT})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE BOTH) # the font and the framework belong to no machine
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_DIR} "")
set(ENV{PKG_CONFIG_SYSROOT_DIR} ${ORMUND_SYSROOT})
set(ENV{PKG_CONFIG_LIBDIR}
  ${ORMUND_SYSROOT}/usr/lib/aarch64-linux-gnu/pkgconfig:${ORMUND_SYSROOT}/usr/share/pkgconfig)
