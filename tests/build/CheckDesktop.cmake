# What a desktop reads of the viewer is as desktops want it, and its parts agree with each other: the entry in menus, the
# kinds of files, the page in software centers, the icon.
# Usage: cmake -D FOLDER=<of the files> -D VERSION=... -P CheckDesktop.cmake

cmake_minimum_required(VERSION 3.25)

set(problems "")

# check(<words of the problem> <program> <word>...)
function(check what)
  execute_process(COMMAND ${ARGN} WORKING_DIRECTORY "${FOLDER}"
    OUTPUT_VARIABLE output ERROR_VARIABLE output RESULT_VARIABLE result)
  if(result)
    set(problems ${problems} "${what}: ${output}" PARENT_SCOPE)
  endif()
endfunction()

# expect(<text> <part of it> <words of the problem>)
function(expect text part what)
  string(FIND "${text}" "${part}" place)
  if(place EQUAL -1)
    set(problems ${problems} "${what}" PARENT_SCOPE)
  endif()
endfunction()

set(entry org.vlclientui.Viewer.desktop)
set(page org.vlclientui.Viewer.metainfo.xml)
check("the entry in menus" desktop-file-validate --warn-kde ${entry})
check("the page in software centers" appstreamcli validate --no-net ${page})
check("the XML" xmllint --noout ${page} vlclientui.xml vlviewer.svg)

file(READ "${FOLDER}/${entry}" entry_text)
file(READ "${FOLDER}/${page}" page_text)
file(READ "${FOLDER}/vlclientui.xml" kinds)
string(REGEX MATCH "MimeType=([^\n]*)" opened "${entry_text}")
set(opened "${CMAKE_MATCH_1}")
list(REMOVE_ITEM opened "")
list(LENGTH opened count)
if(count LESS 3)
  list(APPEND problems "the entry in menus opens ${count} kinds of files")
endif()
foreach(kind IN LISTS opened)
  expect("${kinds}" "<mime-type type=\"${kind}\"" "vlclientui.xml does not tell what ${kind} is")
  expect("${page_text}" "<mediatype>${kind}</mediatype>" "the page in software centers does not tell of ${kind}")
endforeach()
foreach(ending VLRef VLDef VLProject VLJob)
  expect("${kinds}" "pattern=\"*.${ending}\"" "vlclientui.xml knows no files that end in .${ending}")
endforeach()
expect("${page_text}" "<release version=\"${VERSION}\"" "the page in software centers does not tell of version ${VERSION}")

if(problems)
  list(JOIN problems "\n" problems)
  message(FATAL_ERROR "${problems}")
endif()
