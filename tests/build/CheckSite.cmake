# The site is made without a warning, so that each public name has words, and all of its links lead somewhere; a name
# without words is a warning, an enumerator without words a failure.
# Usage: cmake -D DOXYGEN=... -D PYTHON=... -D SOURCE_DIR=... -D FOLDER=<with the Doxyfile> -P CheckSite.cmake
cmake_minimum_required(VERSION 3.25)

include("${SOURCE_DIR}/cmake/MakeSite.cmake")

include("${SOURCE_DIR}/cmake/ScratchFolder.cmake")
vl_scratch_folder(scratch wordless)
file(WRITE "${scratch}/Doxyfile" "@INCLUDE = \"${FOLDER}/Doxyfile\"\nGENERATE_HTML = NO\nUSE_MDFILE_AS_MAINPAGE =\n"
  "INPUT = \"${SOURCE_DIR}/tests/build/wordless/Wordless.h\"\nOUTPUT_DIRECTORY = \"${scratch}\"\n")
execute_process(COMMAND "${DOXYGEN}" "${scratch}/Doxyfile" OUTPUT_VARIABLE told ERROR_VARIABLE told RESULT_VARIABLE result)
execute_process(COMMAND "${PYTHON}" "${SOURCE_DIR}/script/support/check_words.py" "${scratch}/xml"
  OUTPUT_VARIABLE words ERROR_VARIABLE words RESULT_VARIABLE words_result)
file(REMOVE_RECURSE "${scratch}")
if(NOT result OR NOT told MATCHES "untold" OR told MATCHES " told ")
  message(FATAL_ERROR "A name without words is no failure (${result}):\n${told}")
endif()
# Doxygen says nothing of enumerators.
if(NOT words_result OR NOT words MATCHES "State::Unsaid has no words" OR words MATCHES "State::Said")
  message(FATAL_ERROR "An enumerator without words is no failure (${words_result}):\n${words}")
endif()
