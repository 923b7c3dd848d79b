# What every target of the tree has in common: language level and warnings; and the functions that create a
# service and a test.
include_guard(GLOBAL)

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_C_STANDARD_REQUIRED ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

if(CMAKE_SIZEOF_VOID_P EQUAL 4)
  # Else a directory whose entries have 64-bit positions, or a large file, cannot be read.
  add_compile_definitions(_FILE_OFFSET_BITS=64)
endif()

set(THREADS_PREFER_PTHREAD_FLAG ON)
find_package(Threads REQUIRED)

add_library(mox_warnings INTERFACE)
target_compile_options(mox_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror
  $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor>)
if(CMAKE_SYSTEM_PROCESSOR MATCHES "^arm" AND CMAKE_CXX_COMPILER_ID STREQUAL GNU)
  # A note at each use of std::vector that compilers from before 2017 pass it in another way.
  target_compile_options(mox_warnings INTERFACE -Wno-psabi)
endif()
if(MOX_SANITIZE AND CMAKE_CXX_COMPILER_ID STREQUAL GNU)
  # The checks that are put in between hide from the compiler that a value was set.
  target_compile_options(mox_warnings INTERFACE -Wno-maybe-uninitialized)
endif()

# mox_service(NAME sources...): the executable MOX<NAME>Exe of one service.
function(mox_service name)
  add_executable(MOX${name}Exe ${ARGN})
  target_link_libraries(MOX${name}Exe PRIVATE mox_warnings MOX::mox MOX::kit MOX::platform)
  set_target_properties(MOX${name}Exe PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")
endfunction()

# mox_test(NAME [LABEL unit|contract|scenario|...] [TIMEOUT seconds] SOURCES files... [LIBS targets...]):
# one GoogleTest executable; each of its tests is a ctest test of its own with a deadline.
function(mox_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "LABEL;TIMEOUT" "SOURCES;LIBS")
  if(NOT arg_LABEL)
    set(arg_LABEL unit)
  endif()
  if(NOT arg_TIMEOUT)
    set(arg_TIMEOUT 60)
  endif()
  set(main mox_test_main)
  if(arg_LIBS MATCHES "MOX::testkit")
    set(main mox_testkit_main) # gives each test a simulated board of its own
  endif()
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE mox_warnings ${main} ${arg_LIBS} GTest::gmock GTest::gtest)
  target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}/Tests")
  if(MOX_SANITIZE)
    # Halves the time that tests take to compile there; what they test stays as the lane wants it.
    target_compile_options(${name} PRIVATE -O0)
  endif()
  math(EXPR deadline "${arg_TIMEOUT} * ${MOX_TEST_TIMEOUT_FACTOR}")
  # Discovery before the run and not after the link: what is cross-compiled or enters a mount namespace of its own
  # then lists its tests under the same conditions as it runs them.
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60
    PROPERTIES LABELS ${arg_LABEL} TIMEOUT ${deadline})
endfunction()
