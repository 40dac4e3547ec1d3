# Draws the modules of the build, as CMake itself sees them, into docs/modules.md.
# Usage: cmake -D SOURCE_DIR=... -D MODE=write|check -P ModuleGraph.cmake

cmake_minimum_required(VERSION 3.25)

include("${SOURCE_DIR}/cmake/ScratchFolder.cmake")
vl_scratch_folder(scratch graph)

execute_process(
  COMMAND "${CMAKE_COMMAND}" -G Ninja -S "${SOURCE_DIR}" -B "${scratch}" "--graphviz=${scratch}/modules.dot"
    -DVLCLIENTUI_BUILD_TESTS=OFF -DVLCLIENTUI_BUILD_BENCHMARKS=OFF -DVLCLIENTUI_BUILD_FUZZERS=OFF
    -DVLCLIENTUI_BUILD_PYTHON=ON
  OUTPUT_VARIABLE output ERROR_VARIABLE output RESULT_VARIABLE result)
if(result)
  file(REMOVE_RECURSE "${scratch}")
  message(FATAL_ERROR "The build could not be configured:\n${output}")
endif()
file(STRINGS "${scratch}/modules.dot" lines)
file(REMOVE_RECURSE "${scratch}")

# Own targets are vl..., VL...; a library of another project is shown only where it draws a line.
set(shown_outside "Qt6::Widgets|Qt6::Test|CURL::libcurl|GDAL::GDAL|LibXml2::LibXml2")
set(joined "")
set(others "")
set(links "")
foreach(line IN LISTS lines)
  if(line MATCHES "_verify_")
    continue()
  endif()
  if(line MATCHES "label = \"(vl_[a-z_]+|vl[a-z]+|VL[A-Za-z]+)[^\"]*\", shape = ([a-z]+)")
    # CMake draws object libraries as hexagons; all of them are joined in the one shared library.
    if(CMAKE_MATCH_2 STREQUAL "hexagon")
      list(APPEND joined "${CMAKE_MATCH_1}")
    else()
      list(APPEND others "${CMAKE_MATCH_1}")
    endif()
  elseif(line MATCHES "// ([A-Za-z0-9_]+) -> ([A-Za-z0-9_:]+)")
    set(from "${CMAKE_MATCH_1}")
    set(to "${CMAKE_MATCH_2}")
    if(from MATCHES "^(vl|VL)" AND (to MATCHES "^(vl|VL)" OR to MATCHES "^(${shown_outside})$"))
      string(REPLACE "::" "_" node "${to}")
      if(node STREQUAL to)
        list(APPEND links "  ${from} --> ${to}")
      else()
        list(APPEND links "  ${from} --> ${node}([${to}])")
      endif()
    endif()
  endif()
endforeach()
# That the shared library links what it is joined from shows in the picture already.
foreach(module IN LISTS joined)
  list(REMOVE_ITEM links "  VLClientUI --> ${module}")
endforeach()
list(REMOVE_DUPLICATES joined)
list(REMOVE_DUPLICATES links)
list(SORT joined)
list(SORT links)
list(TRANSFORM joined PREPEND "    ")
list(JOIN joined "\n" joined)
list(JOIN links "\n" links)

set(page "# Modules

Drawn from the build by `script/graph`; a test fails when it is out of date. An arrow reads \"links\".
What lives in each module stands in the README of its folder, `src/<module>/README.md`; `vl_client_raster` is
the room `raster` of `client`.

```mermaid
flowchart TD
  subgraph VLClientUI
${joined}
  end
${links}
```
")

set(file "${SOURCE_DIR}/docs/modules.md")
if(MODE STREQUAL "write")
  file(WRITE "${file}" "${page}")
  message(STATUS "Wrote ${file}")
else()
  set(present "")
  if(EXISTS "${file}")
    file(READ "${file}" present)
  endif()
  if(NOT present STREQUAL page)
    message(FATAL_ERROR "docs/modules.md does not show the build as it is; run script/graph")
  endif()
endif()
