# Runs a program as a person does and holds what it said against what it should say.
#   PROGRAM, ARGUMENTS   what is run; arguments with "|" between them
#   FOLDER               an empty working folder, made anew
#   RESULT               the exit code that is due
#   OUTPUT, ERRORS       regular expressions, "|" between them, each of which standard output or error matches
#   SILENT_ERRORS        set: nothing may stand on standard error
#   FILES                files, "|" between them, below FOLDER that must be there afterwards and not be empty
#   CONTENT              regular expressions, "|" between them, each of which the first of FILES matches
#   ABSENT               a file below FOLDER that must not be there
#   EMPTY                a folder below FOLDER in which nothing may stand afterwards, hidden or not
#   BROKEN_RASTER        a file below FOLDER to be made before, which looks like a raster and is none
#   CUT_RASTER           a raster of which the first half is to stand below FOLDER before, as cut.tif
#   LOCALE               the locale of the user
#   UNSET_DISPLAY        set: no display and no platform of a window system is named
#   ENVIRONMENT          more variables, "|" between them
#   OUTPUT_FILE          where standard output goes; nothing of it is looked at then
#   ONE_OUTPUT           set: standard error goes where standard output goes, in the order of what is written
#   UNREADABLE_FOLDER    a folder below FOLDER to be made before, which nobody may list
#   FILE_BLOCKS          how large a file may become, as for ulimit; writing more than that fails
foreach(list ARGUMENTS OUTPUT ERRORS FILES CONTENT ENVIRONMENT)
  string(REPLACE "|" ";" ${list} "${${list}}")
endforeach()

file(REMOVE_RECURSE "${FOLDER}")
file(MAKE_DIRECTORY "${FOLDER}")
if(BROKEN_RASTER)
  file(WRITE "${FOLDER}/${BROKEN_RASTER}" "II*")
endif()
if(CUT_RASTER)
  file(SIZE "${CUT_RASTER}" size)
  math(EXPR half "${size} / 2")
  execute_process(COMMAND head -c ${half} "${CUT_RASTER}" OUTPUT_FILE "${FOLDER}/cut.tif" COMMAND_ERROR_IS_FATAL ANY)
endif()
set(environment HOME=${FOLDER} XDG_DATA_HOME=${FOLDER}/data VLCLIENTUI_HOME=${SOURCE_DIR})
list(APPEND environment ${ENVIRONMENT})
if(LOCALE)
  list(APPEND environment LC_ALL=${LOCALE})
endif()
if(UNSET_DISPLAY)
  list(APPEND environment --unset=DISPLAY --unset=WAYLAND_DISPLAY --unset=QT_QPA_PLATFORM)
endif()
set(command "${PROGRAM}" ${ARGUMENTS})
if(OUTPUT_FILE)
  set(command sh -c "exec \"$@\" >'${OUTPUT_FILE}'" sh ${command})
endif()
if(ONE_OUTPUT)
  set(command sh -c "exec \"$@\" 2>&1" sh ${command})
endif()
if(UNREADABLE_FOLDER)
  file(MAKE_DIRECTORY "${FOLDER}/${UNREADABLE_FOLDER}")
  file(CHMOD "${FOLDER}/${UNREADABLE_FOLDER}" DIRECTORY_PERMISSIONS OWNER_EXECUTE)
  # The administrator reads everything, unless that right is given up.
  execute_process(COMMAND id -u OUTPUT_VARIABLE user OUTPUT_STRIP_TRAILING_WHITESPACE)
  if(user EQUAL 0)
    set(rights "-dac_override,-dac_read_search")
    set(command setpriv --bounding-set=${rights} --inh-caps=${rights} ${command})
  endif()
endif()
if(FILE_BLOCKS)
  set(command sh -c "trap '' XFSZ && ulimit -f ${FILE_BLOCKS} && exec \"$@\"" sh ${command})
endif()
execute_process(
  COMMAND "${CMAKE_COMMAND}" -E env ${environment} ${command}
  WORKING_DIRECTORY "${FOLDER}"
  RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE errors)

if(NOT result EQUAL RESULT)
  message(FATAL_ERROR "exit code ${result} in place of ${RESULT}\n${output}\n${errors}")
endif()
foreach(pattern IN LISTS OUTPUT)
  if(NOT output MATCHES "${pattern}")
    message(FATAL_ERROR "the output lacks ${pattern}:\n${output}")
  endif()
endforeach()
foreach(pattern IN LISTS ERRORS)
  if(NOT errors MATCHES "${pattern}")
    message(FATAL_ERROR "standard error lacks ${pattern}:\n${errors}")
  endif()
endforeach()
if(SILENT_ERRORS AND NOT errors STREQUAL "")
  message(FATAL_ERROR "standard error is not empty:\n${errors}")
endif()
foreach(file IN LISTS FILES)
  if(NOT EXISTS "${FOLDER}/${file}")
    message(FATAL_ERROR "${file} is missing")
  endif()
  file(SIZE "${FOLDER}/${file}" size)
  if(size EQUAL 0)
    message(FATAL_ERROR "${file} is empty")
  endif()
endforeach()
if(CONTENT)
  list(GET FILES 0 file)
  file(READ "${FOLDER}/${file}" content)
endif()
foreach(pattern IN LISTS CONTENT)
  if(NOT content MATCHES "${pattern}")
    message(FATAL_ERROR "${file} lacks ${pattern}:\n${content}")
  endif()
endforeach()
if(EMPTY)
  file(GLOB left "${FOLDER}/${EMPTY}/*" "${FOLDER}/${EMPTY}/.*")
  list(FILTER left EXCLUDE REGEX "/[.][.]?$")
  if(left)
    message(FATAL_ERROR "left behind: ${left}")
  endif()
endif()
if(ABSENT AND EXISTS "${FOLDER}/${ABSENT}")
  message(FATAL_ERROR "${ABSENT} was written")
endif()
