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

# kx_add_tests(SceneGraph SOURCES ... [INTERNALS ...] [LIBRARIES ...] [NO_QT | WINDOWS])
#
# Makes one program, SceneGraphTests, of all test files of a folder; CTest sees each test. INTERNALS are sources of
# the tested library, relative to the project, whose classes it does not export: they are compiled into the program
# once more. With NO_QT the program has a main without QApplication, with WINDOWS one that starts an X server for them.
function(kx_add_tests name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "NO_QT;WINDOWS" "" "SOURCES;INTERNALS;LIBRARIES")
  _kx_expect_parsed("${arg_UNPARSED_ARGUMENTS}" "${arg_SOURCES}")
  if(NOT BUILD_TESTING)
    return()
  endif()

  set(target ${name}Tests)
  list(TRANSFORM arg_INTERNALS PREPEND "${PROJECT_SOURCE_DIR}/")
  add_executable(${target} ${arg_SOURCES} ${arg_INTERNALS})
  target_include_directories(${target} PRIVATE
    "${PROJECT_SOURCE_DIR}/Tests"
    "${PROJECT_SOURCE_DIR}/Host"
    "${PROJECT_SOURCE_DIR}/Libs"
    "${PROJECT_SOURCE_DIR}/Apps"
  )
  _kx_apply_settings(${target})
  # Halves the time that they take to compile; what they test, and its speed, stays as it is.
  set_source_files_properties(${arg_SOURCES} PROPERTIES COMPILE_OPTIONS -O0)
  if(arg_NO_QT)
    target_link_libraries(${target} PRIVATE ${arg_LIBRARIES} kx::TestSupportNoQt)
  else()
    if(arg_WINDOWS)
      set(support kx::TestSupportWindows)
    else()
      set(support kx::TestSupport)
    endif()
    target_link_libraries(${target} PRIVATE ${arg_LIBRARIES} ${support})
    _kx_apply_qt(${target} TRUE)
  endif()
  gtest_discover_tests(${target}
    DISCOVERY_MODE PRE_TEST
    DISCOVERY_TIMEOUT 120
    NO_PRETTY_VALUES
    PROPERTIES
      TIMEOUT 900
      LABELS ${name}
  )
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
