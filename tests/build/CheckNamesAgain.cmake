# The check of names reads again what has changed, headers too, and nothing else.
# -D SOURCE_DIR=... -D CLANG_TIDY=... -D FOLDER=...: a scratch folder
if(NOT FOLDER)
  message(FATAL_ERROR "-D FOLDER=... is missing")
endif()
file(REMOVE_RECURSE "${FOLDER}")
file(COPY "${SOURCE_DIR}/.clang-tidy" DESTINATION "${FOLDER}")
file(WRITE "${FOLDER}/src/Good.h" "int goodName();\n")
file(WRITE "${FOLDER}/src/Good.cpp" "#include \"Good.h\"\nint goodName() { return 1; }\n")
file(WRITE "${FOLDER}/src/Other.cpp" "int otherName() { return 2; }\n")
# One is compiled by itself, and one by a file of the build that may include more.
file(WRITE "${FOLDER}/unity_0_cxx.cxx" "#include \"${FOLDER}/src/Other.cpp\"\n")
file(WRITE "${FOLDER}/compile_commands.json" "[
{ \"command\": \"c++ -I${FOLDER}/src -c Good.cpp\", \"file\": \"${FOLDER}/src/Good.cpp\" },
{ \"command\": \"c++ -I${FOLDER}/src -c unity_0_cxx.cxx\", \"file\": \"${FOLDER}/unity_0_cxx.cxx\" }]\n")

unset(ENV{VLCLIENTUI_NAMES_CACHE})

function(expect_run outcome text)
  execute_process(
    COMMAND "${CMAKE_COMMAND}" -D SOURCE_DIR=${FOLDER} -D BUILD_DIR=${FOLDER} -D CLANG_TIDY=${CLANG_TIDY} -D FOLDERS=src
      -D STAMP=${FOLDER}/names.stamp -P "${SOURCE_DIR}/tests/build/CheckNames.cmake"
    OUTPUT_VARIABLE output ERROR_VARIABLE output RESULT_VARIABLE result)
  if(result EQUAL 0)
    set(found good)
  else()
    set(found bad)
  endif()
  if(NOT found STREQUAL outcome OR NOT output MATCHES "${text}")
    message(FATAL_ERROR "expected ${outcome} and '${text}', found ${found}:\n${output}")
  endif()
endfunction()

expect_run(good "3 of 3 files")
expect_run(good "0 of 3 files")
file(WRITE "${FOLDER}/src/Good.h" "int goodName();\nint Bad_name();\n")
expect_run(bad "1 of 3 files.*Bad_name")
# What was bad is read until it is good.
expect_run(bad "1 of 3 files.*Bad_name")
file(WRITE "${FOLDER}/src/Good.h" "int goodName();\nint mendedName();\n")
expect_run(good "1 of 3 files")
file(WRITE "${FOLDER}/src/Other.cpp" "int Other_Name() { return 2; }\n")
expect_run(bad "1 of 3 files.*Other_Name")
file(WRITE "${FOLDER}/src/Other.cpp" "int otherName() { return 3; }\n")
file(APPEND "${FOLDER}/.clang-tidy" "# changed\n")
expect_run(good "3 of 3 files")
# What was good in one checkout is so in another one.
set(ENV{VLCLIENTUI_NAMES_CACHE} "${FOLDER}/cache")
expect_run(good "0 of 3 files")
file(REMOVE "${FOLDER}/names.stamp")
expect_run(good "0 of 3 files")
file(WRITE "${FOLDER}/src/Other.cpp" "int Other_Name() { return 2; }\n")
expect_run(bad "1 of 3 files.*Other_Name")
file(REMOVE "${FOLDER}/names.stamp")
expect_run(bad "1 of 3 files.*Other_Name")
file(WRITE "${FOLDER}/src/Other.cpp" "int otherName() { return 4; }\n")
expect_run(good "1 of 3 files")
file(REMOVE "${FOLDER}/names.stamp")
expect_run(good "0 of 3 files")
file(REMOVE_RECURSE "${FOLDER}")
