# The documents of the ready-made client hold to the schemas that a client of one's own is told to keep, and documents that
# lack something do not.
# Usage: cmake -D VLHOST=... -D FOLDER=<to write to> -P CheckSchemas.cmake
cmake_minimum_required(VERSION 3.25)

include("${CMAKE_CURRENT_LIST_DIR}/Schemas.cmake")
file(REMOVE_RECURSE "${FOLDER}")
file(MAKE_DIRECTORY "${FOLDER}/home")
set(ENV{HOME} "${FOLDER}/home")

function(keep name)
  execute_process(COMMAND "${VLHOST}" ${ARGN} OUTPUT_FILE "${FOLDER}/${name}" COMMAND_ERROR_IS_FATAL ANY)
endfunction()

set(mosaic ImageService://127.0.0.1/Imagery/Valley/Ortho_Mosaic)
keep(server-info.xml services --xml)
keep(service-properties.xml properties ${mosaic})
keep(image-metadata.xml metadata ${mosaic})
foreach(kind server-info service-properties image-metadata)
  vl_hold_to_schema(relaxng ${kind}.rng "${FOLDER}/${kind}.xml")
endforeach()
if(schema_problems)
  message(FATAL_ERROR "${schema_problems}")
endif()

# The elements without which nothing is there to be shown.
foreach(cut "server-info;<Name>[^<]*</Name><ImageServiceInfo>;<ImageServiceInfo>"
    "service-properties;ImageServiceProperties;Properties" "image-metadata;<NCols>[0-9]+</NCols>;"
    "image-metadata;<XMin>[0-9]+;<XMin>far")
  list(GET cut 0 kind)
  list(GET cut 1 found)
  list(GET cut 2 other)
  file(READ "${FOLDER}/${kind}.xml" text)
  string(REGEX REPLACE "${found}" "${other}" text "${text}")
  file(WRITE "${FOLDER}/broken.xml" "${text}")
  set(schema_problems "")
  vl_hold_to_schema(relaxng ${kind}.rng "${FOLDER}/broken.xml")
  if(NOT schema_problems)
    message(FATAL_ERROR "${kind}.rng takes a document without ${found}")
  endif()
endforeach()
