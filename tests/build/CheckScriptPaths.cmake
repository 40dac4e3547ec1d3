# Runs the scripts that take files from a folder beside the tree, with stand-ins for the programs they call, and holds
# the paths against where a person stood. A server that is started for the viewer is gone after it.
# Usage: cmake -D SOURCE_DIR=... -D FOLDER=... -P CheckScriptPaths.cmake

cmake_minimum_required(VERSION 3.25)
if(NOT FOLDER)
  message(FATAL_ERROR "-D FOLDER=... is missing")
endif()

set(elsewhere "${FOLDER}/else where")
file(REMOVE_RECURSE "${FOLDER}")
file(MAKE_DIRECTORY "${elsewhere}" "${FOLDER}/tree/src" "${FOLDER}/tree/apps" "${FOLDER}/tree/samples")
file(COPY "${SOURCE_DIR}/script" DESTINATION "${FOLDER}/tree")

function(stand_in file text)
  file(WRITE "${file}" "#!/bin/sh\n${text}\n")
  file(CHMOD "${file}" PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE)
endfunction()
stand_in("${FOLDER}/bin/dpkg-query" "echo installed")
stand_in("${FOLDER}/bin/cmake" "true")
stand_in("${FOLDER}/bin/ninja" "echo apps/ui_Window.h: CUSTOM_COMMAND")
stand_in("${FOLDER}/bin/clang-tidy" [[printf '%s\n' "$@"]])
stand_in("${FOLDER}/tree/build/dev/apps/viewer/vlviewer" [[printf '%s\n' "$@"]])

function(expect script arguments expected)
  execute_process(
    COMMAND "${CMAKE_COMMAND}" -E env "PATH=${FOLDER}/bin:$ENV{PATH}" "../tree/script/${script}" ${arguments}
    WORKING_DIRECTORY "${elsewhere}" OUTPUT_VARIABLE output ERROR_VARIABLE errors RESULT_VARIABLE result)
  string(FIND "${output}" "${expected}\n" place)
  if(result OR place EQUAL -1)
    message(FATAL_ERROR "script/${script} lacks\n${expected}\n${output}\n${errors}")
  endif()
endfunction()

expect(run "my maps.VLRef;--catalogue;../maps;/whole/path.tif;--tour"
  "${elsewhere}/my maps.VLRef\n--catalogue\n${elsewhere}/../maps\n/whole/path.tif\n--tour")
expect(run "--help" "--help")
expect(tidy "Thing.cpp" "-p\nbuild/tidy\n--quiet\n${elsewhere}/Thing.cpp")

# refuse(<script> <arguments> <regular expression of what is told>): nothing is built, read or killed.
function(refuse script arguments words)
  execute_process(
    COMMAND "${CMAKE_COMMAND}" -E env "PATH=${FOLDER}/bin:$ENV{PATH}" "../tree/script/${script}" ${arguments}
    WORKING_DIRECTORY "${elsewhere}" OUTPUT_VARIABLE output ERROR_VARIABLE errors RESULT_VARIABLE result)
  if(result EQUAL 0 OR NOT errors MATCHES "${words}" OR output MATCHES "Killing|--quiet")
    message(FATAL_ERROR "script/${script} ${arguments} gives ${result}:\n${output}\n${errors}")
  endif()
endfunction()
stand_in("${FOLDER}/tree/build/dev/tests/apps/saving_test" "true")
expect(kills "2" "==> Killing 2 times two programs for each kind of file")
foreach(word abc 3x 0 -1 "1;2")
  refuse(kills "${word}" "times is a number from 1 on")
endforeach()
stand_in("${FOLDER}/bin/ninja" "echo all: phony")
refuse(tidy "Thing.cpp" "tells of no generated header")

# Who may not renew the package lists of the machine has lists in the tree, whatever stands in its path.
file(COPY "${FOLDER}/tree" DESTINATION "${FOLDER}/with blanks")
stand_in("${FOLDER}/bin/apt-get" [[printf '<%s>' "$@"]])
execute_process(
  COMMAND "${CMAKE_COMMAND}" -E env "PATH=${FOLDER}/bin:$ENV{PATH}" bash -c
    ". script/support/common.sh && . script/support/servers.sh && with_own_lists parts"
  WORKING_DIRECTORY "${FOLDER}/with blanks/tree" OUTPUT_VARIABLE output ERROR_VARIABLE output RESULT_VARIABLE result)
set(lists "<Dir::State::Lists=${FOLDER}/with blanks/tree/build/servers/apt/lists>")
string(FIND "${output}" "${lists}" place)
if(result OR place EQUAL -1)
  message(FATAL_ERROR "apt is not told of\n${lists}\n${output}")
endif()

# What the scripts need for a server, and a server that would stay for a minute.
stand_in("${FOLDER}/bin/apt-get" "true")
stand_in("${FOLDER}/bin/ldd" "true")
stand_in("${FOLDER}/bin/python3" "echo $$ >'${FOLDER}/server'\necho ready 4711\nexec sleep 60")
expect(run "--with-server;map.VLRef"
  "==> MapServer offers the samples at http://127.0.0.1:4711/wcs until the viewer ends\n--server\nhttp://127.0.0.1:4711/wcs\n${elsewhere}/map.VLRef")
file(STRINGS "${FOLDER}/server" server)
execute_process(COMMAND kill -0 ${server} RESULT_VARIABLE gone OUTPUT_QUIET ERROR_QUIET)
if(gone EQUAL 0)
  message(FATAL_ERROR "script/run leaves the server behind")
endif()
