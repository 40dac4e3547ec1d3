# Makes the site anew in FOLDER/html, and follows every link of it.
# Usage: cmake -D DOXYGEN=... -D PYTHON=... -D SOURCE_DIR=... -D FOLDER=... -P MakeSite.cmake
cmake_minimum_required(VERSION 3.25)

if(NOT DOXYGEN OR NOT PYTHON)
  message(FATAL_ERROR "The site is made by doxygen and python3 (Debian packages of the same names)")
endif()
file(REMOVE_RECURSE "${FOLDER}/html")
foreach(command "${DOXYGEN};${FOLDER}/Doxyfile" "${PYTHON};${SOURCE_DIR}/script/support/check_site.py;${FOLDER}/html")
  execute_process(COMMAND ${command} OUTPUT_VARIABLE told ERROR_VARIABLE told RESULT_VARIABLE result)
  if(result)
    message(FATAL_ERROR "${told}")
  endif()
endforeach()
message(STATUS "${told}")
