# Makes a manual page from what a program says of itself, so that the two cannot differ.
# Usage: cmake -D PROGRAM=<file> -D NAME=<program> -D VERSION=<version> -D OUTPUT=<file> -P ManPage.cmake

cmake_minimum_required(VERSION 3.25)

function(run_help result)
  execute_process(COMMAND "${PROGRAM}" ${ARGN} --help OUTPUT_VARIABLE text RESULT_VARIABLE code)
  if(NOT code EQUAL 0)
    message(FATAL_ERROR "${PROGRAM} ${ARGN} --help fails: ${code}")
  endif()
  set(${result} "${text}" PARENT_SCOPE)
endfunction()

# Text as it is, line by line: a page of help is laid out already.
function(as_it_is text result)
  string(REPLACE "\\" "\\e" text "${text}")
  string(REPLACE "-" "\\-" text "${text}")
  string(REPLACE "~" "\\(ti" text "${text}")
  string(REGEX REPLACE "(^|\n)([.'])" "\\1\\\\&\\2" text "${text}")
  # An empty line between unfilled ones.
  string(STRIP "${text}" stripped)
  string(REGEX REPLACE "\n\n+" "\n.sp\n" stripped "${stripped}")
  set(${result} ".nf\n${stripped}\n.fi\n" PARENT_SCOPE)
endfunction()

run_help(all)
string(REGEX MATCH "^${NAME} - ([^\n]*)\n" first "${all}")
set(purpose "${CMAKE_MATCH_1}")
if(NOT purpose)
  message(FATAL_ERROR "${NAME} --help does not begin with the name and purpose")
endif()
string(LENGTH "${first}" length)
string(SUBSTRING "${all}" ${length} -1 rest)
string(TOUPPER "${NAME}" title)
as_it_is("${rest}" body)
# By SOURCE_DATE_EPOCH where a build is to be repeated.
string(TIMESTAMP date "%Y-%m-%d" UTC)
set(page ".TH ${title} 1 \"${date}\" \"VLClientUI ${VERSION}\" \"User commands\"\n.SH NAME\n${NAME} \\- ${purpose}\n")
string(APPEND page ".SH DESCRIPTION\n${body}")

# The commands, as the usage names them.
string(REGEX MATCHALL "\n  ${NAME} [a-z]+" usages "${all}")
list(TRANSFORM usages REPLACE ".* " "")
list(REMOVE_DUPLICATES usages)
foreach(command IN LISTS usages)
  run_help(text ${command})
  as_it_is("${text}" body)
  string(TOUPPER "${command}" heading)
  string(APPEND page ".SH ${heading}\n${body}")
endforeach()
file(WRITE "${OUTPUT}" "${page}")
