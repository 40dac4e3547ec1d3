# Asks a test program for its cases and writes what ctest runs: one test for each suite, since a process costs more than
# most cases do, and one for each case of the suites that want a process of their own.
#
# cmake -D PROGRAM=... -D OUTPUT=<file that ctest includes> [-D PREFIX=...] [-D APART=<regular expression of suites>]
cmake_minimum_required(VERSION 3.25)

execute_process(COMMAND "${PROGRAM}" --gtest_list_tests
  OUTPUT_VARIABLE listing ERROR_VARIABLE errors RESULT_VARIABLE result TIMEOUT 120)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "${PROGRAM} does not tell its tests: ${result}\n${listing}${errors}")
endif()

# Values of parameters stand behind a "#". They may hold anything, addresses too, and the names do without them.
string(REGEX REPLACE " *#[^\n]*" "" listing "${listing}")
string(REGEX REPLACE "[][;]" "_" listing "${listing}")
string(REGEX MATCHALL "[^\n]+" lines "${listing}")

set(script "")
set(tests "")
function(add_to_script name)
  string(APPEND script "add_test([==[${PREFIX}${name}]==] [==[${PROGRAM}]==] ${ARGN} --gtest_brief=1)\n")
  list(APPEND tests "[==[${PREFIX}${name}]==]")
  return(PROPAGATE script tests)
endfunction()

set(suite "")
foreach(line IN LISTS lines)
  if(line MATCHES "^  (.+)$")
    if(suite_is_apart)
      add_to_script("${suite}.${CMAKE_MATCH_1}" "[==[--gtest_filter=${suite}.${CMAKE_MATCH_1}]==]")
    endif()
  elseif(line MATCHES "^([^ ]+)\\.$")
    set(suite "${CMAKE_MATCH_1}")
    set(suite_is_apart FALSE)
    if(APART AND suite MATCHES "${APART}")
      set(suite_is_apart TRUE)
    else()
      add_to_script("${suite}" "[==[--gtest_filter=${suite}.*]==]")
    endif()
  endif()
endforeach()
list(JOIN tests " " tests)
file(WRITE "${OUTPUT}" "${script}set(vl_discovered ${tests})\n")
