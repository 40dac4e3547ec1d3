# Another project that takes this one in gets the libraries and none of the hosts, tests or install rules.
# Usage: cmake -D SOURCE_DIR=... -D CXX=... -P CheckSubproject.cmake

cmake_minimum_required(VERSION 3.25)

include("${SOURCE_DIR}/cmake/ScratchFolder.cmake")
vl_scratch_folder(scratch taken-in)
file(WRITE "${scratch}/CMakeLists.txt" "cmake_minimum_required(VERSION 3.25)
project(OutsideHost LANGUAGES C CXX)
add_subdirectory(\"${SOURCE_DIR}\" vlclientui)
add_executable(outside \"${SOURCE_DIR}/apps/example/main.cpp\")
target_link_libraries(outside PRIVATE VLClientUI::VLClientUIHost)
foreach(target vlviewer vlhost frame_test)
  if(TARGET \${target})
    message(FATAL_ERROR \"\${target} is made, too\")
  endif()
endforeach()
")
execute_process(
  COMMAND "${CMAKE_COMMAND}" -G Ninja -S "${scratch}" -B "${scratch}/build" "-DCMAKE_CXX_COMPILER=${CXX}"
  OUTPUT_VARIABLE output ERROR_VARIABLE output RESULT_VARIABLE result)
file(REMOVE_RECURSE "${scratch}")
if(result)
  message(FATAL_ERROR "${output}")
endif()
