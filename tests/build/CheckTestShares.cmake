# Holds how much test stands beside each module: lines of tests/<module> over lines of src/<module>, blank lines and lines
# that are comments alone left out on both sides.
# -D SOURCE_DIR=...
cmake_minimum_required(VERSION 3.25)

# In hundredths.
set(least_contracts 100)
set(least_documents 100)
set(least_engine 100)
set(least_client 80)
set(least_platform 80)

function(count_lines folder result)
  file(GLOB_RECURSE files "${folder}/*.h" "${folder}/*.cpp")
  set(count 0)
  foreach(file IN LISTS files)
    # A bracket or semicolon in a line would part or join entries of a list.
    file(READ "${file}" text)
    string(REGEX REPLACE "[][;]" "x" text "${text}")
    string(REGEX REPLACE "\n" ";" lines "${text}")
    list(FILTER lines EXCLUDE REGEX "^[ \t\r]*(//.*)?$")
    list(LENGTH lines length)
    math(EXPR count "${count} + ${length}")
  endforeach()
  set(${result} ${count} PARENT_SCOPE)
endfunction()

set(problems "")
foreach(module IN ITEMS contracts documents engine client platform)
  count_lines("${SOURCE_DIR}/src/${module}" source)
  count_lines("${SOURCE_DIR}/tests/${module}" test)
  if(source EQUAL 0)
    message(FATAL_ERROR "no source below src/${module}")
  endif()
  math(EXPR share "100 * ${test} / ${source}")
  message(STATUS "${module}: ${test} lines of test, ${source} of source: ${share} %")
  if(share LESS least_${module})
    list(APPEND problems "${module}: ${share} % of test, ${least_${module}} % are due")
  endif()
endforeach()
if(problems)
  list(JOIN problems "\n" problems)
  message(FATAL_ERROR "${problems}")
endif()
