# The schema of the properties takes the numbers that the code reads, and no others: DecimalText_test.cpp reads the same texts.
# Usage: cmake -D SOURCE_DIR=... -D FOLDER=<to write to> -P CheckDecimals.cmake
cmake_minimum_required(VERSION 3.25)

include("${CMAKE_CURRENT_LIST_DIR}/Schemas.cmake")
file(REMOVE_RECURSE "${FOLDER}")
file(STRINGS "${SOURCE_DIR}/tests/data/decimals.tsv" lines REGEX "^[^#]")
set(wrong "")
set(count 0)
foreach(line IN LISTS lines)
  if(NOT line MATCHES "^(read|blank|refused)\t(.*)$")
    message(FATAL_ERROR "What is ${line}?")
  endif()
  set(kind "${CMAKE_MATCH_1}")
  string(REPLACE "\\t" "\t" text "${CMAKE_MATCH_2}")
  string(REPLACE "\\n" "\n" text "${text}")
  file(WRITE "${FOLDER}/${count}.xml" "<Vorlane><ImageServiceProperties><ViewPointX>${text}</ViewPointX>"
    "<ViewPointY>${text}</ViewPointY></ImageServiceProperties></Vorlane>")
  set(schema_problems "")
  vl_hold_to_schema(relaxng service-properties.rng "${FOLDER}/${count}.xml")
  if(schema_problems AND NOT kind STREQUAL "refused")
    string(APPEND wrong "\n\"${text}\" is read, and the schema refuses it")
  elseif(NOT schema_problems AND kind STREQUAL "refused")
    string(APPEND wrong "\n\"${text}\" is no number, and the schema takes it")
  endif()
  math(EXPR count "${count} + 1")
endforeach()

# Numbers of other documents: none of them is without end.
foreach(document "service-info;<Vorlane><ImageServiceInfo><Name>a</Name><ColorSpace>255</ColorSpace><PixelSize>@</PixelSize>\
</ImageServiceInfo></Vorlane>"
    "service-properties;<Vorlane><ImageServiceProperties><AvgImageSpacingX>@</AvgImageSpacingX></ImageServiceProperties></Vorlane>"
    "image-metadata;<Vorlane><Client><ImageMetadata><Basic><XMin>@</XMin><YMin>0</YMin><XMax>1</XMax><YMax>1</YMax><NRows>1</NRows>\
<NCols>1</NCols><NBands>1</NBands><PixelType>Byte</PixelType></Basic></ImageMetadata></Client></Vorlane>")
  list(GET document 0 kind)
  foreach(number "0.25" "-7" "1e-3" " 5 " "INF" "-INF" "NaN" "far")
    list(GET document 1 text)
    string(REPLACE "@" "${number}" text "${text}")
    file(WRITE "${FOLDER}/${kind}.xml" "${text}")
    set(schema_problems "")
    vl_hold_to_schema(relaxng ${kind}.rng "${FOLDER}/${kind}.xml")
    if(number MATCHES "[NFr]" AND NOT schema_problems)
      string(APPEND wrong "\n${kind}.rng takes ${number}")
    elseif(NOT number MATCHES "[NFr]" AND schema_problems)
      string(APPEND wrong "\n${kind}.rng refuses ${number}: ${schema_problems}")
    endif()
  endforeach()
endforeach()
file(REMOVE_RECURSE "${FOLDER}")
if(wrong OR count EQUAL 0)
  message(FATAL_ERROR "${count} texts:${wrong}")
endif()
message(STATUS "${count} texts")
