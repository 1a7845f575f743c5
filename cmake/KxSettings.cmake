# SPDX-License-Identifier: Apache-2.0
# What may be chosen when configuring.

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
  set(CMAKE_BUILD_TYPE Release CACHE STRING "Release, Debug or RelWithDebInfo" FORCE)
endif()

set(KX_SANITIZE "" CACHE STRING "Sanitizers to build with: address,undefined or thread; empty: none")
option(KX_GROUP_TESTS
  "CTest runs the tests of a program in a few processes, not in one each: for sanitizers, with which the start takes longer than most tests" OFF)
option(KX_COVERAGE "Count which lines are executed" OFF)
option(KX_BENCHMARKS "Build the benchmark programs" OFF)
option(KX_FUZZERS "Build the programs that feed any bytes to readers; needs Clang" OFF)

set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
# A package found in one folder is used by targets of other folders.
set(CMAKE_FIND_PACKAGE_TARGETS_GLOBAL ON)
# Makes the target all_verify_interface_header_sets, which compiles each public header alone.
set(CMAKE_VERIFY_INTERFACE_HEADER_SETS ON)

find_program(KX_LLD NAMES ld.lld DOC "Linker that is used instead of the compiler's default when it is there")
mark_as_advanced(KX_LLD)
