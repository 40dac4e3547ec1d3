# A test program that ends in the middle of its cases, or has none of those that it was asked for, has failed.
# Usage: cmake -D PROGRAM=... -P CheckEarlyEnd.cmake
cmake_minimum_required(VERSION 3.25)

# expect(<exit code> <regular expression of what is told> <filter>)
function(expect code words filter)
  execute_process(COMMAND "${PROGRAM}" --gtest_brief=1 "--gtest_filter=${filter}"
    OUTPUT_VARIABLE told ERROR_VARIABLE told RESULT_VARIABLE result)
  if(NOT result EQUAL code OR NOT told MATCHES "${words}")
    message(FATAL_ERROR "${filter} ends with ${result} in place of ${code}, or does not tell \"${words}\":\n${told}")
  endif()
endfunction()

expect(0 "PASSED" "EarlyEnd.First")
expect(1 "ended before its cases were over" "EarlyEnd.First:EarlyEnd.LeavesAtOnce:EarlyEnd.NeverComes")
expect(1 "ended before its cases were over" "EarlyEnd.LeavesQuickly")
expect(1 "ended before its cases were over" "EarlyEnd.LeavesUnasked")
expect(1 "ended before its cases were over" "EarlyEnd.LeavesUnaskedByTheOtherName")
expect(0 "PASSED" "EarlyEnd.LeavesInAChildOnly")
expect(1 "No case was there to be run" "Gone.*")
