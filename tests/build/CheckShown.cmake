# Headers whose names cross from one shared library to another, or to a program, stand between visibility pragmas: those
# of hosts, those of the logic that adapters include, and all that programs include.
# Usage: cmake -D SOURCE_DIR=... -D PUBLIC_HEADERS=<with "," between> -P CheckShown.cmake

cmake_minimum_required(VERSION 3.25)

set(logic "contracts|documents|frame|selection|export|viewpoint|metadata|properties|library")
string(REPLACE "," ";" crossing "${PUBLIC_HEADERS}")

# Adds to crossing what the sources below a folder include and what matches the pattern.
function(read_includes folder pattern)
  file(GLOB_RECURSE sources RELATIVE "${SOURCE_DIR}" "${SOURCE_DIR}/${folder}/*.h" "${SOURCE_DIR}/${folder}/*.cpp")
  list(FILTER sources EXCLUDE REGEX "^src/(${logic})/")
  foreach(source IN LISTS sources)
    file(STRINGS "${SOURCE_DIR}/${source}" lines REGEX "^#include \"")
    list(TRANSFORM lines REPLACE "^#include \"([^\"]+)\".*" "\\1")
    list(FILTER lines INCLUDE REGEX "${pattern}")
    list(APPEND crossing ${lines})
  endforeach()
  set(crossing "${crossing}" PARENT_SCOPE)
endfunction()

read_includes(src "^(${logic})/")
read_includes(apps ".")
list(REMOVE_DUPLICATES crossing)
set(problems "")
set(count 0)
foreach(header IN LISTS crossing)
  # Programs include their own, too.
  if(NOT EXISTS "${SOURCE_DIR}/src/${header}")
    continue()
  endif()
  math(EXPR count "${count} + 1")
  file(READ "${SOURCE_DIR}/src/${header}" text)
  if(NOT text MATCHES "\n#pragma GCC visibility push\\(default\\)\n.*\n#pragma GCC visibility pop\n$")
    list(APPEND problems "src/${header} is used from another library or a program and hides its names: "
      "put #pragma GCC visibility push(default) before its namespace and pop behind")
  endif()
endforeach()
if(count EQUAL 0)
  message(FATAL_ERROR "no header was read")
endif()
if(problems)
  list(JOIN problems "\n" problems)
  message(FATAL_ERROR "${problems}")
endif()
message(STATUS "${count} headers are shown")
