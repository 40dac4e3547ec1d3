# Every relative link of the Markdown pages leads to a file that exists.
# Usage: cmake -D SOURCE_DIR=... -P CheckDocumentLinks.cmake

cmake_minimum_required(VERSION 3.25)

file(GLOB pages "${SOURCE_DIR}/*.md" "${SOURCE_DIR}/docs/*.md" "${SOURCE_DIR}/docs/decisions/*.md"
  "${SOURCE_DIR}/src/*/README.md" "${SOURCE_DIR}/apps/*/README.md" "${SOURCE_DIR}/tests/README.md"
  "${SOURCE_DIR}/samples/README.md")
set(problems "")
set(links 0)
foreach(page IN LISTS pages)
  get_filename_component(folder "${page}" DIRECTORY)
  file(READ "${page}" text)
  # Brackets and parentheses of C++ code are no links.
  string(REGEX REPLACE "\n```cpp[^`]*```" "" text "${text}")
  # Brackets would end CMake's own lists; ">" is free once the angle signs of code are gone.
  string(REPLACE ">" "" text "${text}")
  string(REPLACE "[" "<" text "${text}")
  string(REPLACE "]" ">" text "${text}")
  string(REGEX MATCHALL ">\\([^)# ]+" targets "${text}")
  foreach(target IN LISTS targets)
    string(SUBSTRING "${target}" 2 -1 target)
    if(NOT target MATCHES "^[a-z]+:")
      math(EXPR links "${links} + 1")
      if(NOT EXISTS "${folder}/${target}")
        list(APPEND problems "${page}: ${target} leads nowhere")
      endif()
    endif()
  endforeach()
endforeach()
if(links EQUAL 0)
  list(APPEND problems "no link found in the pages of ${SOURCE_DIR}")
endif()
if(problems)
  list(JOIN problems "\n  " shown)
  message(FATAL_ERROR "Links of the documentation:\n  ${shown}")
endif()
message(STATUS "${links} links followed")
