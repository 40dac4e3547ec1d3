# Every fence of code on a page is a file, so that nothing stands there that nobody builds, and definitions hold to their
# schemas.
# Usage: cmake -D PAGE=... -D FOLDER=<where its files are> -P CheckPage.cmake
cmake_minimum_required(VERSION 3.25)

file(READ "${PAGE}" text)
string(REGEX MATCHALL "\n```(cpp|cmake|xml|text)\n" fences "${text}")
string(REGEX MATCHALL "`[A-Za-z0-9_./-]+`( prints)?:\n\n```(cpp|cmake|xml|text)\n" named "${text}")
list(LENGTH fences all)
list(LENGTH named built)
if(all EQUAL 0 OR NOT all EQUAL built)
  message(FATAL_ERROR "${PAGE}: ${all} pieces of code, ${built} of them are files")
endif()

include("${CMAKE_CURRENT_LIST_DIR}/Schemas.cmake")
file(GLOB attributes "${FOLDER}/*.XADef")
file(GLOB forms "${FOLDER}/*.Xfdef")
foreach(definition IN LISTS attributes)
  vl_hold_to_schema(relaxng attribute-definition.rng "${definition}")
endforeach()
foreach(definition IN LISTS forms)
  vl_hold_to_schema(relaxng form-definition.rng "${definition}")
endforeach()
foreach(definition IN LISTS attributes forms)
  vl_hold_to_schema(schematron definition-words.sch "${definition}")
endforeach()
if(schema_problems)
  message(FATAL_ERROR "${schema_problems}")
endif()
