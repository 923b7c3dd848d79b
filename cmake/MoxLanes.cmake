# How a lane differs from the plain build: compiler cache, hardening, sanitizers, coverage. CMakePresets.json sets
# the switches; they hold for every target of the tree, tests included.
include_guard(GLOBAL)

option(MOX_CCACHE "Compile through ccache where it is installed" ON)
option(MOX_HARDENING "Harden what is built, as for the board" OFF)
option(MOX_COVERAGE "Count the lines that run" OFF)
set(MOX_SANITIZE "" CACHE STRING "Sanitizers, as -fsanitize takes them (empty: none)")
option(MOX_FUZZ "Let clang's fuzzer drive the fuzz targets" OFF)
set(MOX_TEST_TIMEOUT_FACTOR 1 CACHE STRING "By how much the deadlines of the tests are stretched (whole number)")

if(MOX_CCACHE)
  find_program(MOX_CCACHE_PROGRAM ccache)
  mark_as_advanced(MOX_CCACHE_PROGRAM)
  foreach(language IN ITEMS C CXX)
    if(MOX_CCACHE_PROGRAM AND NOT CMAKE_${language}_COMPILER_LAUNCHER)
      set(CMAKE_${language}_COMPILER_LAUNCHER "${MOX_CCACHE_PROGRAM}")
    endif()
  endforeach()
endif()

# Position independent executables, and the linker told so: address randomisation needs both.
include(CheckPIESupported)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
check_pie_supported(LANGUAGES C CXX)

if(MOX_HARDENING)
  add_compile_options(-fstack-protector-strong)
  # Fortified functions exist only in optimised code; some compilers define the macro by themselves.
  add_compile_options($<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE> $<$<NOT:$<CONFIG:Debug>>:-D_FORTIFY_SOURCE=2>)
  add_link_options(LINKER:-z,relro LINKER:-z,now LINKER:-z,noexecstack)
endif()

if(MOX_SANITIZE)
  add_compile_options(-fsanitize=${MOX_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${MOX_SANITIZE})
endif()

if(MOX_COVERAGE)
  add_compile_options(--coverage -fprofile-update=atomic)
  add_link_options(--coverage)
endif()

# A test framework for the board's processor comes as source: there is none to link in its root file system.
if(CMAKE_CROSSCOMPILING)
  include(FetchContent)
  set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
  set(FETCHCONTENT_SOURCE_DIR_GTEST /usr/src/googletest CACHE PATH "Sources of the test framework")
  FetchContent_Declare(GTest SOURCE_DIR "${FETCHCONTENT_SOURCE_DIR_GTEST}" OVERRIDE_FIND_PACKAGE)
endif()
