# SPDX-License-Identifier: Apache-2.0
# The functions by which every folder declares its target.
include(GoogleTest)

# kx_add_library(SceneGraph SOURCES ... [HEADERS ...] [PUBLIC ...] [PRIVATE ...] [QT])
#
# Makes the shared library kxSceneGraph with the alias kx::SceneGraph. HEADERS are the public ones; what lies in
# Internal/ is listed nowhere but in SOURCES. QT is needed only where neither PUBLIC nor PRIVATE names a Qt library
# or a library of this project that uses Qt.
function(kx_add_library name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "QT" "" "SOURCES;HEADERS;PUBLIC;PRIVATE")
  _kx_expect_parsed("${arg_UNPARSED_ARGUMENTS}" "${arg_SOURCES}")

  set(target kx${name})
  add_library(${target} SHARED ${arg_SOURCES})
  add_library(kx::${name} ALIAS ${target})
  target_sources(${target} PUBLIC FILE_SET HEADERS BASE_DIRS "${CMAKE_CURRENT_SOURCE_DIR}/.." FILES ${arg_HEADERS})
  target_link_libraries(${target} PUBLIC ${arg_PUBLIC} PRIVATE ${arg_PRIVATE})
  set_target_properties(${target} PROPERTIES
    EXPORT_NAME ${name}
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}
  )
  _kx_apply_settings(${target})
  _kx_apply_qt(${target} "${arg_QT}" ${arg_PUBLIC} ${arg_PRIVATE})

  install(TARGETS ${target} EXPORT kxAssetsTargets
    LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
    FILE_SET HEADERS DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/kxAssets"
  )
endfunction()

