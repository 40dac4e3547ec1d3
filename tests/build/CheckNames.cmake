# Holds names and the length of functions by clang-tidy, in one run over one generated source that includes all files to
# be read. Names of different sources clash there; such errors say nothing about the tree and are passed over. A wrong
# name at the very end shows that everything before it was read.
#
# What a file is told of depends on its own text and the configuration, so a run reads only the files, headers too,
# that have changed since they were last found good; their hashes stand in a stamp in the build folder. A new
# configuration, script or clang-tidy reads all again. Of files that were good in any checkout of this user a folder of
# VLCLIENTUI_NAMES_CACHE knows, as a compiler cache would; script/test names one.
#
# -D SOURCE_DIR=... -D BUILD_DIR=... -D CLANG_TIDY=... -D FOLDERS=a|b: the folders whose files are read
# -D STAMP=...: where to remember; without it in BUILD_DIR, by the folders
cmake_minimum_required(VERSION 3.25)

if(NOT CLANG_TIDY)
  message(FATAL_ERROR "clang-tidy is not installed; script/test installs it")
endif()
string(REPLACE "|" "_" name "${FOLDERS}")
if(NOT STAMP)
  set(STAMP "${BUILD_DIR}/tests/build/NamesOf_${name}.stamp")
endif()

# The sources that the build compiles, and the headers that stand beside one of them.
file(READ "${BUILD_DIR}/compile_commands.json" commands)
string(REGEX MATCHALL "\"file\": \"[^\"]+\\.cpp\"" sources "${commands}")
list(TRANSFORM sources REPLACE "\"file\": \"(.*)\"" "\\1")
# Where several are compiled at a time, a file of the build includes them.
string(REGEX MATCHALL "\"file\": \"[^\"]+/unity_[0-9]+_cxx\\.cxx\"" joined "${commands}")
foreach(file IN LISTS joined)
  string(REGEX REPLACE "\"file\": \"(.*)\"" "\\1" file "${file}")
  file(STRINGS "${file}" together REGEX "^#include \".*\\.cpp\"$")
  list(TRANSFORM together REPLACE "#include \"(.*)\"" "\\1")
  list(APPEND sources ${together})
endforeach()
list(FILTER sources INCLUDE REGEX "^${SOURCE_DIR}/(${FOLDERS})/")
set(places ${sources})
list(TRANSFORM places REPLACE "/[^/]+$" "/*.h")
list(REMOVE_DUPLICATES places)
file(GLOB headers ${places})
set(files ${headers} ${sources})
list(REMOVE_DUPLICATES files)
if(NOT sources)
  message(FATAL_ERROR "the build compiles nothing in ${FOLDERS}")
endif()

execute_process(COMMAND "${CLANG_TIDY}" --version OUTPUT_VARIABLE version)
file(SHA256 "${SOURCE_DIR}/.clang-tidy" configuration)
file(SHA256 "${CMAKE_CURRENT_LIST_FILE}" script)
string(SHA256 setting "${version}${configuration}${script}")

set(good "")
if(EXISTS "${STAMP}")
  file(STRINGS "${STAMP}" good)
endif()
set(known "\n")
if(NOT "$ENV{VLCLIENTUI_NAMES_CACHE}" STREQUAL "")
  set(cache "$ENV{VLCLIENTUI_NAMES_CACHE}/${name}.good")
  if(EXISTS "${cache}")
    file(READ "${cache}" known)
  endif()
endif()
# Some versions of each file.
set(longest_cache 1000000)
set(stamp "")
set(unknown "")
set(changed "")
foreach(file IN LISTS files)
  file(SHA256 "${file}" hash)
  file(RELATIVE_PATH place "${SOURCE_DIR}" "${file}")
  set(line "${setting} ${hash} ${place}")
  list(APPEND stamp "${line}")
  string(FIND "${known}" "\n${line}\n" found)
  if(found EQUAL -1)
    list(APPEND unknown "${line}")
    if(NOT line IN_LIST good)
      list(APPEND changed "${file}")
    endif()
  endif()
endforeach()
list(LENGTH changed count)
list(LENGTH files total)
message(STATUS "${count} of ${total} files are new or changed")
# Written whole, since several checkouts may do so at a time.
function(remember)
  if(cache AND unknown)
    list(JOIN unknown "\n" lines)
    string(SUBSTRING "\n${lines}${known}" 0 ${longest_cache} text)
    string(RANDOM LENGTH 12 suffix)
    file(WRITE "${cache}.${suffix}" "${text}")
    file(RENAME "${cache}.${suffix}" "${cache}")
  endif()
  list(JOIN stamp "\n" stamp)
  file(WRITE "${STAMP}" "${stamp}\n")
endfunction()
if(count EQUAL 0)
  remember()
  return()
endif()

list(TRANSFORM changed REPLACE "(.+)" "#include \"\\1\"\n" OUTPUT_VARIABLE includes)
list(JOIN includes "" source)
set(joined "${STAMP}.cpp")
file(WRITE "${joined}" "${source}int LastNameRead;\n")

string(REGEX MATCHALL " (-I ?|-isystem )[^ \"]+" folders "${commands}")
list(REMOVE_DUPLICATES folders)
list(JOIN folders " " folders)
separate_arguments(folders UNIX_COMMAND "${folders}")
execute_process(
  COMMAND "${CLANG_TIDY}" --quiet "--config-file=${SOURCE_DIR}/.clang-tidy"
    "--checks=-*,readability-identifier-naming,readability-function-size"
    "--header-filter=^${SOURCE_DIR}/(src|apps|samples|tests|benchmarks|fuzz)/"
    "${joined}" -- -std=c++20 -fPIC -w -ferror-limit=0 -I${SOURCE_DIR} ${folders}
  OUTPUT_VARIABLE output ERROR_VARIABLE errors)

if(NOT output MATCHES "LastNameRead")
  string(REGEX MATCHALL "[^\n]*fatal error[^\n]*|[^\n]*file not found[^\n]*" reasons "${output}${errors}")
  list(JOIN reasons "\n" reasons)
  message(FATAL_ERROR "clang-tidy did not read all sources\n${reasons}")
endif()
string(REGEX MATCHALL "[^\n]*(warning|note): [^\n]*(readability-identifier-naming|readability-function-size|lines including)[^\n]*"
       findings "${output}")
# A finding without a place is about something that the joining made.
list(FILTER findings EXCLUDE REGEX "LastNameRead|^ *warning: ")
if(findings)
  list(REMOVE_DUPLICATES findings)
  list(JOIN findings "\n" findings)
  message(FATAL_ERROR "${findings}")
endif()
remember()
