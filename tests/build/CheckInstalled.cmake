# Installs the build, builds the example and each installed header alone against what was installed, and asks the
# installed command line for the installed samples.
# Usage: cmake -D SOURCE_DIR=... -D BUILD_DIR=... -D CXX=... [-D LAUNCHER=...]
#   -D PUBLIC_HEADERS=<with "," between> [-D PYTHON=<where the module was built>] -P CheckInstalled.cmake

cmake_minimum_required(VERSION 3.25)

include("${SOURCE_DIR}/cmake/ScratchFolder.cmake")
vl_scratch_folder(scratch installed)
set(prefix "${scratch}/prefix")

function(run)
  execute_process(COMMAND ${ARGN} OUTPUT_VARIABLE output ERROR_VARIABLE output RESULT_VARIABLE result)
  if(result)
    file(REMOVE_RECURSE "${scratch}")
    list(JOIN ARGN " " command)
    message(FATAL_ERROR "${command}\n${output}")
  endif()
  set(output "${output}" PARENT_SCOPE)
endfunction()

run("${CMAKE_COMMAND}" --install "${BUILD_DIR}" --prefix "${prefix}")

# The public headers and no others, each of them a source of its own.
file(GLOB_RECURSE installed RELATIVE "${prefix}/include/vlclientui" "${prefix}/include/*")
string(REPLACE "," ";" public "${PUBLIC_HEADERS}")
list(SORT public)
list(SORT installed)
if(NOT public OR NOT installed STREQUAL public)
  file(REMOVE_RECURSE "${scratch}")
  message(FATAL_ERROR "Public headers:\n${public}\nInstalled headers:\n${installed}")
endif()
foreach(header IN LISTS public)
  string(MAKE_C_IDENTIFIER "${header}" name)
  file(WRITE "${scratch}/host/alone/${name}.cpp" "#include \"${header}\"\n#include \"${header}\"\n")
endforeach()

# The lines of the README, around its program.
file(READ "${SOURCE_DIR}/README.md" readme)
string(REGEX MATCH "\n```cmake\n([^`]*)\n```" found "${readme}")
if(NOT found)
  file(REMOVE_RECURSE "${scratch}")
  message(FATAL_ERROR "README.md shows no CMake lines for a host")
endif()
file(WRITE "${scratch}/host/CMakeLists.txt"
  "cmake_minimum_required(VERSION 3.25)\nproject(OutsideHost LANGUAGES CXX)\n${CMAKE_MATCH_1}\n"
  "file(GLOB alone alone/*.cpp)\nadd_library(alone OBJECT \${alone})\n"
  "target_compile_options(alone PRIVATE -Wall -Wextra -Wpedantic -Werror)\n"
  "target_link_libraries(alone PRIVATE VLClientUI::VLClientUIHost)\n")
file(COPY "${SOURCE_DIR}/apps/example/main.cpp" DESTINATION "${scratch}/host")
# A compiler cache knows the sources again wherever the scratch folder is.
set(ENV{CCACHE_BASEDIR} "${scratch}")
set(ENV{CCACHE_NOHASHDIR} 1)
run("${CMAKE_COMMAND}" -G Ninja -S "${scratch}/host" -B "${scratch}/host/build"
  "-DCMAKE_PREFIX_PATH=${prefix}" "-DCMAKE_CXX_COMPILER=${CXX}" "-DCMAKE_CXX_COMPILER_LAUNCHER=${LAUNCHER}"
  -DCMAKE_CXX_FLAGS=-O0)
run("${CMAKE_COMMAND}" --build "${scratch}/host/build")

file(GLOB libraries "${prefix}/lib*/libVLClientUI.so.0" "${prefix}/lib*/*/libVLClientUI.so.0")
set(ENV{VLCLIENTUI_HOME} "")
run("${prefix}/bin/vlhost" services)
if(PYTHON)
  set(services "${output}")
  set(ENV{PYTHONPATH} "${prefix}/lib/python3/dist-packages")
  run("${PYTHON}" -c "import vlclientui as v\nprint(list(s.name for s in v.headless().services()), v.__file__)")
  if(NOT output MATCHES "EGM96_Geoid.*${prefix}")
    file(REMOVE_RECURSE "${scratch}")
    message(FATAL_ERROR "The installed module does not list the installed samples:\n${output}")
  endif()
  set(output "${services}")
endif()
file(REMOVE_RECURSE "${scratch}")
if(NOT libraries)
  message(FATAL_ERROR "The library was not installed")
endif()
if(NOT output MATCHES "EGM96_Geoid")
  message(FATAL_ERROR "The installed command line does not list the installed samples:\n${output}")
endif()
