# Runs script/test over a project of a few tests and holds its last line and its exit code. With a preset that needs no
# servers, which it would download into the copy of the tree.
# Usage: cmake -D SOURCE_DIR=... -D FOLDER=... -P CheckTestSummary.cmake

cmake_minimum_required(VERSION 3.25)
if(NOT FOLDER)
  message(FATAL_ERROR "-D FOLDER=... is missing")
endif()

file(REMOVE_RECURSE "${FOLDER}")
file(COPY "${SOURCE_DIR}/script" "${SOURCE_DIR}/CMakePresets.json" DESTINATION "${FOLDER}/tree")
file(WRITE "${FOLDER}/bin/dpkg-query" "#!/bin/sh\necho installed\n")
file(CHMOD "${FOLDER}/bin/dpkg-query" PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE)
file(WRITE "${FOLDER}/tree/skips.txt" "[ RUN      ]\nThing_test.cpp:12: Skipped\nno \"disk\" & <no> tape\n\n[  SKIPPED ]\n")

# The end of a suite that ran in one process, in which all went well, some did not, or none of it did.
set(suite "Running main()\n")
file(WRITE "${FOLDER}/tree/good.txt" "${suite}[==========] 40 tests from 1 test suite ran. (0 ms total)\n[  PASSED  ] 40 tests.\n")
file(WRITE "${FOLDER}/tree/mixed.txt" "${suite}a.cpp:1: Skipped\nno tape\nb.cpp:1: Failure\n[  FAILED  ] Suite.Fails (0 ms)\n\
a.cpp:3: Skipped\nno tape\na.cpp:9: Skipped\nno drum\n[==========] 9 tests from 1 test suite ran. (0 ms total)\n\
[  PASSED  ] 4 tests.\n[  SKIPPED ] 3 tests.\n")
file(WRITE "${FOLDER}/tree/broken.txt" "${suite}a.cpp:1: Failure\n")
file(WRITE "${FOLDER}/tree/silent.txt" "Running main() from somewhere\n")

file(WRITE "${FOLDER}/tree/CMakeLists.txt" [[
cmake_minimum_required(VERSION 3.25)
project(FewTests LANGUAGES NONE)
enable_testing()
add_test(NAME Thing.Works COMMAND "${CMAKE_COMMAND}" -E true)
add_test(NAME Thing.WorksToo COMMAND "${CMAKE_COMMAND}" -E echo "Thing: Skipped")
add_test(NAME Thing.Breaks COMMAND "${CMAKE_COMMAND}" -E false)
add_test(NAME Thing.WantsADisk COMMAND "${CMAKE_COMMAND}" -E cat "${CMAKE_SOURCE_DIR}/skips.txt")
add_test(NAME Thing.IsNotBuilt COMMAND "/no/such/program")
option(VLCLIENTUI_UNITY "" OFF)
if(VLCLIENTUI_UNITY AND EXISTS "${CMAKE_SOURCE_DIR}/clash.txt")
  add_custom_target(clash ALL COMMAND "${CMAKE_COMMAND}" -E false)
endif()
foreach(end good mixed broken silent)
  add_test(NAME Suite.${end} COMMAND "${CMAKE_COMMAND}" -E cat "${CMAKE_SOURCE_DIR}/${end}.txt")
endforeach()
set_tests_properties(Suite.mixed Suite.broken PROPERTIES FAIL_REGULAR_EXPRESSION Failure)
set_tests_properties(Thing.WantsADisk PROPERTIES SKIP_REGULAR_EXPRESSION "  SKIPPED ]")
]])

# expect(<exit code> <regular expression of the last line> [option of ctest...])
function(expect code last)
  execute_process(
    COMMAND "${CMAKE_COMMAND}" -E env --unset=CTEST_OUTPUT_ON_FAILURE "PATH=${FOLDER}/bin:$ENV{PATH}"
      "${FOLDER}/tree/script/test" core-only ${ARGN}
    OUTPUT_VARIABLE output ERROR_VARIABLE errors RESULT_VARIABLE result)
  if(NOT result EQUAL code OR (last AND NOT output MATCHES "${last}\n$"))
    message(FATAL_ERROR "script/test ${ARGN} gives ${result} in place of ${code}, or does not end with\n"
      "${last}\n${output}\n${errors}")
  endif()
endfunction()

unset(ENV{VLCLIENTUI_UNITY})
set(skipped "1 skipped: Thing.WantsADisk .no \"disk\" & <no> tape.")
expect(8 "\n2 passed, 2 failed, ${skipped}" -E Suite)
expect(0 "\n2 passed, 0 failed, ${skipped}" -E "Breaks|IsNotBuilt|Suite")
expect(0 "\n40 passed, 0 failed, 0 skipped" -R Suite.good)
expect(8 "\n44 passed, 3 failed, 3 skipped: Suite.mixed .no tape, no drum." -R Suite -E silent)
expect(1 "\n40 passed, 1 failed, 0 skipped" -R "good|silent")
expect(0 "\n2 passed, 0 failed, 0 skipped" -R Works)
expect(8 "\n0 passed, 0 failed, 0 skipped" -R NoSuchTest)

# Sources that clash where they are compiled together: told each time, and a failure where they have to go together.
file(WRITE "${FOLDER}/tree/clash.txt" "")
foreach(time first second)
  expect(0 "Sources clashed where they were compiled together.*\n2 passed, 0 failed, 0 skipped" -R Works)
endforeach()
set(ENV{VLCLIENTUI_UNITY} ON)
expect(1 "" -R Works)
unset(ENV{VLCLIENTUI_UNITY})