# kx_add_parts(AssetManagerParts SOURCES ... [LIBRARIES ...])
#
# Makes what a program consists of, but for its main function, a static library with the alias kx::AssetManagerParts, so that
# tests can use it. It is not installed.
function(kx_add_parts name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBRARIES")
  _kx_expect_parsed("${arg_UNPARSED_ARGUMENTS}" "${arg_SOURCES}")

  set(target kx${name})
  add_library(${target} STATIC ${arg_SOURCES})
  add_library(kx::${name} ALIAS ${target})
  target_include_directories(${target} PUBLIC "${CMAKE_CURRENT_SOURCE_DIR}/..")
  target_link_libraries(${target} PUBLIC ${arg_LIBRARIES})
  _kx_apply_settings(${target})
  _kx_apply_qt(${target} "" ${arg_LIBRARIES})
endfunction()

# All programs and nothing else: what a user needs.
add_custom_target(programs)

# kx_add_program(kxassets SOURCES ... [LIBRARIES ...] [QT])
function(kx_add_program name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "QT" "" "SOURCES;LIBRARIES")
  _kx_expect_parsed("${arg_UNPARSED_ARGUMENTS}" "${arg_SOURCES}")

  add_executable(${name} ${arg_SOURCES})
  target_include_directories(${name} PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}/..")
  target_link_libraries(${name} PRIVATE ${arg_LIBRARIES})
  _kx_apply_settings(${name})
  _kx_apply_qt(${name} "${arg_QT}" ${arg_LIBRARIES})
  add_dependencies(programs ${name})

  install(TARGETS ${name} RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
endfunction()

# kx_add_tests(SceneGraph SOURCES ... [INTERNALS ...] [LIBRARIES ...] [NO_QT | WINDOWS] [PROCESSES 2] [COST 1]
#              [PRECOMPILED ...])
#
# Makes one program, SceneGraphTests, of all test files of a folder; CTest sees each test. INTERNALS are sources of
# the tested library, relative to the project, whose classes it does not export: they are compiled into the program
# once more. With NO_QT the program has a main without QApplication, with WINDOWS one that starts an X server for them.
# PROCESSES is how many KX_GROUP_TESTS spreads its tests over (1); programs of a higher COST start before others (0).
# PRECOMPILED are headers that most of the files include, and no file has to: clang-tidy reads each without them.
function(kx_add_tests name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "NO_QT;WINDOWS" "PROCESSES;COST" "SOURCES;INTERNALS;LIBRARIES;PRECOMPILED")
  _kx_expect_parsed("${arg_UNPARSED_ARGUMENTS}" "${arg_SOURCES}")
  if(NOT BUILD_TESTING)
    return()
  endif()

  set(target ${name}Tests)
  if(arg_NO_QT)
    set(support kx::TestSupportNoQt)
  elseif(arg_WINDOWS)
    set(support kx::TestSupportWindows)
  else()
    set(support kx::TestSupport)
  endif()
  add_executable(${target} ${arg_SOURCES})
  _kx_apply_test_settings(${target} "${arg_NO_QT}" ${arg_LIBRARIES} ${support})
  # Halves the time that they take to compile; what they test, and its speed, stays as it is.
  target_compile_options(${target} PRIVATE -O0)
  if(arg_INTERNALS)
    list(TRANSFORM arg_INTERNALS PREPEND "${PROJECT_SOURCE_DIR}/")
    add_library(${target}Internals OBJECT ${arg_INTERNALS})
    _kx_apply_test_settings(${target}Internals "${arg_NO_QT}" ${arg_LIBRARIES} ${support})
    target_link_libraries(${target} PRIVATE ${target}Internals)
  endif()
  if(arg_PRECOMPILED)
    _kx_precompile(${target} ${arg_PRECOMPILED})
  endif()
  if(NOT DEFINED arg_COST)
    set(arg_COST 0)
  endif()
  if(KX_GROUP_TESTS)
    _kx_add_grouped_tests(${name} "${arg_PROCESSES}" ${arg_COST})
    return()
  endif()
  gtest_discover_tests(${target}
    DISCOVERY_MODE PRE_TEST
    DISCOVERY_TIMEOUT 120
    NO_PRETTY_VALUES
    PROPERTIES
      COST ${arg_COST}
      TIMEOUT 900
      LABELS ${name}
  )
endfunction()

function(_kx_apply_test_settings target no_qt)
  target_include_directories(${target} PRIVATE
    "${PROJECT_SOURCE_DIR}/Tests"
    "${PROJECT_SOURCE_DIR}/Host"
    "${PROJECT_SOURCE_DIR}/Libs"
    "${PROJECT_SOURCE_DIR}/Apps"
  )
  target_link_libraries(${target} PRIVATE ${ARGN})
  _kx_apply_settings(${target})
  if(NOT no_qt)
    _kx_apply_qt(${target} TRUE)
  endif()
endfunction()

# The tests of a program as group.SceneGraphTests.1 and so on, which run one after the other in a process each. What became of
# the single tests lies in test-groups/ then, in a file for each group, from which run_tests of setup.bash counts them.
function(_kx_add_grouped_tests name processes cost)
  if(NOT processes)
    set(processes 1)
  endif()
  foreach(index RANGE 1 ${processes})
    set(group group.${name}Tests.${index})
    math(EXPR shard "${index} - 1")
    add_test(NAME ${group} COMMAND ${name}Tests)
    set_tests_properties(${group} PROPERTIES
      COST ${cost}
      ENVIRONMENT "GTEST_TOTAL_SHARDS=${processes};GTEST_SHARD_INDEX=${shard};GTEST_OUTPUT=xml:${PROJECT_BINARY_DIR}/test-groups/${group}.xml"
      TIMEOUT 1500
      LABELS ${name}
    )
  endforeach()
endfunction()

# _kx_precompile(SceneGraphTests <gtest/gtest.h> ...)
function(_kx_precompile target)
  target_precompile_headers(${target} PRIVATE ${ARGN})
  if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    # Without the time the file is the same each time, and ccache finds what was compiled with it.
    target_compile_options(${target} PRIVATE "SHELL:-Xclang -fno-pch-timestamp")
  endif()
  if(NOT TARGET plain_commands)
    # clang-tidy takes GCC's precompiled headers for its own, and fails: the list of commands is to name none.
    set(commands "${PROJECT_BINARY_DIR}/compile_commands.json")
    add_custom_command(
      OUTPUT "${commands}.stamp"
      COMMAND sed -i -E "s/ (-Winvalid-pch|-Xclang -(include|include-pch|fno-pch-timestamp)|(-Xclang |-include )[^ ]*cmake_pch[^ ]*)//g" "${commands}"
      COMMAND "${CMAKE_COMMAND}" -E touch "${commands}.stamp"
      DEPENDS "${commands}"
      VERBATIM
    )
    add_custom_target(plain_commands DEPENDS "${commands}.stamp")
  endif()
  add_dependencies(${target} plain_commands)
endfunction()

# A misspelt keyword would otherwise end up as one more source file.
function(_kx_expect_parsed unparsed sources)
  if(unparsed)
    message(FATAL_ERROR "Unknown arguments: ${unparsed}")
  endif()
  if(NOT sources)
    message(FATAL_ERROR "A target needs SOURCES")
  endif()
endfunction()

function(_kx_apply_settings target)
  target_compile_features(${target} PUBLIC cxx_std_20)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # GCC 12 sees overlapping copies in `"x" + std::string()` at -O3 that are not there (its bug 105651).
    target_compile_options(${target} PRIVATE -Wno-restrict)
  endif()
  set_target_properties(${target} PROPERTIES
    CXX_EXTENSIONS OFF
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON
    POSITION_INDEPENDENT_CODE ON
    RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin"
    LIBRARY_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib"
    INSTALL_RPATH "$ORIGIN;$ORIGIN/../${CMAKE_INSTALL_LIBDIR}"
  )
  if(KX_LLD)
    target_link_options(${target} PRIVATE -fuse-ld=lld)
  endif()
  if(KX_SANITIZE)
    target_compile_options(${target} PRIVATE
      -fsanitize=${KX_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(${target} PRIVATE -fsanitize=${KX_SANITIZE})
  endif()
  if(KX_COVERAGE)
    target_compile_options(${target} PRIVATE --coverage)
    target_link_options(${target} PRIVATE --coverage)
  endif()
endfunction()

# Turns on Qt's code generators where the target uses Qt, itself or through a library of this project.
function(_kx_apply_qt target uses_qt)
  foreach(library IN LISTS ARGN)
    if(library MATCHES "^Qt5::")
      set(uses_qt TRUE)
    elseif(library MATCHES "^kx::" AND TARGET ${library})
      get_target_property(inherited ${library} KX_USES_QT)
      if(inherited)
        set(uses_qt TRUE)
      endif()
    endif()
  endforeach()
  if(uses_qt)
    set_target_properties(${target} PROPERTIES
      AUTOMOC ON
      AUTORCC ON
      AUTOUIC ON
      KX_USES_QT TRUE
    )
  endif()
endfunction()
