# Every relative link and picture of the Markdown pages leads to something that exists, and each page of docs/ is reached
# from the README.
# Usage: cmake -D SOURCE_DIR=... -P CheckDocumentLinks.cmake

cmake_minimum_required(VERSION 3.25)

file(GLOB_RECURSE pages "${SOURCE_DIR}/docs/*.md" "${SOURCE_DIR}/src/*.md" "${SOURCE_DIR}/apps/*.md"
  "${SOURCE_DIR}/tests/*.md" "${SOURCE_DIR}/samples/*.md" "${SOURCE_DIR}/definitions/*.md" "${SOURCE_DIR}/benchmarks/*.md"
  "${SOURCE_DIR}/fuzz/*.md" "${SOURCE_DIR}/examples/*.md")
file(GLOB roots "${SOURCE_DIR}/*.md")
set(problems "")
set(links 0)

# What a page links to, without addresses and places within a page.
function(read_targets page)
  file(READ "${page}" text)
  # Brackets and parentheses of code are no links.
  string(REGEX REPLACE "\n```[a-z]+\n[^`]*```" "" text "${text}")
  # Brackets would end CMake's own lists; ">" is free once the angle signs of code are gone.
  string(REPLACE ">" "" text "${text}")
  string(REPLACE "[" "<" text "${text}")
  string(REPLACE "]" ">" text "${text}")
  string(REGEX MATCHALL ">\\([^)# ]+" found "${text}")
  list(TRANSFORM found REPLACE "^>\\(" "")
  list(FILTER found EXCLUDE REGEX "^[a-z]+:")
  set(targets "${found}" PARENT_SCOPE)
endfunction()

foreach(page IN LISTS roots pages)
  get_filename_component(folder "${page}" DIRECTORY)
  read_targets("${page}")
  foreach(target IN LISTS targets)
    math(EXPR links "${links} + 1")
    if(NOT EXISTS "${folder}/${target}")
      list(APPEND problems "${page}: ${target} leads nowhere")
    endif()
  endforeach()
endforeach()

set(waiting "${SOURCE_DIR}/README.md")
set(reached "")
while(waiting)
  list(POP_FRONT waiting page)
  list(APPEND reached "${page}")
  get_filename_component(folder "${page}" DIRECTORY)
  read_targets("${page}")
  foreach(target IN LISTS targets)
    get_filename_component(path "${target}" ABSOLUTE BASE_DIR "${folder}")
    # Who follows a link to a folder sees what is in it.
    if(IS_DIRECTORY "${path}")
      file(GLOB path "${path}/*.md")
    endif()
    foreach(file IN LISTS path)
      if(file MATCHES "\\.md$" AND EXISTS "${file}" AND NOT file IN_LIST reached AND NOT file IN_LIST waiting)
        list(APPEND waiting "${file}")
      endif()
    endforeach()
  endforeach()
endwhile()
foreach(page IN LISTS roots pages)
  if(NOT page IN_LIST reached AND NOT page MATCHES "/docs/images/README.md$")
    list(APPEND problems "${page}: no road leads there from README.md")
  endif()
endforeach()

if(links EQUAL 0)
  list(APPEND problems "no link found in the pages of ${SOURCE_DIR}")
endif()
if(problems)
  list(JOIN problems "\n  " shown)
  message(FATAL_ERROR "Links of the documentation:\n  ${shown}")
endif()
list(LENGTH reached count)
message(STATUS "${links} links followed, ${count} pages reached")
