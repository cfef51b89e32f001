# Builds for the device's processor on another machine: Debian's cross compiler, the libraries of a folder that
# packaging/make-sysroot fills, the code generators of this machine, and an emulator for the tests.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR arm)
set(CMAKE_LIBRARY_ARCHITECTURE arm-linux-gnueabihf)

set(OZNA_SYSROOT ${CMAKE_CURRENT_LIST_DIR}/../build/sysroot-armhf CACHE PATH "The device's libraries and headers")
# Every project that only tries the compiler has to find it too.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES OZNA_SYSROOT)
get_filename_component(CMAKE_SYSROOT ${OZNA_SYSROOT} ABSOLUTE)
set(CMAKE_C_COMPILER arm-linux-gnueabihf-gcc)
set(CMAKE_CXX_COMPILER arm-linux-gnueabihf-g++)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-arm-static;-L;${CMAKE_SYSROOT})

set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# The generators run here, so they are this machine's own; both are of one version of Debian.
set(QT_HOST_PATH /usr)
set(QT_HOST_PATH_CMAKE_DIR /usr/lib/${CMAKE_HOST_SYSTEM_PROCESSOR}-linux-gnu/cmake)

# Libraries that are found by pkg-config come from the same folder.
set(ENV{PKG_CONFIG_LIBDIR} ${CMAKE_SYSROOT}/usr/lib/${CMAKE_LIBRARY_ARCHITECTURE}/pkgconfig)
set(ENV{PKG_CONFIG_SYSROOT_DIR} ${CMAKE_SYSROOT})
