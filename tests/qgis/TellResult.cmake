# What came of one check of the run before. Usage: cmake -D RESULTS=<file> -D CHECK=<name> -P TellResult.cmake
cmake_minimum_required(VERSION 3.25)

file(STRINGS "${RESULTS}" lines)
foreach(line IN LISTS lines)
  if(line STREQUAL "passed ${CHECK}")
    message(STATUS "${line}")
    return()
  elseif(line MATCHES "^failed ${CHECK}:")
    message(FATAL_ERROR "${line}")
  endif()
endforeach()
message(FATAL_ERROR "${CHECK} was not run")
