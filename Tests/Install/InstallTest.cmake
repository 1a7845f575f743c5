# SPDX-License-Identifier: Apache-2.0
# Given an installed and then moved package, when a foreign project finds it, then its programs and its storage back-end build and run.

string(RANDOM LENGTH 12 suffix)
if(DEFINED ENV{TMPDIR})
  set(folder "$ENV{TMPDIR}/kxinstall-${suffix}")
else()
  set(folder "/tmp/kxinstall-${suffix}")
endif()

function(run)
  execute_process(COMMAND ${ARGV} RESULT_VARIABLE code OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(NOT code EQUAL 0)
    file(REMOVE_RECURSE "${folder}")
    list(JOIN ARGV " " command)
    message(FATAL_ERROR "${command}\nended with ${code}:\n${output}")
  endif()
  set(output "${output}" PARENT_SCOPE)
endfunction()

run("${CMAKE_COMMAND}" --install "${build_folder}" --prefix "${folder}/first place")
file(RENAME "${folder}/first place" "${folder}/second place")

# The package must not lead back to where it was built.
file(GLOB_RECURSE package_files "${folder}/second place/*.cmake")
foreach(file IN LISTS package_files)
  file(STRINGS "${file}" leads REGEX "${build_folder}")
  if(leads)
    file(REMOVE_RECURSE "${folder}")
    message(FATAL_ERROR "${file} names the build folder: ${leads}")
  endif()
endforeach()

run("${CMAKE_COMMAND}" -S "${CMAKE_CURRENT_LIST_DIR}/Consumer" -B "${folder}/build" -G "${generator}"
  "-DCMAKE_CXX_COMPILER=${compiler}" "-DCMAKE_BUILD_TYPE=${build_type}" "-DCMAKE_PREFIX_PATH=${folder}/second place"
  "-Dlibraries=${libraries}" "-Dsanitizers=${sanitizers}"
)
run("${CMAKE_COMMAND}" --build "${folder}/build")
string(REPLACE "," ";" library_list "${libraries}")
foreach(library IN LISTS library_list)
  run("${folder}/build/use${library}")
  if(NOT output STREQUAL "1\n")
    file(REMOVE_RECURSE "${folder}")
    message(FATAL_ERROR "use${library} wrote: ${output}")
  endif()
endforeach()
run("${CMAKE_COMMAND}" -E env QT_QPA_PLATFORM=offscreen "${folder}/build/backEnd")
if(NOT output MATCHES "Red\n$")
  file(REMOVE_RECURSE "${folder}")
  message(FATAL_ERROR "backEnd wrote: ${output}")
endif()
file(REMOVE_RECURSE "${folder}")
