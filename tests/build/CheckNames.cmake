# Holds names and the length of functions by clang-tidy, in one run over one generated source that includes all sources
# that the build compiles. Names of different sources clash there; such errors say nothing about the tree and are
# passed over. A wrong name at the very end shows that everything before it was read.
#
# -D SOURCE_DIR=... -D BUILD_DIR=... -D CLANG_TIDY=... -D FOLDERS=a|b: the folders whose sources are read
if(NOT CLANG_TIDY)
  message(FATAL_ERROR "clang-tidy is not installed; script/test installs it")
endif()
file(READ "${BUILD_DIR}/compile_commands.json" commands)
string(REGEX MATCHALL "\"file\": \"[^\"]+\\.cpp\"" files "${commands}")
list(REMOVE_DUPLICATES files)
set(source "")
foreach(file IN LISTS files)
  string(REGEX REPLACE "\"file\": \"(.*)\"" "\\1" file "${file}")
  if(file MATCHES "^${SOURCE_DIR}/(${FOLDERS})/")
    string(APPEND source "#include \"${file}\"\n")
  endif()
endforeach()
string(APPEND source "int LastNameRead;\n")
string(REPLACE "|" "_" name "${FOLDERS}")
set(joined "${BUILD_DIR}/tests/build/AllOf_${name}.cpp")
file(WRITE "${joined}" "${source}")

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
