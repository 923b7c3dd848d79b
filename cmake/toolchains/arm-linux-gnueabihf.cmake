# Cross-compiles for 32-bit ARM with Debian's compiler and the root file system of scripts/arm-sysroot.sh.
# With MOX_ARM_EMULATED, what is built runs under user-mode emulation on the machine that built it, not on a board.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR arm)

set(MOX_ARM_SYSROOT "${CMAKE_CURRENT_LIST_DIR}/../../build/arm-sysroot" CACHE PATH "Root file system of the target")
get_filename_component(CMAKE_SYSROOT "${MOX_ARM_SYSROOT}" ABSOLUTE)
option(MOX_ARM_EMULATED "Programs take loader and libraries from MOX_ARM_SYSROOT" OFF)
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES MOX_ARM_SYSROOT MOX_ARM_EMULATED)
if(NOT EXISTS "${CMAKE_SYSROOT}/.mox-sysroot")
  message(FATAL_ERROR "No root file system in ${CMAKE_SYSROOT}: run scripts/arm-sysroot.sh '${CMAKE_SYSROOT}'")
endif()

set(CMAKE_C_COMPILER arm-linux-gnueabihf-gcc)
set(CMAKE_CXX_COMPILER arm-linux-gnueabihf-g++)
set(CMAKE_LIBRARY_ARCHITECTURE arm-linux-gnueabihf)

# Programs come from the machine, everything that is linked or included from the target.
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_SYSROOT_DIR} "${CMAKE_SYSROOT}")
set(ENV{PKG_CONFIG_LIBDIR}
    "${CMAKE_SYSROOT}/usr/lib/arm-linux-gnueabihf/pkgconfig:${CMAKE_SYSROOT}/usr/share/pkgconfig")

# The emulator's own way (-L) lays the root file system over the machine's for every absolute path, so that programs
# would see another /bin and /lib than the sandbox and the shell that they start. The old kind of run-time path also
# holds for what the libraries themselves need.
if(MOX_ARM_EMULATED)
  find_program(MOX_QEMU_ARM NAMES qemu-arm qemu-arm-static)
  set(CMAKE_CROSSCOMPILING_EMULATOR "${MOX_QEMU_ARM}")
  string(JOIN "," emulatedLinking "-Wl" "--dynamic-linker=${CMAKE_SYSROOT}/lib/ld-linux-armhf.so.3"
         "--disable-new-dtags" "-rpath=${CMAKE_SYSROOT}/lib/arm-linux-gnueabihf"
         "-rpath=${CMAKE_SYSROOT}/usr/lib/arm-linux-gnueabihf")
  set(CMAKE_EXE_LINKER_FLAGS_INIT "${emulatedLinking}")
endif()
