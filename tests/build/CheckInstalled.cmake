# Installs the build, builds the example, the installed examples and each installed header alone against what was
# installed, runs the examples, and asks the installed command line for the installed samples.
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

# fail(<words>)
function(fail)
  file(REMOVE_RECURSE "${scratch}")
  message(FATAL_ERROR ${ARGN})
endfunction()

run("${CMAKE_COMMAND}" --install "${BUILD_DIR}" --prefix "${prefix}")
foreach(file applications/org.vlclientui.Viewer.desktop metainfo/org.vlclientui.Viewer.metainfo.xml
    mime/packages/vlclientui.xml icons/hicolor/scalable/apps/vlviewer.svg icons/hicolor/16x16/apps/vlviewer.png
    icons/hicolor/512x512/apps/vlviewer.png)
  if(NOT EXISTS "${prefix}/share/${file}")
    fail("share/${file} was not installed")
  endif()
endforeach()

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

# The examples, as a reader of the package finds them.
file(GLOB examples "${prefix}/share/doc/*/examples")
run("${CMAKE_COMMAND}" -G Ninja -S "${examples}" -B "${scratch}/examples"
  "-DCMAKE_PREFIX_PATH=${prefix}" "-DCMAKE_CXX_COMPILER=${CXX}" "-DCMAKE_CXX_COMPILER_LAUNCHER=${LAUNCHER}"
  "-DCMAKE_CXX_FLAGS=-O0 -Wall -Wextra -Wpedantic -Werror")
run("${CMAKE_COMMAND}" --build "${scratch}/examples")
set(ENV{VLCLIENTUI_HOME} "")
set(ENV{HOME} "${scratch}/home")
set(ENV{QT_QPA_PLATFORM} offscreen)
file(MAKE_DIRECTORY "${scratch}/home")
run("${scratch}/examples/example_host" ImageService://127.0.0.1/Imagery/Overlap_Study "${scratch}/host.png")
if(NOT output MATCHES "MosaicMethod" OR NOT EXISTS "${scratch}/host.png")
  fail("The example of a host leaves no properties or no picture:\n${output}")
endif()
run("${scratch}/examples/example_client" "${scratch}/client.png")
if(NOT output MATCHES "asked: " OR NOT output MATCHES "picked: \n" OR NOT EXISTS "${scratch}/client.png")
  fail("The example of a client is not asked, or leaves no picture:\n${output}")
endif()
file(READ "${examples}/host/main.cpp" text)
string(REGEX REPLACE "[^\n]" "" ends "${text}")
string(LENGTH "${ends}" count)
if(count GREATER_EQUAL 60)
  fail("The example of a host has ${count} lines; it is to be read at one glance")
endif()

# What pkg-config tells leads to the headers and the libraries.
file(GLOB pc "${prefix}/lib*/pkgconfig" "${prefix}/lib*/*/pkgconfig")
set(ENV{PKG_CONFIG_PATH} "${pc}")
run(pkg-config --print-errors --cflags --libs vlclientui-host)
string(REGEX MATCH "-I([^ \n]+)" found "${output}")
if(NOT EXISTS "${CMAKE_MATCH_1}/host/Compose.h")
  fail("pkg-config leads to no headers: ${output}")
endif()
string(REGEX MATCH "-L([^ \n]+)" found "${output}")
if(NOT EXISTS "${CMAKE_MATCH_1}/libVLClientUI.so" OR NOT output MATCHES "-lVLClientUIHost.* -lVLClientUI")
  fail("pkg-config leads to no libraries: ${output}")
endif()

file(GLOB libraries "${prefix}/lib*/libVLClientUI.so.0" "${prefix}/lib*/*/libVLClientUI.so.0")
run("${prefix}/bin/vlhost" services)
if(PYTHON)
  set(services "${output}")
  set(ENV{PYTHONPATH} "${prefix}/lib/python3/dist-packages")
  run("${PYTHON}" -c "import vlclientui as v\nprint(list(s.name for s in v.headless().services()), v.__file__)")
  if(NOT output MATCHES "EGM96_Geoid.*${prefix}")
    file(REMOVE_RECURSE "${scratch}")
    message(FATAL_ERROR "The installed module does not list the installed samples:\n${output}")
  endif()
  run("${PYTHON}" "${examples}/python/host.py" "${scratch}")
  if(NOT output MATCHES "The window shows.*Heights of the geoid.*Wrote ${scratch}" OR NOT EXISTS "${scratch}/alps.Tif")
    fail("The example in Python does not run to its end:\n${output}")
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
